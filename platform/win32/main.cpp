#include <windows.h>

#include <exception>
#include <memory>

#include "app/Program.h"
#include "platform/win32/MainWindow.h"
#include "platform/win32/WideText.h"
#include "platform/win32/Win32Clock.h"
#include "platform/win32/Win32CodePage.h"
#include "platform/win32/Win32DdeTransport.h"
#include "platform/win32/Win32FileSystem.h"
#include "platform/win32/Win32IconPainter.h"
#include "platform/win32/Win32MessageBoxes.h"
#include "platform/win32/Win32MessageLoop.h"
#include "platform/win32/Win32NumberLocale.h"
#include "platform/win32/Win32PrivateProfile.h"
#include "platform/win32/Win32Process.h"
#include "platform/win32/Win32ShellFolders.h"
#include "platform/win32/Win32Telephony.h"

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

void Run(HINSTANCE instance) {
  System system(instance);
  auto program = std::make_unique<Program>(Ports{system.clock, system.codePage, system.dde, system.files, system.icons,
                                                 system.messageBoxes, system.loop, system.numberLocale, system.profile,
                                                 system.process, system.shellFolders, system.telephony});
  system.window.Create(program->Controls(), program->Input(), [&] {
    // The process may end at once, so what the program still has to say and to write is done now; but not beneath a
    // handler of its own that waits for a message box.
    if (system.loop.Waiting()) program.reset();
  });
  if (program->Load(system.window)) system.loop.Run([&](MSG& message) { return system.window.Takes(message); });
  system.window.Destroy();
}

}  // namespace
}  // namespace fonklav

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR /*arguments*/, int /*show*/) {
  try {
    fonklav::Run(instance);
    return 0;
  } catch (const std::exception& fault) {
    MessageBoxW(nullptr, fonklav::Wide(fault.what()).c_str(), L"FonklavTAPI", MB_ICONERROR);
    return 1;
  }
}
