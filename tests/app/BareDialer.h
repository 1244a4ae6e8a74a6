#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "app/Program.h"
#include "tests/fakes/FakeSystem.h"
#include "tests/fakes/FakeView.h"
#include "util/Text.h"

namespace fonklav::test {

/// What the program calls while it works.
inline const std::vector<std::string> kTelephony = Split(
    "lineInitializeEx lineNegotiateAPIVersion lineGetDevCaps lineGetTranslateCaps tapiGetLocationInfo lineOpen "
    "lineClose lineMakeCall lineDrop lineDeallocateCall lineTranslateAddress lineShutdown",
    " ");

/// Two lines; a call on them is taken after 20 ms and stays up until somebody hangs up.
inline constexpr const char* kTwoLinesAndACall =
    "device name=A\ndevice name=B version=0x00020000\nlocation local=9\ncall reply after=5\n"
    "call state DIALING after=10\ncall state CONNECTED after=20\ndrop reply after=5\ndrop state IDLE after=10\n";

/// A whole dialer on simulated telephony, with a main program at the other end of the link.
class BareDialer : public FakeSystem {
 public:
  explicit BareDialer(const std::string& scenario) : FakeSystem(scenario) {}

  /// Puts a line name into the settings, before the start.
  void StoreLine(const std::string& name) { profile.WriteString("TAPIDial", "TAPILine", name, kSettings); }

  /// Starts the program and lets its start timers tick. False when the start was refused.
  bool Start(const std::string& commandLine) {
    if (!Ask(commandLine)) return false;
    dde.DeliverOutcome();
    if (dde.alive) dde.Sink().OnAdviseAck(adviseStatus);
    StageAgain();
    dde.DeliverAcks();
    return true;
  }

  /// The start up to the question for a main program, which is still out afterwards.
  bool Ask(const std::string& commandLine) {
    process.commandLine = commandLine;
    program = std::make_unique<Program>(ports);
    if (!program->Load(view)) return false;
    Input().TimerTick(TimerId::Start0);
    return true;
  }

  /// The second line stage, if it is due.
  void StageAgain() {
    if (Controls().tmStart[1].Enabled()) Input().TimerTick(TimerId::Start1);
  }

  /// The main program changes the linked item, and time passes where this is given.
  void Command(std::string bytes, int milliseconds = 0) {
    dde.Sink().OnData(std::move(bytes));
    if (milliseconds > 0) Pump(milliseconds);
  }

  /// Time passes: line messages, acknowledgements and posted work arrive.
  void Pump(int milliseconds) {
    clock.Advance(std::chrono::milliseconds(milliseconds));
    sim.Advance(std::chrono::milliseconds(milliseconds));
    dde.DeliverAcks();
    loop.Run();
    if (dde.ticking) dde.Sink().OnTick();
  }

  /// Whether a report says of a button what the window shows, where it says anything of one.
  bool IsAsShown(std::string_view report) {
    const bool call = report.starts_with("btnCall|");
    if (!call && !report.starts_with("btnHangUp|")) return true;
    const bool enabled = Controls()[call ? ControlId::cmdWahl : ControlId::cmdHangUp].Enabled();
    return report.substr(report.find('|') + 1).starts_with(enabled ? '1' : '0');
  }

  std::vector<std::string> TakeReports() { return dde.TakeReports(); }
  std::string ErrorLog() { return File("C:\\ProgramData\\Rufmon\\log\\error.log"); }
  FormControls& Controls() { return program->Controls(); }
  FormInput& Input() { return program->Input(); }

  static constexpr const char* kDebugLog = "C:\\ProgramData\\Rufmon\\log\\debug.log";
  static constexpr const char* kSettings = "C:\\ProgramData\\Rufmon\\data\\sett_TAPI.ini";

  LineSimulator& sim{telephony};
  FakeView view;
  std::uint16_t adviseStatus{kDdeAckPositive};
  std::unique_ptr<Program> program;
};

}  // namespace fonklav::test
