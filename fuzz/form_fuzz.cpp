#include <charconv>
#include <map>
#include <utility>

#include "fuzz/Bytes.h"
#include "sim/TapiCodes.h"
#include "tests/app/BareDialer.h"
#include "util/Text.h"

// The whole program under any sequence of what a main program, a person, a clock, a line and a failing system do to it,
// also from inside a telephony function and below a message box. After every step the invariants are looked at.
namespace fonklav::test {
namespace {

constexpr std::array kStarts{"/run", "/sett", "0301234567"};
const std::vector<std::string> kCommands = Split(
    "cmd|call|0301234567,cmd|call|+49 30 1234567,cmd|call|110,cmd|hangup,unload,settings,debug|1,cmd|x,y|z,", ",");
constexpr std::array kTexts{"0301234567", "+49 (30) 1/2", "*#", "abc", "9", ""};
constexpr std::array kButtons{ControlId::cmdWahl, ControlId::cmdHangUp, ControlId::cmdLogClear, ControlId::cmdSave,
                              ControlId::cmdExit, ControlId::cmdInfo0,  ControlId::cmdInfo1};
constexpr std::array kStructures{"devcaps", "translatecaps", "translateoutput"};
constexpr std::array kStates{LINECALLSTATE_IDLE, LINECALLSTATE_DIALING, LINECALLSTATE_CONNECTED,
                             LINECALLSTATE_DISCONNECTED, std::uint32_t{2}};
constexpr std::array kStatuses{kDdeAckPositive, kDdeAckBusy, std::uint16_t{0}};
constexpr std::int32_t kOperationFailed = static_cast<std::int32_t>(0x80000048);

/// Tells at the end of the process how many steps there were.
struct Steps {
  Steps() = default;
  Steps(const Steps&) = delete;
  Steps& operator=(const Steps&) = delete;
  ~Steps() { std::fprintf(stderr, "stat::events: %zu\n", count); }
  std::size_t count{0};
};

class Form : public BareDialer {
 public:
  explicit Form(Bytes bytes) : BareDialer(""), bytes_(bytes) {
    static const Scenario scenario = Scenario::Parse(kTwoLinesAndACall);
    sim.Rules() = scenario;
    FailBy(faults_);
    dde.answersAtOnce = false;
    sim.inside = [this](std::string_view function) { EnterTelephony(function); };
    boxes.whileShown = [this] { Nest(); };
    dde.onReport = [this](std::string_view report) { HearReport(report); };
  }

  void Run() {
    if (bytes_.Flag()) File(kSettings) = "[TAPIDial]\r\nTAPILine=A\r\n";
    if (!Ask(bytes_.OneOf(kStarts))) return;
    while (Going()) Step();
    if (view.unloads == 0) Input().CloseRequested(UnloadMode::SessionEnds);
    faults_.Disarm();
    loop.Run();
    Require(view.unloads == 1, "the form unloads once");
    program.reset();
    loop.Run();
    Check();
    Require(sim.Registrations() <= lostShutdowns_, "telephony is shut down at the end");
    Require(sim.OpenLines() <= lostCloses_, "no line stays open at the end");
  }

 private:
  [[nodiscard]] bool Going() { return !bytes_.Empty() && view.unloads == 0; }

  void Step() {
    static constexpr std::array kSteps{&Form::MainProgram, &Form::Link,      &Form::Acknowledge, &Form::Person,
                                       &Form::List,        &Form::Time,      &Form::Line,        &Form::AnyLine,
                                       &Form::DeadLine,    &Form::Structure, &Form::Refuse,      &Form::Fail,
                                       &Form::System,      &Form::NestSoon};
    static Steps steps;
    ++steps.count;
    (this->*bytes_.OneOf(kSteps))();
    if (depth_ == 0) {
      loop.Run();
      disturbed_ = false;
    }
    Check();
  }

