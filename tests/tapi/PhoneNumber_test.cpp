#include <gmock/gmock.h>

#include "tapi/modFunctions.h"
#include "tapi/modKeyPressCheck.h"
#include "tests/tapi/TapiSystem.h"

// From the typed number to what reaches telephony.
namespace fonklav::test {
namespace {

using namespace testing;

TEST(DialedNumber, ReachesTelephony) {
  // What is typed, what lineTranslateAddress is asked for, null where it is not asked, and what lineMakeCall gets. The
  // simulated translation hands everything but canonical numbers through unchanged, and refuses what begins with "+"
  // and is not canonical.
  using Row = std::tuple<const char*, const char*, const char*>;
  for (const auto& [typed, translated, dialed] :
       {Row{"1234", "0,1234", "0,1234"}, Row{" 030/1234 ", "0,030 1234", "0,030 1234"},
        Row{"0  30   1234", "0,0 30 1234", "0,0 30 1234"}, Row{"(030) 1234", "0,(030) 1234", "0,(030) 1234"},
        Row{"M\xC3\xBCller", "0,M\xFCller", "0,M\xFCller"},
        // Four blanks fold to one; of five, one too many stays.
        Row{"0    30", "0,0 30", "0,0 30"}, Row{"0     30", "0,0  30", "0,0  30"},
        // Short numbers are extensions: no access code, no translation. Three characters may be six bytes. No number,
        // no address.
        Row{"123", nullptr, "123"}, Row{" 12 ", nullptr, "12"}, Row{"*1", nullptr, "*1"}, Row{"1/2", nullptr, "1 2"},
        Row{"\xC3\xA4\xC3\xB6\xC3\xBC", nullptr, "\xE4\xF6\xFC"}, Row{"   ", nullptr, ""}, Row{"", nullptr, "(null)"},
        // Numbers with "+" get brackets in place of their first two blanks, and no access code.
        Row{"+49 301234567", "+49(", ""}, Row{"+49301234567", "+", ""}, Row{"+", "+", ""}, Row{"+++", "+", ""},
        Row{"+49 (30) 1234", "+49()30  1234", ""}, Row{"+49 30 ", "+49(", ""},
        Row{"+49/30/12 34", "+49(30)12 34", ""}}) {
    SCOPED_TRACE(typed);
    TapiSystem system("device\nlocation country=49 city=89 local=\"0,\" long=\"\"\n", Stage::Open);
    EXPECT_TRUE(system.line->MakeCallAsynch(typed));
    const std::vector<std::string> asked(translated != nullptr ? 1 : 0, translated != nullptr ? translated : "");
    EXPECT_EQ(system.sim.TextsOf("lineTranslateAddress"), asked);
    EXPECT_THAT(system.sim.TextsOf("lineMakeCall"), ElementsAre(dialed));
  }
}

TEST(DialedNumber, UpToTheInternalLengthIsAnExtension) {
  TapiSystem system("device\nlocation local=0\n", Stage::Open);
  for (const int length : {0, 3, 5}) {
    system.line->InternalNrLength(static_cast<std::int16_t>(length));
    const std::string number(static_cast<std::size_t>(length), '7');
    EXPECT_EQ(system.line->TransformPhoneNumber(number), number);
    EXPECT_EQ(system.line->TransformPhoneNumber(number + "8"), "0" + number + "8");
  }
}

TEST(DialedNumber, CanonicalNumbersAreDialedAsTheLocationWantsThem) {
  TapiSystem system("tapi blanks=0\ndevice\nlocation country=49 city=89 local=8, long=9,\n", Stage::Open);
  using Row = std::tuple<const char*, const char*, const char*>;
  for (const auto& [typed, translated, dialed] :
       {Row{"+49 89 1234567", "+49(89)1234567", "8,1234567"}, Row{"+49 30 1234567", "+49(30)1234567", "9,0301234567"},
        Row{"++49 30 1234567", "+49(30)1234567", "9,0301234567"},
        Row{"+1 425 5550100", "+1(425)5550100", "9,0014255550100"}}) {
    system.sim.ForgetCalls();
    EXPECT_EQ(system.line->TransformPhoneNumber(typed), dialed);
    EXPECT_THAT(system.sim.TextsOf("lineTranslateAddress"), ElementsAre(translated));
  }
}

TEST(DialedNumber, ATranslationIsReadWithinItsBuffer) {
  // The dialable string's size stands at 12 and its offset at 16, the displayable string's at 20 and 24; the strings
  // come after the 40 bytes of the fixed part.
  using Row = std::pair<const char*, const char*>;
  for (const auto& [patch, dialable] :
       {Row{"20 value=6", "01234"}, Row{"12 value=0", ""}, Row{"12 value=1", ""}, Row{"12 value=2", "0"},
        Row{"16 value=39", ""}, Row{"16 value=40", "01234"}, Row{"16 value=1064", ""}, Row{"16 value=1059", ""},
        Row{"16 value=0xFFFFFFFF", ""}, Row{"12 value=0x7FFFFFFF", ""}, Row{"12 value=0xFFFFFFFF", ""},
        Row{"20 value=0", ""}, Row{"24 value=0xFFFFFFF0", ""}, Row{"24 value=1064", ""}}) {
    TapiSystem system(std::string("device\nlocation local=0\npatch translateoutput offset=") + patch + "\n",
                      Stage::Open);
    EXPECT_EQ(system.line->TransformPhoneNumber("1234"), dialable) << patch;
    EXPECT_EQ(system.line->LastError(), 0) << "the request itself has succeeded";
  }
}

TEST(TelNumber, IsANumberOnceHashesAndStarsAreGone) {
  Recorded program;
  FakeNumberLocale locale;  // German: comma for decimals, point for thousands
  const modFunctions functions(program.diagnostics, locale);
  for (const char* text : {"0301234567", "*100#", "#0#", "1.000"}) EXPECT_TRUE(functions.fIsTelNumber(text)) << text;
  for (const char* text : {"", "#", "*", "0 30 123", "+"}) EXPECT_FALSE(functions.fIsTelNumber(text)) << text;
  Faults nothingKnown;
  nothingKnown.Arm(0, true);
  locale.faults = &nothingKnown;
  EXPECT_FALSE(functions.fIsTelNumber("0301234567"));
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
