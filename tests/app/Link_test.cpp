#include "tests/app/Dialer.h"

// The link as the main program can make it go wrong: refusals, silence, ends of every kind.
namespace fonklav::test {
namespace {

using namespace testing;

const std::string kScenario = kLine + kAnswered;

/// The flag shows in what closing the window does.
bool StillLinked(Dialer& dialer) {
  dialer.Input().CloseRequested(UnloadMode::UserClosed);
  return dialer.view.unloads == 0;
}

TEST(Link, IsOpenedOnceForTheItemAndEndedByTheProgramsOwnEnd) {
  const auto dialer = Ready();
  EXPECT_THAT(dialer->dde.asked, ElementsAre("Rufmon Fonklav|RufmonFonklav"));
  EXPECT_THAT(dialer->dde.advised, ElementsAre("txtDDE"));
  EXPECT_TRUE(StillLinked(*dialer));
  dialer->dde.answersAtOnce = false;
  dialer->Command("debug|1");
  dialer->Input().CloseRequested(UnloadMode::SessionEnds);
  EXPECT_EQ(dialer->view.unloads, 1);
  dialer->program.reset();
  EXPECT_EQ(dialer->dde.ends, 1);
}

TEST(Link, IsNoReasonToHideBeforeItStands) {
  Dialer dialer(kScenario);
  ASSERT_TRUE(dialer.Ask("/sett"));
  EXPECT_FALSE(StillLinked(dialer));
}

TEST(Link, AnAnswerDecidesWhetherItStandsWithinFiveSeconds) {
  // What is answered, and after how many milliseconds.
  for (const auto& [status, silence, linked] : {std::tuple{0x8000, 0, true},
                                                {0x4000, 0, true},
                                                {0, 0, false},
                                                {0xFF, 0, false},
                                                {0x8000, 4999, true},
                                                {0x8000, 5000, false}}) {
    const auto dialer = Ready();
    dialer->dde.answersAtOnce = false;
    dialer->Command("debug|1");
    dialer->Pump(silence);
    EXPECT_EQ(dialer->view.unloads, 0) << "silence is a failed send and nothing more";
    dialer->dde.Sink().OnExecuteAck(dialer->dde.posted.back(), static_cast<std::uint16_t>(status));
    dialer->Command("debug|0");
    EXPECT_EQ(dialer->TakeReports().size(), 2U) << "later reports still go out";
    EXPECT_EQ(StillLinked(*dialer), linked) << status << " after " << silence;
  }
}

TEST(Link, OnlyAnswersToWhatIsOutCount) {
  const auto dialer = Ready();
  dialer->dde.answersAtOnce = false;
  dialer->Command("debug|1");
  const auto execute = dialer->dde.posted.back();
  dialer->dde.Sink().OnExecuteAck(77, 0);
  EXPECT_TRUE(dialer->dde.Sink().OnTick()) << "ticks come fast while an answer is out";
  dialer->dde.Sink().OnExecuteAck(execute, kDdeAckPositive);
  EXPECT_FALSE(dialer->dde.Sink().OnTick());
  dialer->dde.Sink().OnExecuteAck(execute, 0);
  dialer->dde.Sink().OnAdviseAck(0);
  EXPECT_TRUE(StillLinked(*dialer));
}

TEST(Link, WaitsForTheOutcomeOfItsQuestionAndForNoLongerThanTenSeconds) {
  // The outcome comes after so many milliseconds, at 10000 none does, below 0 nothing could be asked; and whether it is
  // an answer.
  using Row = std::pair<int, bool>;
  for (const auto& [outcomeAfter, answers] : {Row{0, true}, Row{1000, true}, Row{2500, true}, Row{9750, true},
                                              Row{0, false}, Row{2500, false}, Row{10000, false}, Row{-1, false}}) {
    SCOPED_TRACE(outcomeAfter);
    Dialer dialer(kScenario);
    dialer.StoreLine("ISDN-Line1");
    dialer.Switch("LogTAPI=1\r\n");
    dialer.dde.askSucceeds = outcomeAfter >= 0;
    ASSERT_TRUE(dialer.Ask("/sett"));
    for (int passed = 0; passed < outcomeAfter; passed += 250) dialer.Pump(250);
    EXPECT_EQ(dialer.Controls().form.Visible(), outcomeAfter > 1000 || outcomeAfter < 0)
        << "no longer than a second without a window";
    dialer.dde.serverRunning = answers;
    if (outcomeAfter >= 0 && outcomeAfter < 10000) {
      EXPECT_FALSE(dialer.Controls().tmStart[1].Enabled()) << "the line stage follows the outcome";
      dialer.dde.DeliverOutcome();
    }
    EXPECT_TRUE(dialer.Controls().form.Visible());
    dialer.StageAgain();
    EXPECT_EQ(dialer.Stage(), answers ? "Init2LastOK|1\nline|ISDN-Line1\n[]" : "[]");
    EXPECT_THAT(dialer.Steps(), Contains(answers ? "DDE LinkOpen"
                                                 : "Init DDE - ERROR=No foreign application responded to a DDE "
                                                   "initiate"));
    EXPECT_EQ(dialer.Text(ControlId::lbLineIDActive), "ISDN-Line1") << "linked or not";
    if (!answers) {
      EXPECT_EQ(dialer.dde.ends, 1) << "a late answer is not wanted any more";
      dialer.dde.serverRunning = outcomeAfter < 10000;
      dialer.dde.DeliverOutcome();
      dialer.Pump(250);
    }
    EXPECT_EQ(StillLinked(dialer), answers);
  }
}

TEST(Link, ACallMadeByHandMeanwhileIsNotTakenAway) {
  for (const bool answered : {false, true}) {
    Dialer dialer(kScenario);
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
  constexpr std::uint16_t yesThoughBusy = kDdeAckPositive | kDdeAckBusy;
  for (const std::uint16_t verdict : {kDdeAckPositive, yesThoughBusy, std::uint16_t{0}}) {
    Dialer dialer(kScenario);
    dialer.Switch("LogTAPI=1\r\n");
    dialer.adviseStatus = kDdeAckBusy;
    dialer.Start("/run");
    dialer.Pump(999);
    EXPECT_THAT(dialer.dde.advised, SizeIs(1));
    dialer.Pump(1);
    dialer.Pump(2000);
    EXPECT_THAT(dialer.dde.advised, ElementsAre("txtDDE", "txtDDE")) << "not again before it was answered";
    dialer.dde.Sink().OnAdviseAck(kDdeAckBusy);
    dialer.Pump(1000);
    dialer.dde.Sink().OnAdviseAck(verdict);
    dialer.Pump(5000);
    EXPECT_EQ(dialer.dde.advised.size(), 3U);
    dialer.TakeReports();
    dialer.Command("debug|1");
    EXPECT_THAT(dialer.TakeReports(), SizeIs(1)) << "reports go out all the same";
    EXPECT_EQ(std::ranges::count(dialer.Steps(), "DDE LinkError"), verdict != 0 ? 0 : 1);
    EXPECT_EQ(StillLinked(dialer), verdict != 0) << "without the flag, closing the window ends the program";
  }
}

TEST(Link, AnItemThatCannotBeAskedForIsARefusedOne) {
  Dialer dialer(kScenario);
  dialer.Switch("LogTAPI=1\r\n");
  dialer.dde.postSucceeds = false;
  dialer.Start("/run");
  EXPECT_THAT(dialer.Steps(), Contains("DDE LinkError"));
}

TEST(Link, APostThatFailsLowersTheFlagAndTheHandlerGoesOn) {
  const auto dialer = Ready();
  dialer->dde.postSucceeds = false;
  dialer->Command("cmd|call|0301234567");
  EXPECT_THAT(dialer->sim.TextsOf("lineMakeCall"), ElementsAre("0301234567"));
  EXPECT_FALSE(StillLinked(*dialer));
}

TEST(Link, TheEndOfTheConversationEndsTheProgramWithTheLineGivenBack) {
  // Ended by a message or seen by the partner's window being gone; after a send that failed or has no answer yet.
  for (int bits = 0; bits < 8; ++bits) {
    const bool terminated = (bits & 1) != 0;
    const bool callUp = (bits & 4) != 0;
    SCOPED_TRACE(bits);
    const auto dialer = Ready();
    if (callUp) dialer->Command("cmd|call|0301234567", 200);
    EXPECT_EQ(dialer->sim.LiveCalls(), callUp ? 1U : 0U);
    dialer->dde.answersAtOnce = false;
    dialer->dde.postSucceeds = (bits & 2) == 0;
    dialer->Command("debug|1");
    dialer->dde.alive = terminated;
    if (terminated) dialer->dde.Sink().OnTerminate();
    dialer->Pump(250);
    EXPECT_EQ(dialer->view.unloads, 1);
    EXPECT_EQ(dialer->dde.ends, 1);
    EXPECT_EQ(dialer->sim.Registrations() + dialer->sim.OpenLines() + dialer->sim.LiveCalls(), 0U);
    dialer->dde.Sink().OnTerminate();
    dialer->Command("cmd|call|1");
    EXPECT_EQ(dialer->view.unloads, 1) << "what comes late finds nobody";
  }
}

TEST(Link, TheTraceTellsOfCommandsAndNotOfTheWatch) {
  Dialer dialer(kScenario);
  dialer.Switch("TraceMode=1\r\n");
  dialer.StoreLine("ISDN-Line1");
  dialer.Start("/run");
  dialer.Command("debug|1");
  for (int tick = 0; tick < 3; ++tick) {
    dialer.Pump(250);
    dialer.Input().TimerTick(TimerId::Start2);
  }
  dialer.Input().CloseRequested(UnloadMode::SessionEnds);
  dialer.program.reset();
  std::string steps;
  for (const std::string& line : dialer.Log("trace")) steps += line.substr(10) + "\n";
  EXPECT_THAT(steps,
              HasSubstr("\ntxtDDE_Change 01(S:debug|1)\nDDEexecute 01(S:cmd|quitt, S:)\n"
                        "fMain.tmStart_Timer 01(N:2)\nfMain.tmStart_Timer 02(N:2)\nfMain.tmStart_Timer 03(N:2)\n"));
  EXPECT_THAT(steps, ContainsRegex("HeadTAPI.*\n.*Display_Menu_Settings"));
}

}  // namespace
}  // namespace fonklav::test
