#pragma once

#include "platform/Process.h"
#include "platform/win32/Handles.h"

namespace fonklav {

/// This process, as Windows knows it. One object a process: it marks the program as running for as long as it lives.
class Win32Process final : public Process {
 public:
  Win32Process();

  [[nodiscard]] std::string CommandLine() const override;
  [[nodiscard]] std::string ProgramFolder() const override;
  [[nodiscard]] std::string ExecutableName() const override;
  [[nodiscard]] bool OtherInstanceRunning() const override { return otherInstance_; }
  [[nodiscard]] OsVersion SystemVersion() const override;

 private:
  UniqueKernelHandle mark_;  ///< a named mutex that all instances of one session share
  bool otherInstance_{false};
};

}  // namespace fonklav
