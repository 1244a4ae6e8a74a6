#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/Dialer.h"

// Whole conversations with the main program: what it says, and everything that it hears.
namespace fonklav::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kLine = "device name=ISDN-Line1 version=0x00020000\nlocation local=\"\"\n";

/// A call that is taken, and stays up until somebody hangs up.
constexpr const char* kAnswered =
    "device name=ISDN-Line1 version=0x00020000\n"
    "location local=\"\"\n"
    "call reply after=20\n"
    "call state DIALING after=40\n"
    "call state RINGBACK after=60\n"
    "call state CONNECTED after=80\n"
    "drop reply after=10\n"
    "drop state IDLE after=20\n";

class Conversation : public testing::Test {
 protected:
  /// A dialer that is linked, bound to ISDN-Line1, and whose start reports have been read.
  static std::unique_ptr<Dialer> Ready(const std::string& scenario) {
    auto dialer = std::make_unique<Dialer>(scenario);
    dialer->StoreLine("ISDN-Line1");
    dialer->Start("/run");
    dialer->TakeReports();
    return dialer;
  }
};

TEST_F(Conversation, StartReportsTheBoundLine) {
  Dialer dialer(kLine);
  dialer.StoreLine("ISDN-Line1");
  dialer.Start("/run");
  EXPECT_THAT(dialer.TakeReports(), ElementsAre("Init2LastOK|1", "line|ISDN-Line1"));
  EXPECT_FALSE(dialer.Controls().form.Visible());
}

TEST_F(Conversation, WholeCallUntilTheFarEndHangsUp) {
  const auto dialer = Ready(kAnswered);
  dialer->Command("cmd|call|0301234567");
  dialer->Pump(200);
  EXPECT_THAT(dialer->TakeReports(),
              ElementsAre("cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung",
                          "anzlog|W\xE4hlen", "anzlog|Klingeln", "btnHangUp|1", "anzlog|Verbunden", "cmd|autohide"));
  EXPECT_THAT(dialer->sim.TextsOf("lineMakeCall"), ElementsAre("0301234567"));
  dialer->sim.RemoteHangUp();
  dialer->Pump(200);
  EXPECT_THAT(dialer->TakeReports(),
              ElementsAre("btnHangUp|0", "anzlog|Getrennt", "cmd|autohide", "anzlog|Call Dropped", "btnCall|1|Idle",
                          "btnHangUp|0", "anzlog|Leerlauf", "cmd|autohide"));
  EXPECT_EQ(dialer->sim.OpenLines(), 0U);
  EXPECT_EQ(dialer->sim.LiveCalls(), 0U);
  EXPECT_EQ(dialer->Controls()[ControlId::txtTestStatus].Text(),
            "Anmeldung >> ISDN-Line1\r\nVorbereitung\r\nWählen\r\nKlingeln\r\nVerbunden\r\nGetrennt\r\nCall Dropped\r\n"
            "Leerlauf\r\n");
}

TEST_F(Conversation, ASecondCallStartsByOpeningTheLineAgain) {
  const auto dialer = Ready(kAnswered);
  for (int call = 1; call <= 2; ++call) {
    dialer->Command("cmd|call|0301234567");
    dialer->Pump(200);
    dialer->Command("cmd|hangup");
    dialer->Pump(200);
    dialer->Command("");
  }
  EXPECT_EQ(dialer->sim.CountOf("lineOpen"), 2U);
  EXPECT_EQ(dialer->sim.CountOf("lineClose"), 2U);
  EXPECT_EQ(dialer->sim.LiveCalls(), 0U);
}

TEST_F(Conversation, HangUp) {
  const auto dialer = Ready(kAnswered);
  dialer->Command("cmd|call|0301234567");
  dialer->Pump(200);
  dialer->TakeReports();
  dialer->Command("cmd|hangup|1234");
  EXPECT_THAT(dialer->TakeReports(),
              ElementsAre("cmd|quitt", "btnHangUp|0|cmdHangUp_Click", "anzlog|Auflegen", "btnCall|1|cmdHangUp_Click"));
  dialer->Pump(200);
  EXPECT_THAT(dialer->TakeReports(),
              ElementsAre("anzlog|Call Dropped", "btnCall|1|Idle", "btnHangUp|0", "anzlog|Leerlauf", "cmd|autohide"));
}

