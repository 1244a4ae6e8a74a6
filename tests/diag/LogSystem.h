#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "Version.h"
#include "config/Configuration.h"
#include "diag/clsErrorHandling.h"
#include "tests/fakes/FakeSystem.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

namespace fonklav::test {

/// The logs on a fake computer, started as a program starts them. The clock stands at 9:05:31 on 7 March 2015.
struct LogSystem : FakeSystem {
  explicit LogSystem(const std::string& switches = {}) {
    Switch(switches);
    EXPECT_TRUE(config.declareAll.Init("FVT", false));
  }
  ~LogSystem() { diagnostics.log.reset(); }

  clsErrorHandling& Log() { return dynamic_cast<clsErrorHandling&>(*diagnostics.log); }
  void Pend(int number, const std::string& description, int line = 0) {
    diagnostics.pending = {number, description, line};
  }
  /// A procedure of the program that fails.
  void Fail(const char* name, LogArgs args = {}) {
    Procedure(diagnostics, name, args, [] { throw RunTimeError(ErrorNumber::FileNotFound); });
  }
  std::vector<std::string> Errors() { return Lines(kErrorLog); }
  std::vector<std::string> Trace() { return Lines(kTraceLog); }
  /// The trace with the rest that is written when the program ends.
  std::vector<std::string> TraceToTheEnd() {
    diagnostics.log.reset();
    return Trace();
  }
  void Step(std::initializer_list<const char*> steps) {
    for (const char* step : steps) Log().LogDebug_Trace(step, {});
  }
  std::vector<std::string> Debug() { return Lines(kDebugLog); }

  static std::string Version() { return std::string(kVersion); }
  /// What stands in front of an entry, from the date to the blank behind the version.
  static std::string Head() { return std::string(kStamp) + "FVT v" + Version() + " "; }

  static constexpr const char* kStamp = "2015/03/07  09:05:31  ";
  static constexpr const char* kErrorLog = "C:\\ProgramData\\Rufmon\\log\\error.log";
  static constexpr const char* kTraceLog = "C:\\ProgramData\\Rufmon\\log\\trace.log";
  static constexpr const char* kDebugLog = "C:\\ProgramData\\Rufmon\\log\\debug.log";
  static constexpr const char* kLogFolder = "c:\\programdata\\rufmon\\log";

  Diagnostics diagnostics;
  Configuration config{diagnostics, ports, [this]() -> std::unique_ptr<ProcedureLog> {
                         return std::make_unique<clsErrorHandling>(diagnostics, config, ports);
                       }};
};

}  // namespace fonklav::test
