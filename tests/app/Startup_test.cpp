#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/Dialer.h"

// From the command line to the bound line, with everything that can be missing.
namespace fonklav::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kLine = "device name=ISDN-Line1 version=0x00020000\nlocation local=\"\"\n";

struct ArgumentRow {
  const char* name;
  const char* argument;
  bool starts;
  bool shown;
  const char* number;
};

class CommandLine : public testing::TestWithParam<ArgumentRow> {};

TEST_P(CommandLine, IsJudged) {
  Dialer dialer(kLine);
  EXPECT_EQ(dialer.Start(GetParam().argument), GetParam().starts);
  EXPECT_EQ(dialer.Controls().form.Visible(), GetParam().shown);
  EXPECT_EQ(dialer.Controls()[ControlId::txtNumber].Text(), GetParam().number);
  EXPECT_EQ(dialer.Messages().size(), GetParam().starts ? 0U : 1U);
  EXPECT_THAT(dialer.sim.TextsOf("lineMakeCall"), IsEmpty());
  if (!GetParam().starts) {
    EXPECT_THAT(dialer.Messages().front().prompt, "Ein Direktaufruf dieses Tools ist nicht vorgesehen!");
    EXPECT_EQ(dialer.Messages().front().style, 64U);
    EXPECT_THAT(dialer.sim.Calls(), IsEmpty());
    EXPECT_THAT(dialer.dde.asked, IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, CommandLine,
                         testing::Values(ArgumentRow{"run", "/run", true, false, ""},
                                         ArgumentRow{"sett", "/sett", true, true, ""},
                                         ArgumentRow{"number", "0301234567", true, false, "0301234567"},
                                         ArgumentRow{"starNumber", "*100#", true, false, "*100#"},
                                         ArgumentRow{"blanksAround", " 123 ", true, false, " 123 "},
                                         ArgumentRow{"none", "", false, false, ""},
                                         ArgumentRow{"otherCase", "/SETT", false, false, ""},
                                         ArgumentRow{"blankBehind", "/sett ", false, false, ""},
                                         ArgumentRow{"two", "/run /sett", false, false, ""},
                                         ArgumentRow{"innerBlanks", "0 30 123", false, false, ""}),
                         [](const auto& row) { return row.param.name; });

TEST(Startup, WithoutAMainProgramTheDialerRunsOnUnlinked) {
  Dialer dialer(kLine);
  dialer.StoreLine("ISDN-Line1");
  dialer.dde.serverRunning = false;
  EXPECT_TRUE(dialer.Start("0301234567"));
  EXPECT_EQ(dialer.Controls()[ControlId::lbLineIDActive].Text(), "ISDN-Line1");
  EXPECT_TRUE(dialer.Controls()[ControlId::cmdWahl].Enabled());
  dialer.Input().CloseRequested(UnloadMode::UserClosed);
  EXPECT_EQ(dialer.View().unloads, 1);
  EXPECT_EQ(dialer.sim.Registrations(), 0U);
}

TEST(Startup, NoStoredLine) {
  Dialer dialer(kLine);
  dialer.Start("/run");
  EXPECT_THAT(dialer.TakeReports(), ElementsAre("Init2LastOK|0", "line|Kein TAPI-Ger\xE4t ausgew\xE4hlt!"));
  EXPECT_EQ(dialer.Controls().lstTAPI.Count(), 1U);
  EXPECT_EQ(dialer.Controls().lstTAPI.TickedCount(), 0U);
  EXPECT_FALSE(dialer.Controls().tmStart[2].Enabled());
}

TEST(Startup, AStoredLineThatHasGone) {
  Dialer dialer(kLine);
  dialer.StoreLine("Fritz");
  dialer.Start("/run");
  EXPECT_THAT(dialer.TakeReports(), ElementsAre("Init2LastOK|0", "line|Ger\xE4t Fritz nicht verf\xFCgbar!",
                                                "log|Ger\xE4t Fritz nicht verf\xFCgbar!"));
  EXPECT_TRUE(dialer.Controls().tmStart[2].Enabled());
}

TEST(Startup, AStoredNameFindsTheFirstLineThatBeginsWithIt) {
  Dialer dialer("device name=\"ISDN 10\"\ndevice name=\"ISDN 1\"\nlocation\n");
  dialer.StoreLine("ISDN 1");
  dialer.Start("/run");
  EXPECT_THAT(dialer.TakeReports(), ElementsAre("Init2LastOK|1", "line|ISDN 10"));
  ASSERT_EQ(dialer.Controls().lstTAPI.Count(), 2U);
  EXPECT_FALSE(dialer.Controls().lstTAPI.At(0).ticked);
  EXPECT_TRUE(dialer.Controls().lstTAPI.At(1).ticked);
}

TEST(Startup, OnlyTapi14ReportsTheFirstFailureBeforeThereIsALink) {
  Dialer dialer(std::string("tapi version=0x00010004\n") + kLine);
  dialer.StoreLine("ISDN-Line1");
  dialer.Start("/run");
  EXPECT_EQ(dialer.Controls()[ControlId::txtTestStatus].Text(),
            "Incompatible API Version\r\nPrüfe auf TAPI 1.3 - 1.4...");
  EXPECT_THAT(dialer.TakeReports(), ElementsAre("Init2LastOK|1", "line|ISDN-Line1"));
}

TEST(Startup, NoUsableTapiAtAll) {
  Dialer dialer(std::string(kLine) + "refuse lineInitializeEx 0x8000000C\n");
  dialer.StoreLine("ISDN-Line1");
  dialer.Start("/run");
  EXPECT_THAT(dialer.TakeReports(),
              ElementsAre("line|Fehlende oder falsche TAPI-Version!", "log|Fehlende oder falsche TAPI-Version!"));
  EXPECT_EQ(dialer.Controls()[ControlId::txtTestStatus].Text(),
            "Incompatible API Version\r\nPrüfe auf TAPI 1.3 - 1.4...Fehlende oder falsche TAPI-Version!"
            "Fehlende oder falsche TAPI-Version!");
  EXPECT_FALSE(dialer.Controls()[ControlId::cmdWahl].Enabled());
}

TEST(Startup, AMissingLibraryIsTheWrongVersionAndNotTheAreaCodes) {
  Dialer dialer(kLine);
  dialer.sim.SetLibraryMissing();
  dialer.Start("/run");
  EXPECT_THAT(dialer.TakeReports(),
              ElementsAre("line|Fehlende oder falsche TAPI-Version!", "log|Fehlende oder falsche TAPI-Version!"));
  EXPECT_THAT(dialer.Messages(), IsEmpty());
  EXPECT_THAT(dialer.ErrorLog(), HasSubstr("53 + File not found"));
}

TEST(Startup, MissingAreaCodesAreShownOnceAndNothingIsReported) {
  Dialer dialer(std::string(kLine) + "codes none\n");
  dialer.Start("/run");
  ASSERT_EQ(dialer.Messages().size(), 1U);
  EXPECT_THAT(dialer.Messages().front().prompt, HasSubstr("Telefon und Modem"));
  EXPECT_EQ(dialer.Messages().front().style, 48U);
  EXPECT_THAT(dialer.TakeReports(), IsEmpty());
  EXPECT_EQ(dialer.sim.CountOf("lineInitializeEx"), 0U);
}

struct LostRow {
  const char* name;
  const char* fault;  ///< what telephony has become after a good start
  std::vector<std::string> reports;
  const char* caption;
};

class LostLine : public testing::TestWithParam<LostRow> {};

TEST_P(LostLine, LeavesNothingThatLooksLikeOne) {
  for (const bool cancelled : {false, true}) {
    Dialer dialer("device name=ISDN-Line1 version=0x00020000\nlocation local=9\n");
    dialer.StoreLine("ISDN-Line1");
    dialer.Start("/sett");
    dialer.Input().Edit(ControlId::txtNumber, "0301234567");
    EXPECT_TRUE(dialer.Controls()[ControlId::cmdWahl].Enabled());
    dialer.TakeReports();
    dialer.sim.Rules().Apply(GetParam().fault);
    if (cancelled) {
      dialer.Input().Click(ControlId::cmdExit);
    } else {
      dialer.Command("unload");
    }
    std::vector<std::string> expected = GetParam().reports;
    if (!cancelled) expected.insert(expected.begin(), "cmd|quitt");
    EXPECT_EQ(dialer.TakeReports(), expected);
    EXPECT_FALSE(dialer.Controls()[ControlId::cmdWahl].Enabled());
    EXPECT_EQ(dialer.Controls().lstTAPI.Count(), 0U);
    EXPECT_EQ(dialer.Controls()[ControlId::lbLineIDActive].Text(), GetParam().caption);
    dialer.Input().Edit(ControlId::txtNumber, "12345");
    EXPECT_FALSE(dialer.Controls()[ControlId::cmdWahl].Enabled()) << "no line is bound";
    // The command goes its way all the same, and finds no line to open.
    dialer.Command("cmd|call|0301234567");
    EXPECT_EQ(dialer.TakeReports().back(), "btnCall|0|cmdWahl_Click 1");
    EXPECT_EQ(dialer.sim.OpenLines(), 0U);
    // Telephony has come back: the next stage finds everything again. It fills an empty list, and so does the Cancel.
    dialer.sim.Rules() = Scenario::Parse("device name=ISDN-Line1 version=0x00020000\nlocation local=9\n");
    dialer.Command("unload");
    EXPECT_THAT(dialer.TakeReports(), ElementsAre("cmd|quitt", "Init2LastOK|1", "line|ISDN-Line1", "Init2LastOK|1",
                                                  "line|ISDN-Line1", "Init2LastOK|1", "line|ISDN-Line1"));
    EXPECT_TRUE(dialer.Controls().lstTAPI.At(0).ticked);
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, LostLine,
                         testing::Values(LostRow{"areaCodes", "codes none", {}, "LineID"},
                                         LostRow{"telephony",
                                                 "refuse lineInitializeEx 0x80000048",
                                                 {"log|Operation Failed",
                                                  "log|Pr\xFC"
                                                  "fe auf TAPI 1.3 - 1.4...",
                                                  "line|Fehlende oder falsche TAPI-Version!",
                                                  "log|Fehlende oder falsche TAPI-Version!"},
                                                 "Fehlende oder falsche TAPI-Version!"}),
                         [](const auto& row) { return row.param.name; });

TEST(Startup, TheAreaCodeMessageIsNotShownOnTopOfItself) {
  Dialer dialer(std::string(kLine) + "codes none\n");
  dialer.boxes.whileShown = [&] { dialer.Input().TimerTick(TimerId::Start1); };
  dialer.Start("/run");
  EXPECT_EQ(dialer.Messages().size(), 1U);
}

TEST(Startup, AHandlerThatTheEndInterruptsIsQuiet) {
  Dialer dialer(kLine);
  dialer.StoreLine("ISDN-Line1");
  dialer.Start("/run");
  dialer.sim.Rules().Apply("codes none");
  dialer.boxes.whileShown = [&] { dialer.dde.Sink().OnTerminate(); };
  dialer.Command("unload");
  EXPECT_EQ(dialer.Messages().size(), 1U);
  EXPECT_EQ(dialer.View().unloads, 1);
  EXPECT_EQ(dialer.sim.Registrations(), 0U);
  EXPECT_THAT(dialer.ErrorLog(), IsEmpty());
}

TEST(Startup, ACodeThatFillsItsBufferWithoutAnEndCountsAsMissing) {
  Dialer dialer(std::string(kLine) + "codes country=49 city=12345678\n");
  dialer.Start("/run");
  EXPECT_EQ(dialer.Messages().size(), 1U);
}

TEST(Startup, ARefusedAdviseLowersTheFlagAndReportsStillGoOut) {
  Dialer dialer(kLine);
  dialer.StoreLine("ISDN-Line1");
  dialer.adviseStatus = 0;
  dialer.Start("/run");
  EXPECT_THAT(dialer.TakeReports(), ElementsAre("Init2LastOK|1", "line|ISDN-Line1"));
  dialer.Input().CloseRequested(UnloadMode::UserClosed);
  EXPECT_EQ(dialer.View().unloads, 1) << "without the flag, closing the window ends the program";
}

}  // namespace
}  // namespace fonklav::test
