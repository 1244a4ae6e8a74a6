#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "util/ProcedureLog.h"

namespace fonklav {

/// The run-time error that a failing procedure has just caught and that the log is about to read. Number 0: none.
struct PendingError {
  int number{0};
  std::string description;
  int line{0};  ///< source line, 0 when unknown

  void Clear() { *this = PendingError{}; }
};

/// The one place through which all procedures report: the two switches that their guard tests, the program's tag and,
/// once start-up has come that far, the log. One instance a program, owned by the program object, shared by reference.
struct Diagnostics {
  bool traceMode{false};      ///< every procedure traces its entry while this is set
  bool handlersArmed{false};  ///< faults end in the error log while this is set; until then they pass to the caller
  bool startingUp{false};     ///< there is no log yet: faults pass to start-up, which tells them itself
  std::string tag;            ///< the program's short code, heads every log line
  PendingError pending;
  std::unique_ptr<ProcedureLog> log;  ///< empty until start-up has resolved the folders
};

/// Writes one line "TAPI ", tag, blank, `text`, `detail` to the telephony debug log, if there is a log and its switch
/// is on.
inline void DebugTapi(const Diagnostics& diagnostics, std::string_view text, std::string_view detail = {}) {
  if (!diagnostics.log || !diagnostics.log->DebugsTAPI()) return;
  std::string line = "TAPI " + diagnostics.tag + " ";
  line.append(text).append(detail);
  diagnostics.log->LogDebug_TAPI(line, {});
}

}  // namespace fonklav
