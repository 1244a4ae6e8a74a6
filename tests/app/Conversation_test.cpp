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
const std::string kRefused = "log|ERROR -2147483643 Call UnAvail\nanz|MakeCallAsynch Error >> Log\n";
const std::string kBound = "Init2LastOK|1\nline|ISDN-Line1\n";

/// The end of a dial whose line cannot be opened, because it is open already, or for another reason.
std::string NotOpened(const std::string& error, const std::string& button = "1|cmdWahl_Click 1\n[Dial]") {
  return kOpens + "log|Open line ERROR " + error + "\nanz|OpenLine Error >> Log\nbtnCall|" + button;
}

/// A hang-up that telephony does not take.
std::string NotDropped(const std::string& error, const std::string& button = "1|cmdHangUp_Click\n[Dial]") {
  return kHangsUp + "log|ERROR " + error + "\nanz|DropCallAsynch Error >> Log\nbtnCall|" + button;
}

using Event = std::function<void(LineSimulator& line)>;
Event GoesInto(std::uint32_t state) {
  return [=](LineSimulator& line) { line.InjectState(state); };
}
Event Sends(const LineMessage& message) {
  return [=](LineSimulator& line) { line.InjectMessage(message); };
}
constexpr std::uint32_t kLineRemove = 25;
constexpr std::uint32_t kReinit = 0x40000;

/// Something happens, time passes, and this is heard and can be pressed.
struct Step {
  std::variant<std::string, Event> what;  ///< a value of the item, or what the line does by itself
  int milliseconds;
  std::string stage;
};

struct Setting {
  const char* name;
  std::string rules;    ///< of the line
  std::size_t open{0};  ///< lines, and calls on them, at the end
};
using Scene = std::pair<Setting, std::vector<Step>>;

const Step kHungUpAndIdle{"cmd|hangup", 40, kHungUp + kDropped + kIdle + "[Dial]"};
const Step kAnew{"unload", 40, "cmd|quitt\n" + kBound + kBound + "[Dial]"};
const Step kCallIsUp{"cmd|call|0301234567", 80, kAsks + kTaken + kRings + kConnected + "[HangUp]"};
const Step kAnotherCallIsUp{"cmd|call|0307654321", 80, kCallIsUp.stage};

