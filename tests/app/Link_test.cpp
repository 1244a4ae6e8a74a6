#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/DdeValue.h"
#include "tests/app/Dialer.h"
#include "util/Text.h"

// The link as the main program can make it go wrong: refusals, silence, ends of every kind.
namespace fonklav::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kAnswered =
    "device name=ISDN-Line1 version=0x00020000\nlocation local=\"\"\ncall reply after=20\n"
    "call state CONNECTED after=80\ndrop reply after=10\ndrop state IDLE after=20\n";

std::unique_ptr<Dialer> Linked() {
  auto dialer = std::make_unique<Dialer>(kAnswered);
  dialer->StoreLine("ISDN-Line1");
  dialer->Start("/run");
  dialer->TakeReports();
  return dialer;
}

/// The flag shows in what closing the window does.
bool StillLinked(Dialer& dialer) {
  dialer.Input().CloseRequested(UnloadMode::UserClosed);
  return dialer.View().unloads == 0;
}

TEST(Link, IsOpenedOnceForTheItem) {
  const auto dialer = Linked();
  EXPECT_THAT(dialer->dde.asked, ElementsAre("Rufmon Fonklav|RufmonFonklav"));
  EXPECT_THAT(dialer->dde.advised, ElementsAre("txtDDE"));
  EXPECT_TRUE(StillLinked(*dialer));
}

struct AnswerRow {
  const char* name;
  std::uint16_t status;
  bool linked;
};

class Answer : public testing::TestWithParam<AnswerRow> {};

TEST_P(Answer, DecidesWhetherTheLinkStands) {
  const auto dialer = Linked();
  dialer->dde.answersAtOnce = false;
  dialer->Command("debug|1");
  dialer->dde.Sink().OnExecuteAck(dialer->dde.posted.back(), GetParam().status);
  dialer->Command("debug|0");
  EXPECT_EQ(dialer->TakeReports().size(), 2U) << "later reports still go out";
  EXPECT_EQ(StillLinked(*dialer), GetParam().linked);
}

INSTANTIATE_TEST_SUITE_P(Rows, Answer,
                         testing::Values(AnswerRow{"positive", 0x8000, true}, AnswerRow{"busy", 0x4000, true},
                                         AnswerRow{"negative", 0, false}, AnswerRow{"negativeWithCode", 0xFF, false}),
                         [](const auto& row) { return row.param.name; });

TEST(Link, SilenceForFiveSecondsIsAFailedSendAndNothingMore) {
  for (const int silence : {4999, 5000}) {
    const auto dialer = Linked();
    dialer->dde.answersAtOnce = false;
    dialer->Command("debug|1");
    dialer->Pump(silence);
    EXPECT_EQ(dialer->View().unloads, 0);
    dialer->dde.Sink().OnExecuteAck(dialer->dde.posted.back(), kDdeAckPositive);
    EXPECT_EQ(StillLinked(*dialer), silence < 5000);
  }
}

TEST(Link, OnlyAnswersToWhatIsOutCount) {
  const auto dialer = Linked();
  dialer->dde.answersAtOnce = false;
  dialer->Command("debug|1");
  const auto execute = dialer->dde.posted.back();
  dialer->dde.Sink().OnExecuteAck(77, 0);
  dialer->dde.Sink().OnExecuteAck(execute, kDdeAckPositive);
  dialer->dde.Sink().OnExecuteAck(execute, 0);
  dialer->dde.Sink().OnAdviseAck(0);
  EXPECT_TRUE(StillLinked(*dialer));
}

struct AskingRow {
  const char* name;
  int answersAfter;  ///< milliseconds; none where nobody answers
  bool answers;
  bool shownBefore;  ///< the settings window did not wait for the outcome
};

class Asking : public testing::TestWithParam<AskingRow> {};

