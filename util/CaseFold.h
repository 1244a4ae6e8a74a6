#pragma once

#include <string>
#include <string_view>

namespace fonklav {

/// A character for comparisons without regard to case: the small letter of a Latin (with accents), Greek or Cyrillic
/// capital, every other character itself. The same on every system, whatever its locale.
[[nodiscard]] constexpr char16_t FoldCase(char16_t c) noexcept {
  if (c < 0xC0) return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c;
  const auto within = [c](char16_t first, char16_t last) { return c >= first && c <= last; };
  if (within(0xC0, 0xDE) && c != 0xD7) return static_cast<char16_t>(c + 0x20);
  if (c == 0x178) return 0xFF;
  // Latin letters with further accents stand in pairs: the capital is the even one of a pair in two of the ranges.
  if (within(0x100, 0x137) || within(0x14A, 0x177)) return static_cast<char16_t>(c | 1);
  if (within(0x139, 0x148) || within(0x179, 0x17E)) return static_cast<char16_t>(c + (c & 1));
  if (within(0x391, 0x3A9) && c != 0x3A2) return static_cast<char16_t>(c + 0x20);
  if (within(0x410, 0x42F)) return static_cast<char16_t>(c + 0x20);
  if (within(0x400, 0x40F)) return static_cast<char16_t>(c + 0x50);
  return c;
}

/// A UTF-8 text folded character by character. Bytes that are no UTF-8 stay as they are.
[[nodiscard]] std::string FoldCase(std::string_view text);

/// Whether two texts are the same but for the case of their letters.
[[nodiscard]] inline bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  return left == right || FoldCase(left) == FoldCase(right);
}

}  // namespace fonklav
