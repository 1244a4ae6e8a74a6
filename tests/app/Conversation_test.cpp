#include "tests/app/Dialer.h"

// Whole conversations with the main program: what it says, what it hears, and the buttons that can be pressed then.
namespace fonklav::test {
namespace {

using namespace testing;
using Reports = std::vector<std::string>;

// The stages of a call, each written down here and nowhere else.
const std::string kOpens = "cmd|quitt\nanzlog|Anmeldung >> ISDN-Line1\nbtnHangUp|1\n";
const std::string kAsks = kOpens + "anzlog|Vorbereitung\n";
const std::string kTaken = "anzlog|W\xE4hlen\n";
const std::string kRings = "anzlog|Klingeln\n";
const std::string kConnected = "btnHangUp|1\nanzlog|Verbunden\ncmd|autohide\n";
const std::string kFarEndGone = "btnHangUp|0\nanzlog|Getrennt\ncmd|autohide\n";
const std::string kHangsUp = "cmd|quitt\nbtnHangUp|0|cmdHangUp_Click\nanzlog|Auflegen\n";
const std::string kHungUp = kHangsUp + "btnCall|1|cmdHangUp_Click\n";
const std::string kDropped = "anzlog|Call Dropped\n";
const std::string kIdle = "btnCall|1|Idle\nbtnHangUp|0\nanzlog|Leerlauf\ncmd|autohide\n";
const std::string kNotOpened = "log|Open line ERROR -2147483633 In Use\nanz|OpenLine Error >> Log\n";
const std::string kRefused = "log|ERROR -2147483643 Call UnAvail\nanz|MakeCallAsynch Error >> Log\n";
const std::string kBound = "Init2LastOK|1\nline|ISDN-Line1\n";

/// Something happens, time passes, and this is heard and can be pressed.
struct Step {
  std::string what;  ///< a value of the item; behind a "~", an order to the line
  int milliseconds;
  std::string stage;
};

struct Scene {
  const char* name;
  std::string rules;  ///< of the line
  std::vector<Step> steps;
  std::size_t open{0};  ///< lines, and calls on them, at the end
};

const Step kCallIsUp{"cmd|call|0301234567", 80, kAsks + kTaken + kRings + kConnected + "[HangUp]"};

const std::vector<Scene> kScenes{
    {"theFarEndHangsUp",
     kAnswered,
     {{"cmd|call|0301234567", 0, kAsks + "[HangUp]"},
      {"", 20, kTaken + "[HangUp]"},
      {"", 20, kRings + "[HangUp]"},
      {"", 20, "[HangUp]"},
      {"", 20, kConnected + "[HangUp]"},
      {"~hangup", 0, kFarEndGone + "[]"},
      {"", 10, kDropped + "[]"},
      {"", 10, kIdle + "[Dial]"}}},
    {"hangUpAndCallAgain",
     kAnswered,
     {kCallIsUp,
      {"cmd|hangup|1234", 0, kHungUp + "[Dial]"},
      {"", 10, kDropped + "[Dial]"},
      {"", 10, kIdle + "[Dial]"},
      kCallIsUp,
      {"cmd|hangup", 20, kHungUp + kDropped + kIdle + "[Dial]"}}},
    {"theDropsReplyIsLostWhenTheCallIsGivenBackBeforeIt",
     "call reply after=20\ndrop state IDLE after=10\ndrop reply after=50\n",
     {{"cmd|call|0301234567", 20, kAsks + kTaken + "[HangUp]"}, {"cmd|hangup", 200, kHungUp + kIdle + "[Dial]"}}},
    {"openRefused",
     "refuse lineOpen 0x8000000F\n",
     {{"cmd|call|0301234567", 200, kOpens + kNotOpened + "btnCall|1|cmdWahl_Click 1\n[Dial]"},
      {"cmd|call|Anna", 200, kOpens + kNotOpened + "btnCall|0|cmdWahl_Click 1\n[]"}}},
    {"requestRefused",
     "refuse lineMakeCall 0x80000005\n",
     {{"cmd|call|0301234567", 200, kAsks + kRefused + "btnCall|1|cmdWahl_Click 2\n[Dial]"},
      {"cmd|call|Anna", 200, kAsks + kRefused + "btnCall|0|cmdWahl_Click 2\n[]"}}},
    {"requestAnsweredWithZero",
     "refuse lineMakeCall 0\n",
     {{"cmd|call|0301234567", 200,
       kAsks + "log|ERROR 0 Unknown Error\nanz|MakeCallAsynch Error >> Log\nbtnCall|1|cmdWahl_Click 2\n[Dial]"}}},
    {"replyRefused",
     "call reply after=10 result=0x80000048\n",
     {{"cmd|call|0301234567", 9, kAsks + "[HangUp]"},
      {"", 1, "log|Call Error: Operation Failed\nanz|Call Error >> Log\n[HangUp]"}}},
    {"noReplyAtAll", "call nothing\n", {{"cmd|call|0301234567", 200, kAsks + "[HangUp]"}}, 1},
    {"replyTwice",
     "call reply after=10\ncall reply after=20\n",
     {{"cmd|call|0301234567", 200, kAsks + kTaken + "[HangUp]"}},
     1},
    {"dropRefused",
     kAnswered + "refuse lineDrop 0x80000048\n",
     {kCallIsUp,
      {"cmd|hangup", 200,
       kHangsUp + "log|ERROR -2147483576 Operation Failed\nanz|DropCallAsynch Error >> Log\n" +
           "btnCall|1|cmdHangUp_Click\n[Dial]"}},
     1},
    {"dropRefusedByItsReply",
     "call reply after=20\ndrop reply after=10 result=0x80000048\n",
     {{"cmd|call|0301234567", 20, kAsks + kTaken + "[HangUp]"},
      {"cmd|hangup", 10, kHungUp + "log|Call Drop Error: Operation Failed\nanz|Drop Error >> Log\n[Dial]"}},
     1},
    {"aSecondCallTakesTheFailedOpenPathAndHangUpStillWorks",
     kAnswered,
     {kCallIsUp,
      {"cmd|call|0307654321", 0,
       kOpens + "log|Open line ERROR 0 Unknown Error\nanz|OpenLine Error >> Log\nbtnCall|1|cmdWahl_Click 1\n[Dial]"},
      {"cmd|hangup", 20, kHungUp + kDropped + kIdle + "[Dial]"}}},
    {"withoutANumberTheDialButtonStaysOff",
     kAnswered,
     {{"cmd|call", 80, kCallIsUp.stage},
      {"~hangup", 20, kFarEndGone + kDropped + "btnCall|0|Idle\nbtnHangUp|0\nanzlog|Leerlauf\ncmd|autohide\n[]"},
      {"cmd|hangup", 0,
       kHangsUp + "log|ERROR -2147483624 Invalid Call Handle\nanz|DropCallAsynch Error >> Log\n" +
           "btnCall|0|cmdHangUp_Click\n[]"}}},
    {"theSameValueTwiceIsNoChange",
     "",
     {{"settings", 0, "cmd|quitt\n[]"}, {"settings", 0, "[]"}, {"", 0, "[]"}, {"settings", 0, "cmd|quitt\n[]"}}},
    {"unloadDuringACallGivesTheLineBackAndBindsItAgain",
     kAnswered,
     {kCallIsUp, {"unload", 200, "cmd|quitt\n" + kBound + kBound + "[Dial HangUp]"}}},
};

TEST(Conversation, IsHeardStageByStage) {
  for (const Scene& scene : kScenes) {
    SCOPED_TRACE(scene.name);
    const auto dialer = Ready(kLine + scene.rules);
    std::string told;
    for (const Step& step : scene.steps) {
      if (step.what.starts_with('~')) {
        dialer->sim.Command(step.what.substr(1));
      } else {
        dialer->Command(step.what);
      }
      dialer->Pump(step.milliseconds);
      const std::string stage = dialer->Stage();
      EXPECT_EQ(stage, step.stage) << step.what;
      for (const std::string& report : Split(stage, "\n")) {
        if (!report.starts_with("anzlog|") && !report.starts_with("log|")) continue;
        told += dialer->codePage.ToText(report.substr(report.find('|') + 1)) + "\r\n";
      }
    }
    EXPECT_EQ(dialer->Text(ControlId::txtTestStatus), told) << "the status box shows what is told";
    EXPECT_EQ(dialer->sim.OpenLines(), scene.open);
    EXPECT_EQ(dialer->sim.LiveCalls(), scene.open);
    EXPECT_EQ(dialer->sim.Registrations(), 1U);
    EXPECT_EQ(dialer->view.unloads, 0);
  }
}

TEST(Conversation, EveryKnownCommandIsAcknowledgedAndNoOther) {
  const Reports acknowledged{"cmd|quitt"};
  const Reports asked{"cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung"};
  const Reports unloaded{"cmd|quitt", "Init2LastOK|0", "line|Kein TAPI-Ger\xE4t ausgew\xE4hlt!"};
  struct Row {
    std::string value;
    Reports heard;
    Matcher<std::vector<std::string>> errors = IsEmpty();
  };
  for (const Row& row :
       {Row{"settings", acknowledged}, Row{"settings|x|y|z", acknowledged}, Row{"Settings", {}}, Row{"settings ", {}},
        Row{"unload", unloaded}, Row{"cmd|dance|1", acknowledged}, Row{"cmd", acknowledged},
        Row{"debug|maybe", acknowledged,
            ElementsAre("txtDDE_Change, Line:n + 13 + Type mismatch Params(S:debug|maybe)")},
        Row{"debug", acknowledged, ElementsAre("txtDDE_Change, Line:n + 13 + Type mismatch Params(S:debug)")},
        Row{"debug|True", acknowledged}, Row{"debug|-1,5", acknowledged}, Row{"debug|1e5", acknowledged},
        Row{"debug|1e", acknowledged, SizeIs(1)}, Row{"||||", {}}, Row{"dance", {}},
        Row{"cmd|call|" + std::string(65500, '7'), asked}, Row{std::string(65536, '|'), {}},
        Row{"cmd|call|\x80\xFF\xE4\x81", asked}}) {
    SCOPED_TRACE(row.value.substr(0, 40));
    const auto dialer = Ready(kLine, "");
    dialer->errors = row.errors;
    dialer->Command(row.value);
    EXPECT_EQ(dialer->TakeReports(), row.heard);
    EXPECT_EQ(dialer->view.unloads, 0);
  }
}

}  // namespace
}  // namespace fonklav::test
