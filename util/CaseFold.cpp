#include "util/CaseFold.h"

#include <cstddef>

namespace fonklav {
namespace {

constexpr bool IsLead(unsigned char byte) { return byte >= 0xC2 && byte <= 0xDF; }
constexpr bool IsContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

}  // namespace

std::string FoldCase(std::string_view text) {
  std::string folded(text);
  for (std::size_t at = 0; at < folded.size(); ++at) {
    const auto byte = static_cast<unsigned char>(folded[at]);
    if (byte < 0x80) {
      folded[at] = static_cast<char>(FoldCase(char16_t{byte}));
    } else if (IsLead(byte) && at + 1 < folded.size() && IsContinuation(static_cast<unsigned char>(folded[at + 1]))) {
      // All letters that fold take two bytes, and so do the letters that they fold to.
      const auto second = static_cast<unsigned char>(folded[at + 1]);
      const char16_t letter = FoldCase(static_cast<char16_t>(((byte & 0x1F) << 6) | (second & 0x3F)));
      folded[at] = static_cast<char>(0xC0 | (letter >> 6));
      folded[++at] = static_cast<char>(0x80 | (letter & 0x3F));
    }
  }
  return folded;
}

}  // namespace fonklav
