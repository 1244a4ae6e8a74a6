#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

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

/// Adds one line as the suite's programs do: open, append, close, and again when somebody else is just doing so.
inline void AppendLine(const std::string& path, std::string_view line) {
  constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  HeldFile file = OpenFileFor(path, FILE_APPEND_DATA | SYNCHRONIZE, shareAll);
  while (!file) {
    Sleep(1);
    file = OpenFileFor(path, FILE_APPEND_DATA | SYNCHRONIZE, shareAll);
  }
  const std::string text = std::string(line) + "\r\n";
  DWORD written = 0;
  WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace fonklav::suite
