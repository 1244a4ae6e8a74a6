#include <gmock/gmock.h>

#include "tapi/modFunctions.h"
#include "tapi/modKeyPressCheck.h"
#include "tests/fakes/FakePorts.h"
#include "tests/tapi/TapiSystem.h"

// From the typed number to what reaches telephony.
namespace fonklav::test {
namespace {

using namespace testing;

struct NumberRow {
  const char* typed;
  const char* translated;  ///< what lineTranslateAddress was asked for; null when it was not asked
  const char* dialed;      ///< what lineMakeCall got
};

// The simulated translation hands everything but canonical numbers through unchanged, and refuses what begins with "+"
// and is not canonical.
const NumberRow kNumbers[] = {
    // No number, no address. Short numbers are extensions: no access code, no translation.
    {"", nullptr, "(null)"},
    {"123", nullptr, "123"},
    {" 12 ", nullptr, "12"},
    {"*1", nullptr, "*1"},
    {"1/2", nullptr, "1 2"},
    {"   ", nullptr, ""},
    // Everything longer gets the access code and is translated.
    {"1234", "0,1234", "0,1234"},
    {" 030/1234 ", "0,030 1234", "0,030 1234"},
    {"0  30   1234", "0,0 30 1234", "0,0 30 1234"},
    {"0    30", "0,0 30", "0,0 30"},     // four blanks fold to one,
    {"0     30", "0,0  30", "0,0  30"},  // of five, one too many stays
    {"(030) 1234", "0,(030) 1234", "0,(030) 1234"},
    {"M\xC3\xBCller", "0,M\xFCller", "0,M\xFCller"},
    {"\xC3\xA4\xC3\xB6\xC3\xBC", nullptr, "\xE4\xF6\xFC"},  // three characters, though six bytes
    // Numbers with "+" get brackets in place of their first two blanks, and no access code.
    {"+49 301234567", "+49(", ""},
    {"+49301234567", "+", ""},
    {"+", "+", ""},
    {"+++", "+", ""},
    {"+49 (30) 1234", "+49()30  1234", ""},
    {"+49 30 ", "+49(", ""},
    {"+49/30/12 34", "+49(30)12 34", ""}};

TEST(DialedNumber, ReachesTelephony) {
  for (const NumberRow& row : kNumbers) {
    SCOPED_TRACE(row.typed);
    TapiSystem system("device\nlocation country=49 city=89 local=\"0,\" long=\"\"\n");
    ASSERT_TRUE(system.Open());
    EXPECT_TRUE(system.line->MakeCallAsynch(row.typed));
    const std::vector<std::string> translated(row.translated != nullptr ? 1 : 0, row.translated ? row.translated : "");
    EXPECT_EQ(system.sim.TextsOf("lineTranslateAddress"), translated);
    EXPECT_THAT(system.sim.TextsOf("lineMakeCall"), ElementsAre(row.dialed));
  }
}

TEST(DialedNumber, UpToTheInternalLengthIsAnExtension) {
  TapiSystem system("device\nlocation local=0\n");
  ASSERT_TRUE(system.Open());
  for (const int length : {0, 3, 5}) {
    system.line->InternalNrLength(static_cast<std::int16_t>(length));
    const std::string number(static_cast<std::size_t>(length), '7');
    EXPECT_EQ(system.line->TransformPhoneNumber(number), number);
    EXPECT_EQ(system.line->TransformPhoneNumber(number + "8"), "0" + number + "8");
  }
}

TEST(DialedNumber, CanonicalNumbersAreDialedAsTheLocationWantsThem) {
  TapiSystem system("device\nlocation country=49 city=89 local=\"0,\"\ntranslate blanks=optional\n");
  ASSERT_TRUE(system.Open());
  for (const char* typed : {"+49 30 1234567", "++49 30 1234567"}) {
    system.sim.ForgetCalls();
    EXPECT_NE(system.line->TransformPhoneNumber(typed), "");
    EXPECT_THAT(system.sim.TextsOf("lineTranslateAddress"), ElementsAre("+49(30)1234567"));
  }
}

TEST(DialedNumber, ATranslationIsReadWithinItsBuffer) {
  // The dialable string's size stands at 12 and its offset at 16, the displayable string's at 20 and 24; the strings
  // come after the 40 bytes of the fixed part.
  for (const auto& [patch, dialable] :
       {std::pair{"20 value=6", "01234"}, std::pair{"12 value=0", ""}, std::pair{"12 value=1", ""},
        std::pair{"12 value=2", "0"}, std::pair{"16 value=39", ""}, std::pair{"16 value=40", "01234"},
        std::pair{"16 value=1064", ""}, std::pair{"16 value=1059", ""}, std::pair{"16 value=0xFFFFFFFF", ""},
        std::pair{"12 value=0x7FFFFFFF", ""}, std::pair{"12 value=0xFFFFFFFF", ""}, std::pair{"20 value=0", ""},
        std::pair{"24 value=0xFFFFFFF0", ""}, std::pair{"24 value=1064", ""}}) {
    TapiSystem system(std::string("device\nlocation local=0\npatch translateoutput offset=") + patch + "\n");
    ASSERT_TRUE(system.Open());
    EXPECT_EQ(system.line->TransformPhoneNumber("1234"), dialable) << patch;
    EXPECT_EQ(system.line->LastError(), 0) << "the request itself has succeeded";
  }
}

TEST(TelNumber, IsANumberOnceHashesAndStarsAreGone) {
  Diagnostics diagnostics;
  FakeNumberLocale locale;  // German: comma for decimals, point for thousands
  const modFunctions functions(diagnostics, locale);
  for (const char* text : {"0301234567", "*100#", " 12 ", "+12", "-12", "12-", "1.000", "1,5", "#0#"}) {
    EXPECT_TRUE(functions.fIsTelNumber(text)) << text;
  }
  for (const char* text : {"", "#", "*", "0 30 123", "12+34", "(030)", "030/12", "abc", "1a", "+", "++1", "1,2,3"}) {
    EXPECT_FALSE(functions.fIsTelNumber(text)) << text;
  }
}

TEST(KeyPress, PassesWhatTheFieldTakesAndCopyAndPaste) {
  const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz";
  const std::string digits = "0123456789";
  const std::pair<const char*, std::string> rows[] = {{"txtTimeVar", "\b " + digits + letters},
                                                      {"date", "\b ." + digits},
                                                      {"num0", "\b0"},
                                                      {"num", "\b" + digits},
                                                      {"numCR", "\b\r\x1b" + digits},
                                                      {"numCRwc", "\b\r\x1b*" + digits + "?"},
                                                      {"numTel", "\b\r\x1b+" + digits},
                                                      {"numTAPI", "\b\r\x1b#*" + digits}};
  Diagnostics diagnostics;
  const modKeyPressCheck check(diagnostics);
  const auto passing = [&](const char* keyClass) {
    std::string passed;
    for (char key = 1; key < 127; ++key) {
      if (check.CheckKeyPress(key, keyClass) == key) passed += key;
    }
    std::erase_if(passed, [](char key) { return key == 3 || key == 22; });
    return passed;
  };
  for (const auto& [keyClass, keys] : rows) {
    EXPECT_EQ(passing(keyClass), keys) << keyClass;
    for (const char key : {'\x03', '\x16'}) EXPECT_EQ(check.CheckKeyPress(key, keyClass), key) << "copy and paste";
  }
  for (const char* unknown : {"", "NUM"}) EXPECT_EQ(passing(unknown).size(), 124U) << unknown;
  EXPECT_EQ(passing("noTrenner").size(), 122U) << "but two, which become another";
  EXPECT_EQ(check.CheckKeyPress(';', "noTrenner"), ',');
  EXPECT_EQ(check.CheckKeyPress('|', "noTrenner"), ',');
  EXPECT_EQ(check.CheckKeyPress(',', "date"), '.');
  EXPECT_EQ(check.CheckKeyPress('+', "numTAPI"), '*');
  EXPECT_EQ(check.CheckKeyPress(-28, "num"), 0);
  EXPECT_EQ(check.CheckKeyPress(0, "numTAPI"), 0);
}

}  // namespace
}  // namespace fonklav::test
