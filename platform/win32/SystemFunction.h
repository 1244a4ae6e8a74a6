#pragma once

#include <windows.h>

namespace fonklav {

/// A function of a module, as the function pointer type `Function`; null when the module lacks it.
template <typename Function>
[[nodiscard]] Function FunctionOf(HMODULE module, const char* name) noexcept {
  // By way of void*: the compiler cannot know that the pointer had another type before it had none.
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// A function of a module that every process has loaded, for what older systems may lack.
template <typename Function>
[[nodiscard]] Function SystemFunction(const wchar_t* module, const char* name) noexcept {
  const HMODULE loaded = GetModuleHandleW(module);
  return loaded == nullptr ? nullptr : FunctionOf<Function>(loaded, name);
}

}  // namespace fonklav
