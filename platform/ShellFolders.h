#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace fonklav {

inline constexpr std::int32_t CSIDL_COMMON_APPDATA = 35;
inline constexpr std::int32_t CSIDL_PROGRAM_FILES = 38;

/// The shell's special folders.
class ShellFolders {
 public:
  ShellFolders() = default;
  ShellFolders(const ShellFolders&) = delete;
  ShellFolders& operator=(const ShellFolders&) = delete;
  virtual ~ShellFolders() = default;

  /// SHGetSpecialFolderLocation, SHGetPathFromIDListA and CoTaskMemFree: writes the folder's path, in bytes of the code
  /// page, to the front of `path` (at least 260 bytes) and returns true, or returns false when the shell gives no
  /// identifier for `folder`. `owner` is handed on as the owner window, a number that need not be one.
  virtual bool GetPath(std::uintptr_t owner, std::int32_t folder, std::span<char> path) const = 0;
};

}  // namespace fonklav