const std::vector<Scene> kScenes{
    {{"theFarEndHangsUp", kAnswered},
     {{"cmd|call|0301234567", 0, kAsks + "[HangUp]"},
      {"", 20, kTaken + "[HangUp]"},
      {"", 20, kRings + "[HangUp]"},
      {"", 20, "[HangUp]"},
      {"", 20, kConnected + "[HangUp]"},
      {&LineSimulator::RemoteHangUp, 0, kFarEndGone + "[]"},
      {"", 10, kDropped + "[]"},
      {"", 10, kIdle + "[Dial]"}}},
    {{"hangUpAndCallAgain", kAnswered},
     {kCallIsUp, {"cmd|hangup|1234", 20, kHungUp + kDropped + kIdle + "[Dial]"}, kCallIsUp, kHungUpAndIdle}},
    {{"theDropsReplyIsLostWhenTheCallIsGivenBackBeforeIt",
      "call reply after=20\ndrop state IDLE after=10\ndrop reply after=50\n"},
     {{"cmd|call|0301234567", 20, kAsks + kTaken + "[HangUp]"}, {"cmd|hangup", 200, kHungUp + kIdle + "[Dial]"}}},
    {{"openRefused", "refuse lineOpen 0x8000000F\n"},
     {{"cmd|call|0301234567", 200, NotOpened("-2147483633 In Use")},
      {"cmd|call|Anna", 200, NotOpened("-2147483633 In Use", "0|cmdWahl_Click 1\n[]")}}},
    {{"requestRefused", "refuse lineMakeCall 0x80000005\n"},
     {{"cmd|call|0301234567", 200, kAsks + kRefused + "btnCall|1|cmdWahl_Click 2\n[Dial]"},
      {"cmd|call|Anna", 200, kAsks + kRefused + "btnCall|0|cmdWahl_Click 2\n[]"}}},
    {{"requestAnsweredWithZero", "refuse lineMakeCall 0\n"},
     {{"cmd|call|0301234567", 200,
       kAsks + "log|ERROR 0 Unknown Error\nanz|MakeCallAsynch Error >> Log\nbtnCall|1|cmdWahl_Click 2\n[Dial]"}}},
    {{"replyRefused", "call reply after=10 result=0x80000048\n"},
     {{"cmd|call|0301234567", 9, kAsks + "[HangUp]"},
      {"", 1, "log|Call Error: Operation Failed\nanz|Call Error >> Log\n[HangUp]"}}},
    {{"noReplyAtAll", "call nothing\n", 1}, {{"cmd|call|0301234567", 200, kAsks + "[HangUp]"}}},
    {{"repliesTwice", "call reply after=10\ncall reply after=20\ndrop reply after=10\ndrop reply after=20\n", 1},
     {{"cmd|call|0301234567", 200, kAsks + kTaken + "[HangUp]"}, {"cmd|hangup", 200, kHungUp + kDropped + "[Dial]"}}},
    {{"dropRefused", kAnswered + "refuse lineDrop 0x80000048\n", 1},
     {kCallIsUp,
      {"cmd|hangup", 200, NotDropped("-2147483576 Operation Failed")},
      {GoesInto(LINECALLSTATE_CONNECTED), 0, kConnected + "[Dial HangUp]"}}},
    {{"dropRefusedByItsReply", "call reply after=20\ndrop reply after=10 result=0x80000048\n", 1},
     {{"cmd|call|0301234567", 20, kAsks + kTaken + "[HangUp]"},
      {"cmd|hangup", 10, kHungUp + "log|Call Drop Error: Operation Failed\nanz|Drop Error >> Log\n[Dial]"}}},
    {{"aSecondCallTakesTheFailedOpenPathAndHangUpStillWorks", kAnswered},
     {kCallIsUp, {"cmd|call|0307654321", 0, NotOpened("0 Unknown Error")}, kHungUpAndIdle}},
    {{"withoutANumberTheDialButtonStaysOff", kAnswered},
     {{"cmd|call", 80, kCallIsUp.stage},
      {&LineSimulator::RemoteHangUp, 20,
       kFarEndGone + kDropped + "btnCall|0|Idle\nbtnHangUp|0\nanzlog|Leerlauf\ncmd|autohide\n[]"},
      {"cmd|hangup", 0, NotDropped("-2147483624 Invalid Call Handle", "0|cmdHangUp_Click\n[]")}}},
    {{"theSameValueTwiceIsNoChange", ""},
     {{"settings", 0, "cmd|quitt\n[]"}, {"settings", 0, "[]"}, {"", 0, "[]"}, {"settings", 0, "cmd|quitt\n[]"}}},
    {{"unloadDuringACallGivesTheLineBackAndBindsItAgain", kAnswered},
     {kCallIsUp, {"unload", 200, "cmd|quitt\n" + kBound + kBound + "[Dial HangUp]"}}},

    // What drivers do that keep no order. What a line makes impossible, "unload" mends: it gives all back and binds
    // anew.
    {{"theReplyComesAfterTheConnection", "call state CONNECTED after=10\ncall reply after=20\n"},
     {{"cmd|call|0301234567", 10, kAsks + kConnected + "[HangUp]"}, {"", 10, kTaken + "[HangUp]"}, kHungUpAndIdle}},
    {{"idleComesBeforeTheReplySoThatNobodyClosesTheLine", "call state IDLE after=10\ncall reply after=20\n", 1},
     {{"cmd|call|0301234567", 20, kAsks + kIdle + kTaken + "[Dial]"},
      {"cmd|call|0307654321", 20, NotOpened("0 Unknown Error")},
      kAnew,
      {"cmd|call|0301234567", 20, kAsks + kIdle + kTaken + "[Dial]"}}},
    {{"disconnectedAndNeverIdle", kAnswered + "drop nothing\n", 1},
     {kCallIsUp,
      {&LineSimulator::RemoteHangUp, 200, kFarEndGone + "[]"},
      {"cmd|hangup", 200, kHungUp + "[Dial]"},
      {"cmd|call|0301234567", 20, NotOpened("0 Unknown Error")},
      kAnew,
      kCallIsUp}},
    {{"idleTwice", kAnswered, 1},
     {kCallIsUp,
      {GoesInto(LINECALLSTATE_IDLE), 0, kIdle + "[Dial]"},
      {Sends({0x30001, LINE_CALLSTATE, 2, LINECALLSTATE_IDLE}), 0, kIdle + "[Dial]"},
      kAnotherCallIsUp}},
    {{"theLineIsTakenAwayInMidCall", kAnswered, 1},
     {kCallIsUp,
      {&LineSimulator::ForceClose, 40, "[HangUp]"},
      {"cmd|hangup", 40, NotDropped("-2147483624 Invalid Call Handle")},
      {"cmd|call|0301234567", 40, NotOpened("-2147483624 Invalid Call Handle")},
      kAnew,
      kCallIsUp}},
    {{"telephonyWantsToBeStartedAnew", kAnswered},
     {kCallIsUp, {Sends({0, LINE_LINEDEVSTATE, 2, kReinit}), 40, "[HangUp]"}, kHungUpAndIdle}},
    {{"theDeviceIsRemovedWhileItsLineIsOpen", kAnswered, 1},
     {kCallIsUp,
      {Sends({0, kLineRemove, 2}), 0, "[HangUp]"},
      {&LineSimulator::ForceClose, 40, "[HangUp]"},
      {[](LineSimulator& line) { line.Rules().Apply("refuse lineOpen 0x80000002 times=1"); }, 0, "[HangUp]"},
      {"cmd|hangup", 40, NotDropped("-2147483624 Invalid Call Handle")},
      kAnew,
      {"cmd|call|0301234567", 40, NotOpened("-2147483646 Bad Device ID")},
      kAnotherCallIsUp}},
    {{"handlesAreReusedAtOnce", "tapi reuse=1\n" + kAnswered, 1},
     {kCallIsUp, kHungUpAndIdle, kCallIsUp, kHungUpAndIdle, kCallIsUp}},
    {{"hungUpBeforeTheReplyBroughtTheHandle", "call reply after=100\n"},
     {{"cmd|call|0301234567", 50, kAsks + "[HangUp]"},
      {"cmd|hangup", 40, NotDropped("0 Unknown Error")},
      {"", 200, kTaken + "[Dial]"},
      kHungUpAndIdle}},
    {{"everythingComesFromInsideTheRequest",
      "tapi inside=1\ncall reply\ncall state CONNECTED\ndrop reply\ndrop state IDLE\n"},
     {{"cmd|call|0301234567", 40, kAsks + kConnected + "[HangUp]"},
      {"cmd|hangup", 40, kHangsUp + kIdle + "btnCall|1|cmdHangUp_Click\n[Dial]"}}},
    {{"aThousandDevices", "repeat 1000 device name=\"Line {n}\"\n" + kAnswered}, {kCallIsUp, kHungUpAndIdle}},
    {{"aNameWithoutItsNul", "patch devcaps offset=32 value=10\n" + kAnswered}, {kCallIsUp, kHungUpAndIdle}},
    {{"aNameOfFourGigabytes", "patch devcaps offset=32 value=0xFFFFFFFF\n" + kAnswered},
     {{"cmd|call|0301234567", 80, ReplaceAll(kCallIsUp.stage, "ISDN-Line1", "")}, kHungUpAndIdle}},
    {{"theNeededSizesGrowEachTime",
      "patch devcaps offset=4 value=3000 step=1000\npatch translatecaps offset=4 value=6000 step=1\n" + kAnswered, 1},
     {kCallIsUp, kHungUpAndIdle, kAnew, kCallIsUp}},
    {{"aCallThatNeverEnds", "call reply after=20\ncall state CONNECTED after=40\ndrop nothing\n"},
     {{"cmd|call|0301234567", 80, kAsks + kTaken + kConnected + "[HangUp]"},
      {"cmd|hangup", 1000, kHungUp + "[Dial]"},
      kAnew}},
};

