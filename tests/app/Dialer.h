#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "app/Program.h"
#include "sim/SimTelephony.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeCodePage.h"
#include "tests/fakes/FakeDdeTransport.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeIconPainter.h"
#include "tests/fakes/FakeMessageBoxes.h"
#include "tests/fakes/FakeMessageLoop.h"
#include "tests/fakes/FakeNumberLocale.h"
#include "tests/fakes/FakePrivateProfile.h"
#include "tests/fakes/FakeProcess.h"
#include "tests/fakes/FakeShellFolders.h"
#include "tests/fakes/FakeView.h"

namespace fonklav::test {

/// A whole dialer on simulated telephony, with a main program at the other end of the link.
class Dialer {
 public:
  explicit Dialer(const std::string& scenario) : sim(Scenario::Parse(scenario)) {
    files.folders = {"c:\\programdata\\rufmon\\data", "c:\\programdata\\rufmon\\log", "c:\\rufmon", "c:\\rufmon\\base"};
  }

  /// Puts a line name into the settings, before the start.
  void StoreLine(const std::string& name) { profile.WriteString("TAPIDial", "TAPILine", name, kSettings); }

  /// Starts the program and lets its start timers tick. False when the start was refused.
  bool Start(const std::string& commandLine) {
    process.commandLine = commandLine;
    program = std::make_unique<Program>(
        Ports{clock, codePage, dde, files, icons, boxes, loop, locale, profile, process, shell, sim});
    if (!program->Load(view)) return false;
    Input().TimerTick(TimerId::Start0);
    if (dde.Connected()) dde.Sink().OnAck(adviseStatus, 0);
    if (Controls().tmStart[1].Enabled()) Input().TimerTick(TimerId::Start1);
    dde.DeliverAcks();
    return true;
  }

  /// The main program changes the linked item.
  void Command(const std::string& bytes) { dde.Sink().OnData(bytes); }

  /// Time passes: line messages, acknowledgements and posted work arrive.
  void Pump(int milliseconds) {
    clock.Advance(std::chrono::milliseconds(milliseconds));
    sim.Advance(std::chrono::milliseconds(milliseconds));
    dde.DeliverAcks();
    loop.Run();
    if (Controls().tmLink.Enabled()) Input().TimerTick(TimerId::Link);
  }

  std::vector<std::string> TakeReports() { return dde.TakeReports(); }
  FormControls& Controls() { return program->Controls(); }
  FormInput& Input() { return program->Input(); }
  FakeView& View() { return view; }
  const std::vector<FakeMessageBoxes::Shown>& Messages() const { return boxes.shown; }
  std::string ErrorLog() { return files.files["c:\\programdata\\rufmon\\log\\error.log"]; }
  std::string DebugLog() { return files.files["c:\\programdata\\rufmon\\log\\debug.log"]; }
  std::string Settings() { return files.files[FakeFileSystem::Key(kSettings)]; }

  static constexpr const char* kSettings = "C:\\ProgramData\\Rufmon\\data\\sett_TAPI.ini";

  FakeClock clock;
  FakeCodePage codePage;
  FakeDdeTransport dde;
  FakeFileSystem files;
  FakeIconPainter icons;
  FakeMessageBoxes boxes;
  FakeMessageLoop loop;
  FakeNumberLocale locale;
  FakePrivateProfile profile{files};
  FakeProcess process;
  FakeShellFolders shell;
  SimTelephony sim;
  FakeView view;
  std::uint16_t adviseStatus{kDdeAckPositive};
  std::unique_ptr<Program> program;
};

}  // namespace fonklav::test
