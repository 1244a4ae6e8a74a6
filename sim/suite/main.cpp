#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <exception>

#include "sim/suite/InputLines.h"
#include "sim/suite/Script.h"

/// suite.exe PROGRAM: plays the suite's main program towards the dialer PROGRAM, as the lines of standard input tell
/// it. Ends with the input, with 0 when everything that it was told to wait for has happened.
int main(int argc, char** argv) {
  using namespace fonklav::suite;
  if (argc != 2) {
    std::fputs("usage: suite.exe PROGRAM < SCRIPT\n", stderr);
    return 2;
  }
  try {
    // Reports are bytes of the code page and leave as such; so do the line ends.
    _setmode(_fileno(stdout), _O_BINARY);
    InputLines input;
    Script script(argv[1]);
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
