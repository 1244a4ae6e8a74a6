#pragma once

#include <string_view>

#include "util/LogArg.h"

namespace fonklav {

/// What every procedure of the program may ask of the logs. The diagnostics object implements it; the layers that must
/// not know that object report through this. No operation throws.
class ProcedureLog {
 public:
  ProcedureLog() = default;
  ProcedureLog(const ProcedureLog&) = delete;
  ProcedureLog& operator=(const ProcedureLog&) = delete;
  virtual ~ProcedureLog() = default;

  /// One step of the procedure trace. Call it only while the trace switch is on.
  virtual void LogDebug_Trace(std::string_view step, LogArgs args) noexcept = 0;

  /// Whether the telephony debug log is written: a line for it need not be put together otherwise.
  [[nodiscard]] virtual bool DebugsTAPI() const noexcept = 0;

  /// One line of the telephony debug log; nothing while that log's switch is off.
  virtual void LogDebug_TAPI(std::string_view message, LogArgs args) noexcept = 0;

  /// Writes the pending error to the error log under `module`; nothing when none is pending.
  virtual void ErrorLogNew(std::string_view module, LogArgs args) noexcept = 0;

  /// Adds a line, stamped with date and time, to the log of that name under the data root ("\\log\\language.log").
  virtual void WriteLine(std::string_view log, std::string_view line) noexcept = 0;
};

}  // namespace fonklav
