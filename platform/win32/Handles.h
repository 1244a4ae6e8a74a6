#pragma once

#include <windows.h>

#include "util/UniqueHandle.h"

// What the system hands out, each kind with the function that takes it back and the value that stands for none.
namespace fonklav {

/// The system's handle types whose value for "none" is null.
template <typename Handle>
struct NullHandle {
  using Type = Handle;
  static Type None() noexcept { return nullptr; }
};

struct WindowHandle : NullHandle<HWND> {
  static void Close(HWND window) noexcept { DestroyWindow(window); }
};
struct ModuleHandle : NullHandle<HMODULE> {
  static void Close(HMODULE module) noexcept { FreeLibrary(module); }
};
struct KernelHandle : NullHandle<HANDLE> {
  static void Close(HANDLE handle) noexcept { CloseHandle(handle); }
};
struct MemoryHandle : NullHandle<HGLOBAL> {
  static void Close(HGLOBAL memory) noexcept { GlobalFree(memory); }
};
/// A font must not be selected into a device context, or set in a control, when it goes: DeleteObject refuses the
/// first.
struct FontHandle : NullHandle<HFONT> {
  static void Close(HFONT font) noexcept { DeleteObject(font); }
};
/// For icons that LoadImage made without LR_SHARED. WM_SETICON copies nothing, so an icon outlives its window.
struct IconHandle : NullHandle<HICON> {
  static void Close(HICON icon) noexcept { DestroyIcon(icon); }
};
/// CreateFile says INVALID_HANDLE_VALUE (-1) for "none", unlike every other function that makes a handle here.
struct FileHandle {
  using Type = HANDLE;
  static Type None() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(HANDLE file) noexcept { CloseHandle(file); }
};
/// The system counts the uses of a global atom: every GlobalAddAtom needs a GlobalDeleteAtom of its own, and one too
/// many takes the atom away from somebody else.
struct AtomHandle {
  using Type = ATOM;
  static Type None() noexcept { return 0; }
  static void Close(ATOM atom) noexcept { GlobalDeleteAtom(atom); }
};

using UniqueWindow = UniqueHandle<WindowHandle>;
using UniqueModule = UniqueHandle<ModuleHandle>;
using UniqueKernelHandle = UniqueHandle<KernelHandle>;
using UniqueMemory = UniqueHandle<MemoryHandle>;
using UniqueFont = UniqueHandle<FontHandle>;
using UniqueIcon = UniqueHandle<IconHandle>;
using UniqueFile = UniqueHandle<FileHandle>;
using UniqueAtom = UniqueHandle<AtomHandle>;

}  // namespace fonklav