  void MainProgram() {
    if (dde.ticking) Command(bytes_.OneOf(kCommands));
  }
  void Link() {
    if (!dde.ticking) return;
    const std::size_t what = bytes_.Below(8);
    if (what < 4 && !std::exchange(outcome_, true)) {
      dde.serverRunning = answered_ = what != 0;
      dde.DeliverOutcome();
    } else if (what == 4) {
      dde.alive = false;
    } else if (what == 5) {
      dde.postSucceeds = bytes_.Flag();
    } else if (what == 6 && answered_) {
      dde.Sink().OnTerminate();
    } else if (answered_) {
      dde.Sink().OnAdviseAck(bytes_.OneOf(kStatuses));
    }
  }
  void Acknowledge() {
    if (!dde.ticking || dde.posted.empty()) return;
    const auto execute = dde.posted.begin() + static_cast<std::ptrdiff_t>(bytes_.Below(256) % dde.posted.size());
    const DdeExecute number = *execute;
    dde.posted.erase(execute);
    dde.Sink().OnExecuteAck(number, bytes_.OneOf(kStatuses));
  }
  void Person() {
    const ControlId button = bytes_.OneOf(kButtons);
    const ControlId box = bytes_.Flag() ? ControlId::txtNumber : ControlId::txtSettVW;
    const std::size_t what = bytes_.Below(8);
    if (what < 4 && Controls()[button].Enabled()) Input().Click(button);
    if (what == 4 || what == 5) Input().Edit(box, bytes_.OneOf(kTexts));
    if (what == 6) Input().KeyPress(box, static_cast<int>(bytes_.Below(256)));
    if (what == 7) Input().Resized(static_cast<float>(bytes_.Number()), static_cast<float>(bytes_.Number()));
  }
  void List() {
    if (Controls().lstTAPI.Count() == 0) return;
    const std::size_t entry = bytes_.Below(256) % Controls().lstTAPI.Count();
    if (bytes_.Flag()) return Input().ClickEntry(entry);
    Input().TickEntry(entry, bytes_.Flag());
  }
  void Time() {
    const std::size_t what = bytes_.Below(6);
    if (what < 3 && Controls().tmStart[what].Enabled()) Input().TimerTick(static_cast<TimerId>(what));
    if (what == 3) Pump(static_cast<int>(bytes_.Below(256)) * 40);
    if (what >= 4) Pump(10);
  }
  void Line() {
    const std::size_t what = bytes_.Below(8);
    if (what < 6) sim.InjectState(bytes_.OneOf(kStates));
    if (what == 6) sim.RemoteHangUp();
    if (what == 7 && sim.ForceClose()) taken_ = true;
    sim.Advance({});
  }
  void AnyLine() {
    const bool state = bytes_.Flag();
    sim.InjectMessage({bytes_.Flag() ? sim.NewestCall() : 0, state ? LINE_CALLSTATE : LINE_REPLY,
                       newest_ + bytes_.Below(2), state ? bytes_.OneOf(kStates) : bytes_.Below(16),
                       bytes_.Flag() ? 0x80000048 : 0, 0});
    sim.Advance({});
  }
  /// A message for an object that was replaced: nobody must hear of it.
  void DeadLine() {
    sim.Advance({});
    if (newest_ < 2) return;
    const bool before = std::exchange(quiet_, true);
    sim.InjectMessage({0, LINE_CALLSTATE, 1 + bytes_.Below(newest_ - 1), bytes_.OneOf(kStates), 0, 0});
    sim.Advance({});
    quiet_ = before;
  }
  void Structure() {
    Scenario& rules = sim.Rules();
    if (bytes_.Flag()) {
      faulted_ = true;  // a structure may say what does not fit: an overflow
      rules.patches.push_back({bytes_.OneOf(kStructures),
                               {},
                               static_cast<std::uint32_t>(bytes_.Below(64)) * 4,
                               bytes_.Flag() ? bytes_.Number() : static_cast<std::uint32_t>(bytes_.Below(256))});
    } else if (bytes_.Flag()) {
      rules.patches.clear();
    } else if (bytes_.Flag() && rules.devices.size() < 8) {
      rules.devices.push_back(rules.devices.front());
      rules.devices.back().name = bytes_.Text(4);
    } else {
      rules.locations.front().localAccess = bytes_.Text(4);
    }
  }
  void Refuse() { sim.Rules().refusals.push_back({bytes_.OneOf(kTelephony), kOperationFailed, 1, 1}); }
  void Fail() {
    faulted_ = true;
    faults_.Arm(static_cast<long>(bytes_.Below(64)), false);
  }
  void System() {
    const std::size_t what = bytes_.Below(16);
    if (what < 4) return Input().CloseRequested(static_cast<UnloadMode>(what));
    loop.Run();
  }
  void NestSoon() { nestIn_ = 1 + bytes_.Below(8); }