TEST_F(Conversation, ADropReplyThatIsStillOutWhenTheCallIsGivenBackNeverComes) {
  const auto dialer = Ready(
      "device name=ISDN-Line1 version=0x00020000\nlocation local=\"\"\ncall reply after=20\n"
      "drop state IDLE after=10\ndrop reply after=50\n");
  dialer->Command("cmd|call|0301234567");
  dialer->Pump(100);
  dialer->Command("cmd|hangup");
  dialer->TakeReports();
  dialer->Pump(200);
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("btnCall|1|Idle", "btnHangUp|0", "anzlog|Leerlauf", "cmd|autohide"));
}

struct RefusalRow {
  const char* name;
  const char* rules;
  std::vector<std::string> reports;
  bool lineStaysOpen;
};

class RefusedCall : public testing::TestWithParam<RefusalRow> {};

TEST_P(RefusedCall, IsReported) {
  Dialer dialer(std::string(kLine) + GetParam().rules);
  dialer.StoreLine("ISDN-Line1");
  dialer.Start("/run");
  dialer.TakeReports();
  dialer.Command("cmd|call|0301234567");
  dialer.Pump(200);
  EXPECT_THAT(dialer.TakeReports(), testing::ElementsAreArray(GetParam().reports));
  EXPECT_EQ(dialer.sim.OpenLines() != 0, GetParam().lineStaysOpen);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RefusedCall,
    testing::Values(
        RefusalRow{"open",
                   "refuse lineOpen 0x8000000F\n",
                   {"cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1",
                    "log|Open line ERROR -2147483633 In Use", "anz|OpenLine Error >> Log", "btnCall|1|cmdWahl_Click 1"},
                   false},
        RefusalRow{
            "request",
            "refuse lineMakeCall 0x80000005\n",
            {"cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung",
             "log|ERROR -2147483643 Call UnAvail", "anz|MakeCallAsynch Error >> Log", "btnCall|1|cmdWahl_Click 2"},
            false},
        RefusalRow{"requestAnsweredWithZero",
                   "refuse lineMakeCall 0\n",
                   {"cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung",
                    "log|ERROR 0 Unknown Error", "anz|MakeCallAsynch Error >> Log", "btnCall|1|cmdWahl_Click 2"},
                   false},
        RefusalRow{"reply",
                   "call reply after=10 result=0x80000048\n",
                   {"cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung",
                    "log|Call Error: Operation Failed", "anz|Call Error >> Log"},
                   false},
        RefusalRow{"noReplyAtAll",
                   "call nothing\n",
                   {"cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung"},
                   true},
        RefusalRow{
            "replyTwice",
            "call reply after=10\ncall reply after=20\n",
            {"cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung", "anzlog|W\xE4hlen"},
            true}),
    [](const auto& row) { return row.param.name; });

TEST_F(Conversation, AFailedDropIsReportedAndTheCallGoesOn) {
  const auto dialer = Ready(std::string(kAnswered) + "refuse lineDrop 0x80000048\n");
  dialer->Command("cmd|call|0301234567");
  dialer->Pump(200);
  dialer->TakeReports();
  dialer->Command("cmd|hangup");
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("cmd|quitt", "btnHangUp|0|cmdHangUp_Click", "anzlog|Auflegen",
                                                 "log|ERROR -2147483576 Operation Failed",
                                                 "anz|DropCallAsynch Error >> Log", "btnCall|1|cmdHangUp_Click"));
  EXPECT_EQ(dialer->sim.LiveCalls(), 1U);
}

TEST_F(Conversation, ARefusedDropReplyIsReported) {
  const auto dialer = Ready(
      "device name=ISDN-Line1 version=0x00020000\nlocation local=\"\"\ncall reply after=20\n"
      "drop reply after=10 result=0x80000048\n");
  dialer->Command("cmd|call|0301234567");
  dialer->Pump(100);
  dialer->Command("cmd|hangup");
  dialer->TakeReports();
  dialer->Pump(100);
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("log|Call Drop Error: Operation Failed", "anz|Drop Error >> Log"));
}

