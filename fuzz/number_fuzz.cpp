#include "fuzz/Bytes.h"
#include "tapi/modFunctions.h"
#include "tests/tapi/TapiSystem.h"
#include "util/Text.h"

// What a person or a main program calls a number, on its way to the line.
namespace fonklav::test {
namespace {

/// The number test by another rule: with the blanks around it and one sign gone, only digits, dots before and at most
/// one comma; a dot is not the first, and there is a digit.
bool Numeric(std::string text) {
  text = std::string(TrimBlanks(text));
  const auto sign = [](char c) { return c == '+' || c == '-'; };
  if (!text.empty() && sign(text.front())) {
    text.erase(0, 1);
  } else if (!text.empty() && sign(text.back())) {
    text.pop_back();
  }
  const std::size_t comma = text.find(',');
  return text.find_first_not_of("0123456789.,") == std::string::npos && !text.starts_with('.') &&
         text.find_first_of("0123456789") != std::string::npos &&
         (comma == std::string::npos || text.find_first_of(".,", comma + 1) == std::string::npos);
}

void TestNumber(TapiSystem& system, const std::string& text) {
  static const FakeNumberLocale locale;
  const modFunctions functions(system.diagnostics, locale);
  const std::string plain = ReplaceAll(ReplaceAll(text, "#", ""), "*", "");
  Require(functions.fIsTelNumber(text) == Numeric(plain), "the number test");
}

void Transform(TapiSystem& system, const std::string& number, const std::string& access) {
  system.sim.ForgetCalls();
  system.line->OutsideLocalAccess(access);
  const std::string dialable = system.line->TransformPhoneNumber(number);
  const auto asked = system.sim.TextsOf("lineTranslateAddress");
  Require(asked.size() <= 1, "one translation");
  if (asked.empty()) {
    Require(CharacterCount(dialable) <= 3, "only short numbers go untranslated");
    return;
  }
  const std::string_view address = asked.front();
  const std::size_t behind = TrimBlanks(number).starts_with('+') ? 0 : system.codePage.ToBytes(access).size();
  Require(address.find('/', behind) == std::string_view::npos, "no stroke is left");
  Require(behind != 0 || address.find(" ") == std::string_view::npos || !address.starts_with("+") ||
              address.find(')') < address.find(' '),
          "blanks only behind the area code");
  Require(dialable.find('\0') == std::string::npos, "no NUL");
}

}  // namespace

void Fuzz(Bytes bytes) {
  static TapiSystem system("device\nlocation local=0 long=1\n", Stage::Created);
  static constexpr std::array kAccess{"", "0", "9,", "\xC3\xA4"};
  const std::string access = bytes.OneOf(kAccess);
  const std::string text = system.codePage.ToText(bytes.Text(300));
  TestNumber(system, text);
  Transform(system, text, access);
  Require(system.log->errors.empty(), system.log->errors.empty() ? "" : system.log->errors.front());
  system.log->steps.clear();
  system.log->telephony.clear();
}

}  // namespace fonklav::test
