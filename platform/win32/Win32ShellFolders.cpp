#include "platform/win32/Win32ShellFolders.h"

#include <windows.h>

#include <shlobj.h>

namespace fonklav {

bool Win32ShellFolders::GetPath(std::uintptr_t owner, std::int32_t folder, std::span<char> path) const {
  if (path.size() < MAX_PATH) return false;  // the shell does not ask how long the buffer is
  PIDLIST_ABSOLUTE item = nullptr;
  SHGetSpecialFolderLocation(reinterpret_cast<HWND>(owner), folder, &item);
  if (item == nullptr) return false;
  SHGetPathFromIDListA(item, path.data());
  CoTaskMemFree(item);
  return true;
}

}  // namespace fonklav
