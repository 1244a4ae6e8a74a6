#include <windows.h>

#include <exception>
#include <memory>

#include "app/Program.h"
#include "platform/win32/SystemFunction.h"
#include "platform/win32/Win32DdeTransport.h"
#include "platform/win32/Win32FileSystem.h"
#include "platform/win32/Win32MessageLoop.h"
#include "platform/win32/Win32System.h"
#include "platform/win32/Win32Telephony.h"
#include "window/MainWindow.h"

namespace fonklav {
namespace {

/// The system's side of every port.
struct System {
  explicit System(HINSTANCE instance) : window(instance), dde(instance), telephony(instance) {}

  MainWindow window;
  Win32Clock clock;
  Win32CodePage codePage;
  Win32DdeTransport dde;
  Win32FileSystem files;
  Win32IconPainter icons;
  Win32MessageBoxes messageBoxes{[this] { return window.BoxOwner(); }};
  Win32MessageLoop loop;
  Win32NumberLocale numberLocale;
  Win32PrivateProfile profile;
  Win32Process process;
  Win32ShellFolders shellFolders;
  Win32Telephony telephony;
};

/// Whatever loads a library from here on, be it Windows itself, finds it in the system folder and nowhere else: neither
/// the program's folder nor the current one, which others may write to, can bring in one of the same name.
void LoadFromSystemFolderOnly() noexcept {
  SetDllDirectoryW(L"");
  // Windows 7 has this one by an update (KB2533623) only.
  using SetDirectories = BOOL(WINAPI*)(DWORD);
  if (const auto set = SystemFunction<SetDirectories>(L"kernel32.dll", "SetDefaultDllDirectories"); set != nullptr) {
    set(LOAD_LIBRARY_SEARCH_SYSTEM32);
  }
}

/// The program's whole life. `program` may be empty when this returns: Windows has ended the session.
void Live(System& system, std::unique_ptr<Program>& program) {
  system.window.Create(program->Controls(), program->Input(), [&] {
    // The process may end at once, so what the program still has to say and to write is done now; but not beneath a
    // handler of its own that waits for a message box.
    if (system.loop.Waiting()) program.reset();
  });
  if (program->Load(system.window)) system.loop.Run([&](MSG& message) { return system.window.Takes(message); });
  system.window.Destroy();
}

/// The exit code of the process.
int Run(HINSTANCE instance) {
  System system(instance);
  auto program = std::make_unique<Program>(Ports{system.clock, system.codePage, system.dde, system.files, system.icons,
                                                 system.messageBoxes, system.loop, system.numberLocale, system.profile,
                                                 system.process, system.shellFolders, system.telephony});
  try {
    Live(system, program);
    return 0;
  } catch (const std::exception& fault) {
    if (!program) throw;
    system.window.Destroy();
    program->ReportFault(fault.what());
    return 1;
  }
}

/// Tells of a fault where there is no program that could.
void ReportFault(const std::exception& fault) {
  Win32MessageBoxes([] { return HWND{}; }).Show(fault.what(), kMessageBoxCritical, "Rufmon - FonklavTAPI");
}

}  // namespace
}  // namespace fonklav

// What was thrown out of here would end the process without a word of ours.
int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR /*arguments*/, int /*show*/) {
  fonklav::LoadFromSystemFolderOnly();
  try {
    return fonklav::Run(instance);
  } catch (const std::exception& fault) {
    fonklav::ReportFault(fault);
    return 1;
  }
}
