#pragma once

#include <array>

#include "platform/CodePage.h"

namespace fonklav::test {

/// Windows-1252, as on a German system.
class FakeCodePage : public CodePage {
 public:
  [[nodiscard]] std::string ToText(std::string_view bytes) const override {
    std::string text;
    for (const char byte : bytes) AppendUtf8(text, CodePoint(static_cast<unsigned char>(byte)));
    return text;
  }
  [[nodiscard]] std::string ToBytes(std::string_view text) const override {
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) bytes += Byte(NextCodePoint(text, at));
    return bytes;
  }

 private:
  static constexpr std::array<char32_t, 32> kHigh{0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                  0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

  static char32_t CodePoint(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? kHigh[byte - 0x80U] : char32_t{byte};
  }
  static char Byte(char32_t point) {
    for (std::size_t index = 0; index < kHigh.size(); ++index) {
      if (kHigh[index] == point) return static_cast<char>(0x80 + index);
    }
    const bool held = point < 0x80 || (point >= 0xA0 && point < 0x100);
    return held ? static_cast<char>(point) : '?';
  }
  static void AppendUtf8(std::string& text, char32_t point) {
    if (point < 0x80) {
      text += static_cast<char>(point);
    } else if (point < 0x800) {
      text += static_cast<char>(0xC0 | (point >> 6));
      text += static_cast<char>(0x80 | (point & 0x3F));
    } else {
      text += static_cast<char>(0xE0 | (point >> 12));
      text += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
      text += static_cast<char>(0x80 | (point & 0x3F));
    }
  }
  static char32_t NextCodePoint(std::string_view text, std::size_t& at) {
    const auto first = static_cast<unsigned char>(text[at++]);
    if (first < 0x80) return first;
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    char32_t point = first & (0x3FU >> more);
    for (int index = 0; index < more; ++index) {
      // A character that breaks off takes nothing of the next one with it.
      if (at == text.size() || (static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U) return 0xFFFD;
      point = (point << 6) | (static_cast<unsigned char>(text[at++]) & 0x3FU);
    }
    return point;
  }
};

}  // namespace fonklav::test
