#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tapi/modFunctions.h"
#include "tapi/modKeyPressCheck.h"
#include "tests/fakes/FakePorts.h"
#include "tests/tapi/TapiSystem.h"

// From the typed number to what reaches telephony.
namespace fonklav::test {
namespace {

using testing::ElementsAreArray;

struct NumberRow {
  const char* typed;
  std::vector<std::string> translated;  ///< what lineTranslateAddress was asked for
  const char* dialed;                   ///< what lineMakeCall got
};

class DialedNumber : public testing::TestWithParam<NumberRow> {};

// The simulated translation hands everything but canonical numbers through unchanged, and refuses what begins with "+"
// and is not canonical.
TEST_P(DialedNumber, ReachesTelephony) {
  TapiSystem system("device\nlocation country=49 city=89 local=\"0,\" long=\"\"\n");
  ASSERT_TRUE(system.Open());
  EXPECT_TRUE(system.line->MakeCallAsynch(GetParam().typed));
  EXPECT_THAT(system.sim.TextsOf("lineTranslateAddress"), ElementsAreArray(GetParam().translated));
  EXPECT_THAT(system.sim.TextsOf("lineMakeCall"), testing::ElementsAre(GetParam().dialed));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DialedNumber,
    testing::Values(
        // Short numbers are extensions: no access code, no translation.
        NumberRow{"123", {}, "123"}, NumberRow{" 12 ", {}, "12"}, NumberRow{"*1", {}, "*1"},
        NumberRow{"1/2", {}, "1 2"}, NumberRow{"   ", {}, ""},
        // Everything longer gets the access code and is translated.
        NumberRow{"1234", {"0,1234"}, "0,1234"}, NumberRow{" 030/1234 ", {"0,030 1234"}, "0,030 1234"},
        NumberRow{"0  30   1234", {"0,0 30 1234"}, "0,0 30 1234"},
        NumberRow{"0    30", {"0,0 30"}, "0,0 30"},     // four blanks fold to one,
        NumberRow{"0     30", {"0,0  30"}, "0,0  30"},  // of five, one too many stays
        NumberRow{"(030) 1234", {"0,(030) 1234"}, "0,(030) 1234"},
        NumberRow{"M\xC3\xBCller", {"0,M\xFCller"}, "0,M\xFCller"},
        NumberRow{"\xC3\xA4\xC3\xB6\xC3\xBC", {}, "\xE4\xF6\xFC"},  // three characters, though six bytes
        // Numbers with "+" get brackets in place of their first two blanks, and no access code.
        NumberRow{"+49 301234567", {"+49("}, ""}, NumberRow{"+49301234567", {"+"}, ""}, NumberRow{"+", {"+"}, ""},
        NumberRow{"+++", {"+"}, ""}, NumberRow{"+49 (30) 1234", {"+49()30  1234"}, ""},
        NumberRow{"+49 30 ", {"+49("}, ""}, NumberRow{"+49/30/12 34", {"+49(30)12 34"}, ""}),
    [](const auto& row) { return "Row" + std::to_string(row.index); });

TEST(DialedNumber, CanonicalNumbersAreDialedAsTheLocationWantsThem) {
  TapiSystem system("device\nlocation country=49 city=89 local=\"0,\"\ntranslate blanks=optional\n");
  ASSERT_TRUE(system.Open());
  for (const char* typed : {"+49 30 1234567", "++49 30 1234567"}) {
    system.sim.ForgetCalls();
    EXPECT_NE(system.line->TransformPhoneNumber(typed), "");
    EXPECT_THAT(system.sim.TextsOf("lineTranslateAddress"), testing::ElementsAre("+49(30)1234567"));
  }
}

TEST(DialedNumber, ARefusedTranslationDialsNothingAndKeepsTheCode) {
  TapiSystem system("device\nlocation local=0\nrefuse lineTranslateAddress 0x80000010\n");
  ASSERT_TRUE(system.Open());
  EXPECT_EQ(system.line->TransformPhoneNumber("0301234567"), "");
  EXPECT_EQ(system.line->LastError(), static_cast<std::int32_t>(0x80000010));
}

struct OutputRow {
  const char* name;
  const char* patches;
  const char* dialable;
};

class TranslateOutput : public testing::TestWithParam<OutputRow> {};

TEST_P(TranslateOutput, IsReadWithinItsBuffer) {
  TapiSystem system(std::string("device\nlocation local=0\n") + GetParam().patches);
  ASSERT_TRUE(system.Open());
  EXPECT_EQ(system.line->TransformPhoneNumber("1234"), GetParam().dialable);
}

// The dialable string's size stands at 12 and its offset at 16, the displayable string's at 20 and 24.
INSTANTIATE_TEST_SUITE_P(
    Rows, TranslateOutput,
    testing::Values(OutputRow{"whole", "", "01234"},
                    OutputRow{"sizeZero", "patch translateoutput offset=12 value=0\n", ""},
                    OutputRow{"offsetInHeader", "patch translateoutput offset=16 value=39\n", ""},
                    OutputRow{"offsetBehind", "patch translateoutput offset=16 value=1064\n", ""},
                    OutputRow{"offsetHuge", "patch translateoutput offset=16 value=0xFFFFFFFF\n", ""},
                    OutputRow{"sizeHuge", "patch translateoutput offset=12 value=0x7FFFFFFF\n", ""},
                    OutputRow{"sizeNegative", "patch translateoutput offset=12 value=0xFFFFFFFF\n", ""},
                    OutputRow{"displayableSizeZero", "patch translateoutput offset=20 value=0\n", ""},
                    OutputRow{"lastByteOutside", "patch translateoutput offset=16 value=1059\n", ""},
                    OutputRow{"displayableOffsetHuge", "patch translateoutput offset=24 value=0xFFFFFFF0\n", ""},
                    OutputRow{"displayableOutside", "patch translateoutput offset=24 value=1064\n", ""}),
    [](const auto& row) { return row.param.name; });

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

TEST(KeyPress, PassesWhatTheFieldTakes) {
  struct Row {
    const char* keyClass;
    std::string passes;
    std::string swallowed;
  };
  const std::string copyPaste = "\x03\x16";
  const std::vector<Row> rows{
      {"noTrenner", "a0,+\b", ""},
      {"txtTimeVar", "09AZ[`z \b", "@{;-\r"},
      {"date", "09.\b ", "a;-"},
      {"num0", "0\b", "19 "},
      {"num", "09\b", "+ \r\x1b"},
      {"numCR", "09\b\r\x1b", "*+"},
      {"numCRwc", "0\b\r\x1b*?", "#+"},
      {"numTel", "0\b\r\x1b+", "*#"},
      {"numTAPI", "0\b\r\x1b*#", "? a-"},
      {"NUM", "xyz+;", ""},
      {"", "a", ""},
  };
  Diagnostics diagnostics;
  const modKeyPressCheck check(diagnostics);
  for (const Row& row : rows) {
    for (const char key : copyPaste + row.passes)
      EXPECT_EQ(check.CheckKeyPress(key, row.keyClass), key) << row.keyClass;
    for (const char key : row.swallowed) EXPECT_EQ(check.CheckKeyPress(key, row.keyClass), 0) << row.keyClass << key;
  }
  EXPECT_EQ(check.CheckKeyPress(';', "noTrenner"), ',');
  EXPECT_EQ(check.CheckKeyPress('|', "noTrenner"), ',');
  EXPECT_EQ(check.CheckKeyPress(',', "date"), '.');
  EXPECT_EQ(check.CheckKeyPress('+', "numTAPI"), '*');
  EXPECT_EQ(check.CheckKeyPress(-28, "num"), 0);
  EXPECT_EQ(check.CheckKeyPress(0, "numTAPI"), 0);
}

}  // namespace
}  // namespace fonklav::test
