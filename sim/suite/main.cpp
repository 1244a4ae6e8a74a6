#include <fcntl.h>
#include <io.h>
#include <objbase.h>
#include <windows.h>

#include <cstdio>
#include <future>
#include <iostream>
#include <optional>

#include "sim/suite/Script.h"

/// The next line of standard input; nothing at its end.
std::optional<std::string> NextLine() {
  std::string line;
  return std::getline(std::cin, line) ? std::optional(line) : std::nullopt;
}

/// suite.exe PROGRAM: plays the suite's main program towards the dialer PROGRAM, as the lines of standard input tell
/// it. Ends with the input, with 0 when everything that it was told to wait for has happened.
int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: suite.exe PROGRAM < SCRIPT\n", stderr);
    return 2;
  }
  SetProcessDPIAware();  // where a person aims at is said in pixels of the screen
  // Reports are bytes of the code page and leave as such; so do the line ends.
  _setmode(_fileno(stdout), _O_BINARY);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);  // for what a screen reader asks; the end of the process ends it
  fonklav::suite::Script script(argv[1]);
  for (bool more = true; more;) {
    // A pipe offers no wait that goes together with a message queue, so a thread waits for it.
    auto coming = std::async(std::launch::async, NextLine);
    while (coming.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) script.Pump();
    const auto line = coming.get();
    more = line && script.Run(*line);
  }
  return script.Ok() ? 0 : 1;
}