  /// Lets a few steps happen in the middle of what goes on, if that was asked for. Whether it was.
  bool Nest() {
    if (nestIn_ == 0 || --nestIn_ != 0 || depth_ == 3) return false;
    ++depth_;
    disturbed_ = true;
    for (std::size_t left = 1 + bytes_.Below(3); left > 0 && Going(); --left) Step();
    --depth_;
    return true;
  }

  void EnterTelephony(std::string_view function) {
    CheckCalls();
    Require(!quiet_, "a dead line object calls telephony");
    Require(function != "lineMakeCall" || sim.OpenLines() > 0 || taken_, "a call without an open line");
    Require(function != "lineShutdown" || disturbed_ || sim.OpenLines() <= lostCloses_, "shut down with an open line");
    if (Nest()) ++interrupted_[std::string(function)];
    try {
      if (faults_.Due()) throw RunTimeError(ErrorNumber::FileNotFound);
    } catch (const RunTimeError&) {
      if (function == "lineClose") ++lostCloses_;
      if (function == "lineShutdown") ++lostShutdowns_;
      throw;
    }
  }

  void HearReport(std::string_view report) {
    Require(!quiet_, "an event of a dead line object");
    Require(answered_ && dde.ticking, "a report without a conversation");
    Require(IsAsShown(report), "a report tells the state of its button");
  }

  void Check() {
    CheckCalls();
    Require(disturbed_ || sim.OpenLines() <= 1 + lostCloses_, "one open line at most");
    Require(disturbed_ || sim.LiveCalls() <= 1 + lostCloses_, "one call at most");
    Require(view.unloads <= 1, "the form unloads once");
    if (!faulted_) CheckLog();
  }
  /// Whoever dials or ticks while there is no line object, or one that is not registered yet, is told so by errors 91,
  /// 9 and 380. Nothing else may have failed.
  void CheckLog() {
    const std::string log = ErrorLog();
    for (const std::string& line : Split(std::string_view(log).substr(0, log.rfind(kCrLf)), kCrLf)) {
      const auto has = [&](const char* number) { return line.find(number) != std::string::npos; };
      Require(line.empty() || has("+ 91 +") || has("+ 9 +") || has("+ 380 +"), line);
    }
  }
  void CheckCalls() {
    for (; seen_ < sim.Calls().size(); ++seen_) CheckCall(sim.Calls()[seen_]);
  }
  void CheckCall(const CallRecord& call) {
    const std::size_t gone = interrupted_.contains(call.function) ? interrupted_[call.function] : 0;
    if (call.function == "lineOpen" && call.result == 0) newest_ = NumberBehind(call, "instance=0x");
    if (call.function == "lineClose" && call.result == kOperationFailed) ++lostCloses_;
    if (call.function == "lineShutdown" && call.result == kOperationFailed) ++lostShutdowns_;
    if (call.function == "lineMakeCall") {
      const std::size_t line = NumberBehind(call, "line=0x");
      Require(line >= dialed_ || gone > 0, "a call on a line whose successor has dialed already");
      dialed_ = std::max(dialed_, line);
    }
    // A call handle stays after IDLE and is given back or dropped once more: telephony refuses that.
    const bool badLine = call.result == sim::LINEERR_INVALLINEHANDLE && !taken_;
    if (badLine || call.result == sim::LINEERR_INVALAPPHANDLE) Require(gone > 0, call.LogLine());
  }
  static std::size_t NumberBehind(const CallRecord& call, std::string_view name) {
    std::size_t number = 0;
    const std::string_view text = std::string_view(call.arguments).substr(call.arguments.find(name) + name.size());
    std::from_chars(text.data(), text.data() + text.size(), number, 16);
    return number;
  }

  Bytes bytes_;
  Faults faults_;
  std::map<std::string, std::size_t> interrupted_;  ///< calls whose handle may have gone in the middle
  std::size_t seen_{0};                             ///< calls of telephony that were looked at
  std::size_t newest_{0};                           ///< instance of the line object that opened a line last
  std::size_t dialed_{0};                           ///< line of the newest call
  std::size_t lostCloses_{0};
  std::size_t lostShutdowns_{0};
  std::size_t nestIn_{0};
  std::size_t depth_{0};
  bool taken_{false};      ///< telephony has taken a line away, whose handle the form keeps
  bool disturbed_{false};  ///< the step was interrupted: an object let go of in its middle may still hold its line
  bool outcome_{false};
  bool answered_{false};
  bool quiet_{false};
  bool faulted_{false};
};

}  // namespace

void Fuzz(Bytes bytes) { Form(bytes).Run(); }

}  // namespace fonklav::test