/// Plays a scene from its first step to the end of the program.
void Play(const Scene& scene) {
  const auto& [setting, steps] = scene;
  SCOPED_TRACE(setting.name);
  const auto dialer = Ready(kLine + setting.rules);
  std::string told;
  for (const Step& step : steps) {
    if (const auto* const value = std::get_if<std::string>(&step.what)) {
      dialer->Command(*value);
    } else {
      std::get<Event>(step.what)(dialer->sim);
    }
    dialer->Pump(step.milliseconds);
    const std::string stage = dialer->Stage();
    EXPECT_EQ(stage, step.stage) << "step " << &step - steps.data() + 1;
    for (const std::string& report : Split(stage, "\n")) {
      if (!report.starts_with("anzlog|") && !report.starts_with("log|")) continue;
      told += dialer->codePage.ToText(report.substr(report.find('|') + 1)) + "\r\n";
    }
  }
  EXPECT_EQ(dialer->Text(ControlId::txtTestStatus), told) << "the status box shows what is told";
  EXPECT_EQ(dialer->sim.OpenLines(), setting.open);
  EXPECT_EQ(dialer->sim.LiveCalls(), setting.open);
  EXPECT_EQ(dialer->sim.Registrations(), 1U);
  EXPECT_EQ(dialer->view.unloads, 0);
  dialer->dde.Sink().OnTerminate();
  dialer->loop.Run();
  EXPECT_EQ(dialer->view.unloads, 1);
  EXPECT_EQ(dialer->sim.OpenLines() + dialer->sim.LiveCalls() + dialer->sim.Registrations(), 0U);
}

