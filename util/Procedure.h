#pragma once

#include <utility>

#include "util/Diagnostics.h"

namespace fonklav {

/// The name under which a procedure appears in the logs. A few procedures appear under two.
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
/// still to make the log.
void HandleFault(Diagnostics& diagnostics, ProcedureName name, LogArgs args);

/// Runs the body and ends a fault in the error log: the guard of what must not be traced, because it runs so often that
/// the trace would tell of nothing else.
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