TEST_P(Asking, WaitsForTheOutcomeAndForNoLongerThanTenSeconds) {
  Dialer dialer(kAnswered);
  dialer.StoreLine("ISDN-Line1");
  dialer.files.files["c:\\rufmon\\rufmonspec.ini"] = "[Debug]\r\nLogTAPI=1\r\n";
  ASSERT_TRUE(dialer.Ask("/sett"));
  for (int passed = 0; passed < GetParam().answersAfter; passed += 250) dialer.Pump(250);
  EXPECT_EQ(dialer.Controls().form.Visible(), GetParam().shownBefore);
  dialer.dde.serverRunning = GetParam().answers;
  if (GetParam().answersAfter < 10000) {
    EXPECT_FALSE(dialer.Controls().tmStart[1].Enabled()) << "the line stage follows the outcome";
    dialer.dde.DeliverOutcome();
  }
  EXPECT_TRUE(dialer.Controls().form.Visible());
  dialer.StageAgain();
  const std::vector<std::string> reports = dialer.TakeReports();
  if (GetParam().answers) {
    EXPECT_THAT(reports, ElementsAre("Init2LastOK|1", "line|ISDN-Line1"));
    EXPECT_THAT(dialer.DebugLog(), testing::HasSubstr("TAPI FVT DDE LinkOpen\r\n"));
  } else {
    EXPECT_THAT(reports, IsEmpty());
    EXPECT_THAT(dialer.DebugLog(), testing::HasSubstr("TAPI FVT Init DDE\r\n2015/03/07  09:05:31  TAPI FVT Init DDE - "
                                                      "ERROR=No foreign application responded to a DDE initiate\r\n"));
    EXPECT_EQ(dialer.dde.ends, 1) << "a late answer is not wanted any more";
    dialer.dde.DeliverOutcome();
    dialer.Pump(250);
  }
  EXPECT_EQ(StillLinked(dialer), GetParam().answers);
  EXPECT_THAT(dialer.ErrorLog(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Asking,
    testing::Values(AskingRow{"answeredAtOnce", 0, true, false}, AskingRow{"answeredWithinASecond", 1000, true, false},
                    AskingRow{"answeredLate", 2500, true, true}, AskingRow{"answeredVeryLate", 9750, true, true},
                    AskingRow{"declinedAtOnce", 0, false, false}, AskingRow{"declinedLate", 2500, false, true},
                    AskingRow{"hanging", 10000, false, true}),
    [](const auto& row) { return row.param.name; });

TEST(Link, AQuestionThatCannotBePutHasFailed) {
  Dialer dialer(kAnswered);
  dialer.dde.askSucceeds = false;
  ASSERT_TRUE(dialer.Ask("/sett"));
  EXPECT_TRUE(dialer.Controls().form.Visible());
  EXPECT_TRUE(dialer.Controls().tmStart[1].Enabled());
}

TEST(Link, ACloseEndsTheQuestion) {
  for (const UnloadMode mode : {UnloadMode::UserClosed, UnloadMode::SessionEnds}) {
    Dialer dialer(kAnswered);
    ASSERT_TRUE(dialer.Ask("/sett"));
    dialer.Pump(2000);
    dialer.Input().CloseRequested(mode);
    EXPECT_EQ(dialer.View().unloads, 1);
    EXPECT_EQ(dialer.dde.ends, 1);
    dialer.dde.DeliverOutcome();
    EXPECT_THAT(dialer.dde.advised, IsEmpty());
    EXPECT_EQ(dialer.sim.Registrations(), 0U);
  }
}

TEST(Link, ACallMadeByHandMeanwhileIsNotTakenAway) {
  for (const bool answered : {false, true}) {
    Dialer dialer(kAnswered);
    dialer.StoreLine("ISDN-Line1");
    ASSERT_TRUE(dialer.Ask("/sett"));
    dialer.Input().Edit(ControlId::txtNumber, "0301234567");
    dialer.Input().Click(ControlId::cmdWahl);
    dialer.Pump(1500);
    dialer.dde.serverRunning = answered;
    dialer.dde.DeliverOutcome();
    dialer.StageAgain();
    EXPECT_EQ(dialer.sim.LiveCalls(), 1U);
    dialer.Input().Click(ControlId::cmdHangUp);
    dialer.Pump(250);
    dialer.TakeReports();
    dialer.StageAgain();
    EXPECT_EQ(dialer.TakeReports().size(), answered ? 2U : 0U) << "once the line has closed";
    EXPECT_FALSE(dialer.Controls().tmStart[1].Enabled());
  }
}

TEST(Link, ABusyServerIsAskedForTheItemAgainUntilItSaysYesOrNo) {
  for (const std::uint16_t verdict : {kDdeAckPositive, std::uint16_t{0}}) {
    Dialer dialer(kAnswered);
    dialer.adviseStatus = kDdeAckBusy;
    dialer.Start("/run");
    dialer.Pump(999);
    EXPECT_EQ(dialer.dde.advised.size(), 1U);
    dialer.Pump(1);
    dialer.Pump(2000);
    EXPECT_THAT(dialer.dde.advised, ElementsAre("txtDDE", "txtDDE")) << "not again before it was answered";
    dialer.dde.Sink().OnAdviseAck(kDdeAckBusy);
    dialer.Pump(1000);
    EXPECT_EQ(dialer.dde.advised.size(), 3U);
    dialer.dde.Sink().OnAdviseAck(verdict);
    dialer.Pump(5000);
    EXPECT_EQ(dialer.dde.advised.size(), 3U);
    EXPECT_EQ(StillLinked(dialer), verdict != 0);
  }
}

TEST(Link, APostThatFailsLowersTheFlagAndTheHandlerGoesOn) {
  const auto dialer = Linked();
  dialer->dde.postSucceeds = false;
  dialer->Command("cmd|call|0301234567");
  EXPECT_THAT(dialer->sim.TextsOf("lineMakeCall"), ElementsAre("0301234567"));
  EXPECT_FALSE(StillLinked(*dialer));
}

struct EndRow {
  const char* name;
  bool terminated;  ///< by a message; otherwise the partner's window is gone
  bool failedBefore;
  bool callUp;
};

class End : public testing::TestWithParam<EndRow> {};

TEST_P(End, OfTheConversationEndsTheProgramWithTheLineGivenBack) {
  const auto dialer = Linked();
  if (GetParam().callUp) {
    dialer->Command("cmd|call|0301234567");
    dialer->Pump(200);
    EXPECT_EQ(dialer->sim.LiveCalls(), 1U);
  }
  dialer->dde.answersAtOnce = false;
  if (GetParam().failedBefore) {
    dialer->dde.postSucceeds = false;
    dialer->Command("debug|1");
  } else {
    dialer->Command("debug|1");  // its answer will never come
  }
  if (GetParam().terminated) {
    dialer->dde.Sink().OnTerminate();
  } else {
    dialer->dde.alive = false;
    dialer->Pump(250);
  }
  EXPECT_EQ(dialer->View().unloads, 1);
  EXPECT_EQ(dialer->dde.ends, 1);
  EXPECT_EQ(dialer->sim.Registrations(), 0U);
  EXPECT_EQ(dialer->sim.OpenLines(), 0U);
  EXPECT_EQ(dialer->sim.LiveCalls(), 0U);
  dialer->dde.Sink().OnTerminate();
  dialer->Command("cmd|call|1");
  EXPECT_EQ(dialer->View().unloads, 1) << "what comes late finds nobody";
}

INSTANTIATE_TEST_SUITE_P(Rows, End,
                         testing::Values(EndRow{"terminated", true, false, false},
                                         EndRow{"terminatedDuringACall", true, false, true},
                                         EndRow{"terminatedAfterAFailedSend", true, true, false},
                                         EndRow{"killed", false, false, false},
                                         EndRow{"killedDuringACall", false, false, true},
                                         EndRow{"killedAfterAFailedSend", false, true, true}),
                         [](const auto& row) { return row.param.name; });

TEST(Link, TheTraceTellsOfCommandsAndNotOfTheWatch) {
  Dialer dialer(kAnswered);
  dialer.files.files["c:\\rufmon\\rufmonspec.ini"] = "[Debug]\r\nTraceMode=1\r\n";
  dialer.StoreLine("ISDN-Line1");
  dialer.Start("/run");
  dialer.Command("debug|1");
  for (int tick = 0; tick < 8; ++tick) {
    dialer.Pump(250);
    dialer.Input().TimerTick(TimerId::Start2);
  }
  dialer.Input().CloseRequested(UnloadMode::SessionEnds);
  dialer.program.reset();
  std::vector<std::string> steps;
  const std::vector<std::string> lines = Split(dialer.File("C:\\ProgramData\\Rufmon\\log\\trace.log"), kCrLf);
  for (const std::string& line : lines) steps.push_back(line.substr(std::min<std::size_t>(line.size(), 32)));
  const auto last = std::ranges::find_if(steps, [](const auto& step) { return step.starts_with("txtDDE_Change"); });
  ASSERT_NE(last, steps.end());
  EXPECT_THAT(std::vector(last, last + 6), ElementsAre("txtDDE_Change 01(S:debug|1)", "DDEexecute 01(S:cmd|quitt, S:)",
                                                       "fMain.tmStart_Timer 01(N:2)", "fMain.tmStart_Timer 02(N:2)",
                                                       "fMain.tmStart_Timer 03(N:2)", "fMain.tmStart_Timer 04(N:2)"));
  EXPECT_EQ(*(last + 9), "fMain.tmStart_Timer 08(N:2)");
  const auto head = std::ranges::find_if(steps, [](const auto& s) { return s.find("HeadTAPI") != std::string::npos; });
  EXPECT_THAT(std::vector(head, head + 2),
              ElementsAre(testing::HasSubstr("HeadTAPI"), testing::HasSubstr("Display_Menu_Settings")));
}

struct ValueRow {
  const char* name;
  std::string memory;
  bool readable;
  const char* bytes;
};

TEST(Value, IsReadFromWhateverMemoryThereIs) {
  const auto memory = [](const char* text, std::size_t size) { return std::string(text, size); };
  for (const ValueRow& row :
       {ValueRow{"none", "", false, ""}, ValueRow{"headCutShort", memory("\0\x20\1", 3), false, ""},
        ValueRow{"headAlone", memory("\0\x20\1\0", 4), true, ""},
        ValueRow{"whole", memory("\0\xA0\1\0abc\0def", 11), true, "abc"},
        ValueRow{"withoutAnEnd", memory("\0\0\1\0abc", 7), true, "abc"},
        ValueRow{"otherFormat", memory("\0\0\2\0abc\0", 8), true, "abc"}}) {
    const auto value = DdeValue::Read(std::as_bytes(std::span(row.memory)));
    ASSERT_EQ(value.has_value(), row.readable) << row.name;
    if (!value) continue;
    EXPECT_EQ(value->bytes, row.bytes) << row.name;
    EXPECT_EQ(value->IsText(), row.memory[2] == 1) << row.name;
    EXPECT_EQ(value->ToBeReleased(), (row.memory[1] & 0x20) != 0) << row.name;
    EXPECT_EQ(value->WantsAnswer(), (row.memory[1] & 0x80) != 0) << row.name;
  }
}

TEST(Link, TheProgramsOwnEndSaysGoodbye) {
  const auto dialer = Linked();
  dialer->dde.answersAtOnce = false;
  dialer->Command("debug|1");
  dialer->Input().CloseRequested(UnloadMode::SessionEnds);
  EXPECT_EQ(dialer->View().unloads, 1);
  dialer->program.reset();
  EXPECT_EQ(dialer->dde.ends, 1);
}

}  // namespace
}  // namespace fonklav::test
