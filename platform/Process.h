#pragma once

#include <string>

#include "util/OsDescription.h"

namespace fonklav {

/// What the program asks about its own process.
class Process {
 public:
  Process() = default;
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  virtual ~Process() = default;

  /// Everything after the program name on the command line, blanks in front of it removed, the rest as typed.
  [[nodiscard]] virtual std::string CommandLine() const = 0;
  /// The folder that holds the executable, without a backslash at its end (except a drive's root).
  [[nodiscard]] virtual std::string ProgramFolder() const = 0;
  /// The executable's file name without extension.
  [[nodiscard]] virtual std::string ExecutableName() const = 0;
  /// Whether another instance of this program is running.
  [[nodiscard]] virtual bool OtherInstanceRunning() const = 0;
  [[nodiscard]] virtual OsVersion SystemVersion() const = 0;
};

}  // namespace fonklav