TEST_F(Conversation, ACallWhileACallIsUpTakesTheFailedOpenPathAndHangUpStillWorks) {
  const auto dialer = Ready(kAnswered);
  dialer->Command("cmd|call|0301234567");
  dialer->Pump(200);
  dialer->TakeReports();
  dialer->Command("cmd|call|0307654321");
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1",
                                                 "log|Open line ERROR 0 Unknown Error", "anz|OpenLine Error >> Log",
                                                 "btnCall|1|cmdWahl_Click 1"));
  EXPECT_FALSE(dialer->Controls()[ControlId::cmdHangUp].Enabled());
  dialer->Command("cmd|hangup");
  dialer->Pump(200);
  EXPECT_EQ(dialer->sim.LiveCalls(), 0U);
}

TEST_F(Conversation, AnEmptyNumberAsksForACallWithoutAnAddress) {
  const auto dialer = Ready(kAnswered);
  dialer->Command("cmd|call");
  EXPECT_THAT(dialer->sim.TextsOf("lineMakeCall"), ElementsAre("(null)"));
  EXPECT_THAT(dialer->sim.TextsOf("lineTranslateAddress"), IsEmpty());
}

TEST_F(Conversation, IdleWithAnEmptyNumberLeavesTheDialButtonOff) {
  const auto dialer = Ready(kAnswered);
  dialer->Command("cmd|call");
  dialer->Pump(200);
  dialer->sim.RemoteHangUp();
  dialer->TakeReports();
  dialer->Pump(200);
  const auto reports = dialer->TakeReports();
  EXPECT_THAT(reports, testing::Contains("btnCall|0|Idle"));
}

struct CommandRow {
  const char* name;
  std::string value;
  bool acknowledged;
};

class Command : public testing::TestWithParam<CommandRow> {};

TEST_P(Command, IsAcknowledgedExactlyWhenKnown) {
  Dialer dialer(kLine);
  dialer.Start("/run");
  dialer.TakeReports();
  dialer.Command(GetParam().value);
  const auto reports = dialer.TakeReports();
  EXPECT_EQ(!reports.empty() && reports.front() == "cmd|quitt", GetParam().acknowledged);
  EXPECT_EQ(dialer.View().unloads, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Command,
    testing::Values(CommandRow{"settings", "settings", true},
                    CommandRow{"settingsWithArguments", "settings|x|y|z", true},
                    CommandRow{"otherCase", "Settings", false}, CommandRow{"blankBehind", "settings ", false},
                    CommandRow{"unload", "unload", true}, CommandRow{"unknownSubCommand", "cmd|dance|1", true},
                    CommandRow{"cmdAlone", "cmd", true}, CommandRow{"debugUnreadable", "debug|maybe", true},
                    CommandRow{"debugAlone", "debug", true}, CommandRow{"debugTrue", "debug|True", true},
                    CommandRow{"barsOnly", "||||", false}, CommandRow{"unknown", "dance", false},
                    CommandRow{"hugeNumber", "cmd|call|" + std::string(65500, '7'), true},
                    CommandRow{"hugeBars", std::string(65536, '|'), false},
                    CommandRow{"highBytes", "cmd|call|\x80\xFF\xE4\x81", true}),
    [](const auto& row) { return row.param.name; });

TEST_F(Conversation, TheSameValueTwiceIsNoChange) {
  const auto dialer = Ready(kLine);
  dialer->Command("settings");
  dialer->Command("settings");
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("cmd|quitt"));
  dialer->Command("");
  dialer->Command("settings");
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("cmd|quitt"));
}

TEST_F(Conversation, UnloadDuringACallGivesTheLineBackAndBindsItAgain) {
  const auto dialer = Ready(kAnswered);
  dialer->Command("cmd|call|0301234567");
  dialer->Pump(200);
  dialer->TakeReports();
  dialer->Command("settings");
  dialer->Command("unload");
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("cmd|quitt", "cmd|quitt", "Init2LastOK|1", "line|ISDN-Line1",
                                                 "Init2LastOK|1", "line|ISDN-Line1"));
  EXPECT_FALSE(dialer->Controls().form.Visible());
  EXPECT_EQ(dialer->View().unloads, 0);
  EXPECT_EQ(dialer->sim.Registrations(), 1U);
}

}  // namespace
}  // namespace fonklav::test
