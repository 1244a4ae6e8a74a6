#include "util/Procedure.h"

#include <new>

#include "util/RunTimeError.h"

namespace fonklav {
namespace {

void SetPending(PendingError& pending, ErrorNumber number, const char* text) {
  pending = PendingError{static_cast<int>(number), text, 0};
}

}  // namespace

void CapturePendingError(Diagnostics& diagnostics) noexcept {
  PendingError& pending = diagnostics.pending;
  // What is in flight has no type here; thrown once more, it finds its own.
  try {
    throw;
  } catch (const RunTimeError& error) {
    pending.number = error.Number();
    pending.description = error.Description();
    pending.line = error.Line();
  } catch (const std::bad_alloc&) {
    // The text fits the small-string buffer, so this needs no memory of its own.
    SetPending(pending, ErrorNumber::OutOfMemory, ErrorText(ErrorNumber::OutOfMemory));
  } catch (const std::exception& error) {
    SetPending(pending, ErrorNumber::ForeignException, error.what());
  } catch (...) {
    SetPending(pending, ErrorNumber::ForeignException, "Unknown exception");
  }
}

void HandleFault(Diagnostics& diagnostics, ProcedureName name, LogArgs args) {
  // There is no log yet in which the fault could end: it goes on to whoever can show it.
  if (!diagnostics.handlersArmed || diagnostics.startingUp) throw;
  CapturePendingError(diagnostics);
  if (diagnostics.log) {
    diagnostics.log->ErrorLogNew(name.error, args);
  } else {
    diagnostics.pending.Clear();
  }
}

}  // namespace fonklav
