#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/win32/WideText.h"

namespace fonklav::suite {

/// Closes a file.
struct CloseFile {
  void operator()(void* file) const noexcept { CloseHandle(file); }
};
using HeldFile = std::unique_ptr<void, CloseFile>;

/// Opens a file, made if need be, for `access` and sharing `share`; empty when that is refused.
inline HeldFile OpenFileFor(const std::string& path, DWORD access, DWORD share) {
  void* const file = CreateFileA(path.c_str(), access, share, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  return HeldFile(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

constexpr DWORD kAppend = FILE_APPEND_DATA | SYNCHRONIZE;

/// The lock that dialers take while they write a file, as soon as it is free. It is given back by ReleaseMutex, or with
/// the end of this program.
inline HeldFile LockOf(const std::string& path) {
  std::string full(MAX_PATH, '\0');
  full.resize(GetFullPathNameA(path.c_str(), MAX_PATH, full.data(), nullptr));
  const std::wstring name = Wide(FileLockName(Utf8(WideFrom(CP_ACP, full))));
  HeldFile lock(CreateMutexExW(nullptr, name.c_str(), 0, SYNCHRONIZE | MUTEX_MODIFY_STATE));
  if (lock) WaitForSingleObject(lock.get(), INFINITE);
  return lock;
}

/// Adds one line as another dialer does: while it has the log's lock. False when lock or file are refused.
inline bool AppendLine(const std::string& path, std::string_view line) {
  const HeldFile lock = LockOf(path);
  if (!lock) return false;
  const std::string text = std::string(line) + "\r\n";
  DWORD written = 0;
  {
    const HeldFile file = OpenFileFor(path, kAppend, FILE_SHARE_READ | FILE_SHARE_WRITE);
    if (file) WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  }
  ReleaseMutex(lock.get());
  return written == text.size();
}

}  // namespace fonklav::suite
