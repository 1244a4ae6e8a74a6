#pragma once

#include <windows.h>

// Functions that are asked for by name at run time. Windows does not start a program that imports what the system's
// libraries do not have, so what only newer systems offer is looked up here and done without where it is missing.
namespace fonklav {

/// A function of a module, as the function pointer type `Function`; null when the module lacks it.
template <typename Function>
[[nodiscard]] Function FunctionOf(HMODULE module, const char* name) noexcept {
  // By way of void*: the compiler cannot know that the pointer had another type before it had none.
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// A function of a module that this process has loaded anyway, null when the system lacks it. GetModuleHandle counts no
/// reference, so nothing has to be freed.
template <typename Function>
[[nodiscard]] Function SystemFunction(const wchar_t* module, const char* name) noexcept {
  const HMODULE loaded = GetModuleHandleW(module);
  return loaded == nullptr ? nullptr : FunctionOf<Function>(loaded, name);
}

}  // namespace fonklav
