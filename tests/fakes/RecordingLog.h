#pragma once

#include <memory>
#include <string>
#include <vector>

#include "util/Diagnostics.h"

namespace fonklav::test {

/// A log that remembers: errors as "procedure number description", steps by name, telephony lines as they are.
class RecordingLog : public ProcedureLog {
 public:
  explicit RecordingLog(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}

  void LogDebug_Trace(std::string_view step, LogArgs args) noexcept override {
    steps.emplace_back(step);
    numbers.clear();
    for (const LogArg& arg : args) {
      if (const auto* number = std::get_if<std::int64_t>(&arg.Get())) numbers.push_back(*number);
    }
  }
  [[nodiscard]] bool DebugsTAPI() const noexcept override { return true; }
  void LogDebug_TAPI(std::string_view message, LogArgs) noexcept override { telephony.emplace_back(message); }
  void ErrorLogNew(std::string_view module, LogArgs) noexcept override {
    const PendingError& error = diagnostics_.pending;
    errors.push_back(std::string(module) + " " + std::to_string(error.number) + " " + error.description);
    diagnostics_.pending.Clear();
  }
  void WriteLine(std::string_view log, std::string_view line) noexcept override {
    lines.push_back(std::string(log) + ": " + std::string(line));
  }

  std::vector<std::string> errors;
  std::vector<std::string> steps;
  std::vector<std::int64_t> numbers;  ///< among the arguments of the last step
  std::vector<std::string> telephony;
  std::vector<std::string> lines;  ///< of logs of their own, as "name: line"

 private:
  Diagnostics& diagnostics_;
};

/// Diagnostics whose log remembers: armed, as after the start of a program, or still without their log.
struct Recorded {
  explicit Recorded(bool started = true) {
    if (!started) return;
    diagnostics.handlersArmed = true;
    diagnostics.tag = "FVT";
    diagnostics.log = MakeLog();
  }
  std::unique_ptr<RecordingLog> MakeLog() {
    auto made = std::make_unique<RecordingLog>(diagnostics);
    log = made.get();
    return made;
  }

  Diagnostics diagnostics;
  RecordingLog* log{nullptr};
};

}  // namespace fonklav::test
