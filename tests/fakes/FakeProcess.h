#pragma once

#include "platform/Process.h"

namespace fonklav::test {

class FakeProcess : public Process {
 public:
  [[nodiscard]] std::string CommandLine() const override { return commandLine; }
  [[nodiscard]] std::string ProgramFolder() const override { return programFolder; }
  [[nodiscard]] std::string ExecutableName() const override { return "FonklavTAPI"; }
  [[nodiscard]] bool OtherInstanceRunning() const override { return otherRunning; }
  [[nodiscard]] OsVersion SystemVersion() const override { return version; }

  std::string commandLine;
  std::string programFolder{"C:\\Rufmon"};
  bool otherRunning{false};
  OsVersion version{10, 0, 19045, true, false};
};

}  // namespace fonklav::test