TEST(Conversation, IsHeardStageByStageWhateverTheDriverDoes) { std::ranges::for_each(kScenes, Play); }

TEST(Conversation, StandsInTheDebugLogStepByStep) {
  Dialer dialer(kLine + kAnswered);
  dialer.Switch("LogTAPI=1\r\n");
  dialer.StoreLine("ISDN-Line1");
  dialer.Start("/run");
  dialer.File(Dialer::kDebugLog).clear();
  dialer.Command("cmd|call|030/1234567", 100);
  dialer.sim.RemoteHangUp();
  dialer.Pump(100);
  dialer.Command("cmd|hangup");
  EXPECT_THAT(
      dialer.Steps(),
      ElementsAre("DDE Execute - cmd|call|030/1234567", "MakeCallAsynch - Number: 030/1234567",
                  "MakeCallAsynch - To API: 030 1234567", "TAPIMakeCallResult -  OK", "TAPIDialing", "TAPIConnected",
                  "TAPIDisconnected", "TAPIDropCallResult -  Call Dropped", "TAPIIdle", "DDE Execute - cmd|hangup"));
}

TEST(Conversation, EveryKnownCommandIsAcknowledgedAndNoOther) {
  const Reports acknowledged{"cmd|quitt"};
  const Reports asked{"cmd|quitt", "anzlog|Anmeldung >> ISDN-Line1", "btnHangUp|1", "anzlog|Vorbereitung"};
  const Reports unloaded{"cmd|quitt", "Init2LastOK|0", "line|Kein TAPI-Ger\xE4t ausgew\xE4hlt!"};
  using Row = std::pair<std::string, Reports>;
  for (const auto& [value, heard] :
       {Row{"settings", acknowledged}, Row{"settings|x|y|z", acknowledged}, Row{"Settings", {}}, Row{"settings ", {}},
        Row{"unload", unloaded}, Row{"cmd|dance|1", acknowledged}, Row{"cmd", acknowledged}, Row{"||||", {}},
        Row{"dance", {}}, Row{"cmd|call|" + std::string(65500, '7'), asked}, Row{std::string(65536, '|'), {}},
        Row{"cmd|call|\x80\xFF\xE4\x81", asked}}) {
    SCOPED_TRACE(value.substr(0, 40));
    const auto dialer = Ready(kLine, "");
    dialer->Command(value);
    EXPECT_EQ(dialer->TakeReports(), heard);
    EXPECT_EQ(dialer->view.unloads, 0);
  }
}

TEST(Conversation, AFlagIsWhatThePlatformReadsAsANumberOrAWord) {
  const auto dialer = Ready(kLine, "");
  const auto acknowledged = [&](const std::string& flag) {
    dialer->Command("debug" + flag);
    EXPECT_THAT(dialer->TakeReports(), ElementsAre("cmd|quitt")) << flag;
  };
  for (const char* good : {"|True", "|FALSE", "|-1", "|-1,5", "|1e5", "|0E5", "|1d-2", "| 2 "}) acknowledged(good);
  std::vector<std::string> errors;
  for (const std::string bad : {"|maybe", "", "|", "|1e", "|e1", "|1 e2", "| True", "|0x1"}) {
    acknowledged(bad);
    errors.push_back("txtDDE_Change, Line:n + 13 + Type mismatch Params(S:debug" + bad + ")");
  }
  dialer->errors = ElementsAreArray(errors);
}

}  // namespace
}  // namespace fonklav::test
