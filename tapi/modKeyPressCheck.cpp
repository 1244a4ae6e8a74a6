#include "tapi/modKeyPressCheck.h"

#include <algorithm>
#include <array>
#include <optional>

#include "util/Procedure.h"

namespace fonklav {
namespace {

// Ctrl+C and Ctrl+V as the characters that a text box gets for them.
constexpr std::int16_t kCopy = 3;
constexpr std::int16_t kPaste = 22;

/// One class of fields: which keys pass besides the digits, and which become another.
struct KeyClassRow {
  std::string_view keyClass;
  bool digits;
  std::optional<std::string_view> others;  ///< nothing: every key
  std::string_view changedFrom;
  char changedTo;
};

constexpr std::string_view kLettersAndBlank = "ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz \b";

constexpr std::array kKeyClasses{
    KeyClassRow{"noTrenner", true, std::nullopt, ";|", ','},
    KeyClassRow{"txtTimeVar", true, kLettersAndBlank, "", 0},
    KeyClassRow{"date", true, ".\b ", ",", '.'},
    KeyClassRow{"num0", false, "\b0", "", 0},
    KeyClassRow{"num", true, "\b", "", 0},
    KeyClassRow{"numCR", true, "\b\x1b\r", "", 0},
    KeyClassRow{"numCRwc", true, "\b\x1b\r*?", "", 0},
    KeyClassRow{"numTel", true, "\b\x1b\r+", "", 0},
    // A "+" would become a "*": numbers with "+" are meant to come from the main program only.
    KeyClassRow{"numTAPI", true, "\b\x1b\r*#", "+", '*'},
};

bool Contains(std::string_view keys, std::int16_t key) {
  return key > 0 && key < 128 && keys.find(static_cast<char>(key)) != std::string_view::npos;
}

std::int16_t Filter(const KeyClassRow& row, std::int16_t key) {
  if (Contains(row.changedFrom, key)) return row.changedTo;
  if (!row.others || Contains(*row.others, key)) return key;
  const bool digit = key >= '0' && key <= '9';
  return row.digits && digit ? key : std::int16_t{0};
}

}  // namespace

std::int16_t modKeyPressCheck::CheckKeyPress(std::int16_t key, std::string_view keyClass) const {
  return Procedure(diagnostics_, "modKeyPressCheck.CheckKeyPress", {key, keyClass}, key, [&](std::int16_t& passed) {
    if (key == kCopy || key == kPaste) return;
    const auto row = std::ranges::find(kKeyClasses, keyClass, &KeyClassRow::keyClass);
    if (row != kKeyClasses.end()) passed = Filter(*row, key);
  });
}

}  // namespace fonklav
