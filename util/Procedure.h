#pragma once

#include <utility>

#include "util/Diagnostics.h"

namespace fonklav {

/// The name under which a procedure appears in the logs: the name that the suite's programs and their maintainers know,
/// which is why it is written out at each guard. A few procedures appear under two.
struct ProcedureName {
  const char* trace;
  const char* error;

  constexpr ProcedureName(const char* both) : trace(both), error(both) {}
  constexpr ProcedureName(const char* traceName, const char* errorName) : trace(traceName), error(errorName) {}
};

/// Traces the entry into a procedure. The guard does it by itself; only a procedure whose errors are meant for its
/// caller calls this alone.
inline void TraceEntry(const Diagnostics& diagnostics, ProcedureName name, LogArgs args) {
  if (diagnostics.traceMode && diagnostics.log) diagnostics.log->LogDebug_Trace(name.trace, args);
}

/// Turns the exception in flight into the pending error. Call it from a catch block only.
void CapturePendingError(Diagnostics& diagnostics) noexcept;

/// Hands the exception in flight to the error log, or passes it on while the handlers are not armed or start-up is
/// still to make the log. Call it from a catch block only.
void HandleFault(Diagnostics& diagnostics, ProcedureName name, LogArgs args);

/// Runs the body and ends a fault in the error log, without a trace of the entry: for a way in whose procedure traces
/// itself further down, and for a part of a procedure whose fault is not to end the rest.
template <typename Body>
void Guarded(Diagnostics& diagnostics, ProcedureName name, LogArgs args, Body&& body) {
  try {
    std::forward<Body>(body)();
  } catch (...) {
    HandleFault(diagnostics, name, args);
  }
}

/// The convention that every procedure follows, in one line at its top: trace the entry, run the body, and end a fault
/// in the error log. The arguments are rendered only when a line is written; with tracing off and no fault the guard
/// costs one test of a flag.
template <typename Body>
void Procedure(Diagnostics& diagnostics, ProcedureName name, LogArgs args, Body&& body) {
  TraceEntry(diagnostics, name, args);
  Guarded(diagnostics, name, args, std::forward<Body>(body));
}

/// The same for a procedure with a result: the body receives `held` by reference, and what it holds when the body ends,
/// by itself or by a fault, is the result.
template <typename Result, typename Body>
[[nodiscard]] Result Procedure(Diagnostics& diagnostics, ProcedureName name, LogArgs args, Result held, Body&& body) {
  TraceEntry(diagnostics, name, args);
  try {
    std::forward<Body>(body)(held);
  } catch (...) {
    HandleFault(diagnostics, name, args);
  }
  return held;
}

}  // namespace fonklav
