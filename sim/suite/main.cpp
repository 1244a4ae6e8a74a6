#include <fcntl.h>
#include <io.h>
#include <objbase.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <exception>

#include "sim/suite/InputLines.h"
#include "sim/suite/Script.h"

/// suite.exe [--messages] PROGRAM: plays the suite's main program towards the dialer PROGRAM, as the lines of standard
/// input tell it; with --messages not through the system's DDE library. Ends with the input, with 0 when everything
/// that it was told to wait for has happened.
int main(int argc, char** argv) {
  using namespace fonklav::suite;
  const bool messages = argc == 3 && std::strcmp(argv[1], "--messages") == 0;
  if (argc != 2 && !messages) {
    std::fputs("usage: suite.exe [--messages] PROGRAM < SCRIPT\n", stderr);
    return 2;
  }
  try {
    SetProcessDPIAware();  // where a person aims at is said in pixels of the screen
    // Reports are bytes of the code page and leave as such; so do the line ends.
    _setmode(_fileno(stdout), _O_BINARY);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);  // for what a screen reader asks; the end of the process ends it
    InputLines input;
    Script script(argv[argc - 1], messages ? Script::Speech::Messages : Script::Speech::Library);
    while (!input.AtEnd()) {
      const auto line = input.Take();
      if (line && !script.Run(*line)) break;
      if (!line) script.Pump();
    }
    return script.Ok() ? 0 : 1;
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "suite: %s\n", fault.what());
    return 2;
  }
}
