#pragma once

#include <cstdint>

#include "platform/win32/Handles.h"
#include "platform/win32/SystemFunction.h"

namespace fonklav {

/// The system's telephony library, loaded when it is first wanted and from the system folder only: a file of that name
/// beside the program or in the current folder must never get to run.
class TelephonyLibrary {
 public:
  /// Calls the library's function `name` with exactly these argument types. Throws RunTimeError 53 when the library is
  /// missing and 453 when it lacks the function.
  template <typename... Args>
  std::int32_t Call(const char* name, Args... args) {
    const auto function = FunctionOf<LONG(WINAPI*)(Args...)>(Loaded(), name);
    if (function == nullptr) ThrowMissing(name);
    return function(args...);
  }

 private:
  HMODULE Loaded();
  [[noreturn]] static void ThrowMissing(const char* name);

  UniqueModule module_;
};

}  // namespace fonklav
