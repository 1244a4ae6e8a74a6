#pragma once

#include <cstdint>

#include "platform/win32/Handles.h"
#include "platform/win32/SystemFunction.h"

namespace fonklav {

/// The system's telephony library, loaded when it is first wanted and from the system folder only: a file of that name
/// beside the program or in the current folder must never get to run.
class TelephonyLibrary {
 public:
  /// One of the library's functions, and the line that wants it: the error log names that line.
  struct FunctionName {
    FunctionName(const char* text, int where = __builtin_LINE())  // NOLINT(google-explicit-constructor)
        : name(text), line(where) {}
    const char* name;
    int line;
  };

  /// Calls the library's function with exactly these argument types. Throws RunTimeError 53 when the library is missing
  /// and 453 when it lacks the function.
  template <typename... Args>
  std::int32_t Call(FunctionName wanted, Args... args) {
    const auto function = FunctionOf<LONG(WINAPI*)(Args...)>(Loaded(wanted), wanted.name);
    if (function == nullptr) ThrowMissing(wanted);
    return function(args...);
  }

 private:
  HMODULE Loaded(const FunctionName& wanted);
  [[noreturn]] static void ThrowMissing(const FunctionName& wanted);

  UniqueModule module_;
};

}  // namespace fonklav
