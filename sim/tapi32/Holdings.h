#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <string>

namespace fonklav {

/// Windows below `parent`, the message-only ones where that is HWND_MESSAGE, that are this process's own.
inline std::size_t CountWindows(HWND parent) {
  std::size_t count = 0;
  for (HWND window = FindWindowExW(parent, nullptr, nullptr, nullptr); window != nullptr;
       window = FindWindowExW(parent, window, nullptr, nullptr)) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) count += 1 + CountWindows(window);
  }
  return count;
}

inline std::size_t CountAtoms() {
  std::size_t count = 0;
  std::array<wchar_t, 256> name{};
  for (unsigned atom = MAXINTATOM; atom <= 0xFFFF; ++atom) {
    if (GlobalGetAtomNameW(static_cast<ATOM>(atom), name.data(), static_cast<int>(name.size())) != 0) ++count;
  }
  return count;
}

/// What the process holds at this moment, as `holdings blocks=77 bytes=14408 windows=24 atoms=12`: busy blocks of all
/// its heaps and their bytes, its windows of every kind with their children, and the global atoms of the whole session.
inline std::string Holdings() {
  std::size_t blocks = 0;
  std::size_t bytes = 0;
  std::array<HANDLE, 64> heaps{};
  GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  for (const HANDLE heap : heaps) {
    if (heap == nullptr || HeapLock(heap) == FALSE) continue;
    // Nothing is allocated in here, or the count would count itself.
    for (PROCESS_HEAP_ENTRY entry{}; HeapWalk(heap, &entry) != FALSE;) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
      ++blocks;
      bytes += entry.cbData;
    }
    HeapUnlock(heap);
  }
  const std::size_t windows = CountWindows(nullptr) + CountWindows(HWND_MESSAGE);
  return "holdings blocks=" + std::to_string(blocks) + " bytes=" + std::to_string(bytes) +
         " windows=" + std::to_string(windows) + " atoms=" + std::to_string(CountAtoms());
}

}  // namespace fonklav
