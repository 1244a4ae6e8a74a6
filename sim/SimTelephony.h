#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "sim/LineSimulator.h"
#include "util/RunTimeError.h"

namespace fonklav {

/// The telephony port over the line simulator, for programs that run inside a test or a benchmark. It can also play a
/// system on which telephony is not installed, or too old to have a function.
class SimTelephony final : public LineSimulator {
 public:
  explicit SimTelephony(Scenario scenario) : LineSimulator(std::move(scenario)) {}

  [[nodiscard]] LineSimulator& Simulator() { return *this; }

  /// Called at the start of each function with its name: what telephony lets happen in the middle of it, for example a
  /// message that it dispatches.
  std::function<void(std::string_view)> inside;

  /// From now on every function raises run-time error 53.
  void SetLibraryMissing(bool missing = true) { libraryMissing_ = missing; }
  /// From now on `function` raises run-time error 453.
  void SetFunctionMissing(std::string function) { missing_.insert(std::move(function)); }

 protected:
  void OnEntry(std::string_view function) override {
    if (libraryMissing_) throw RunTimeError(ErrorNumber::FileNotFound);
    if (inside) inside(function);
    if (missing_.contains(function)) throw RunTimeError(ErrorNumber::DllEntryPointNotFound);
  }

 private:
  bool libraryMissing_{false};
  std::set<std::string, std::less<>> missing_;
};

}  // namespace fonklav
