#include "platform/win32/Win32Process.h"

#include "platform/win32/ProcessNames.h"
#include "platform/win32/SystemFunction.h"
#include "platform/win32/WideText.h"

namespace fonklav {
namespace {

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD count = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (count < path.size()) {
      path.resize(count);
      return path;
    }
    path.resize(path.size() * 2);  // cut off: the path is longer than the buffer
  }
}

/// The program's file by its long name: a start by a short (8.3) name is a start of the same program in the same
/// folder.
std::wstring ExecutablePath() {
  const std::wstring path = ModulePath();
  std::wstring full(GetLongPathNameW(path.c_str(), nullptr, 0), L'\0');
  const DWORD count = GetLongPathNameW(path.c_str(), full.data(), static_cast<DWORD>(full.size()));
  if (count == 0 || count >= full.size()) return path;  // a folder on the way may not be looked into
  full.resize(count);
  return full;
}

}  // namespace

Win32Process::Win32Process() {
  mark_.Reset(CreateMutexW(nullptr, FALSE, L"Local\\FonklavTAPI"));
  otherInstance_ = GetLastError() == ERROR_ALREADY_EXISTS;
}

std::string Win32Process::CommandLine() const { return Utf8(ArgumentsOf(GetCommandLineW())); }

std::string Win32Process::ProgramFolder() const { return Utf8(FolderOf(ExecutablePath())); }

std::string Win32Process::ExecutableName() const { return Utf8(NameOf(ExecutablePath())); }

OsVersion Win32Process::SystemVersion() const {
  // GetVersionEx answers what a compatibility setting wants it to; this one tells the truth.
  RTL_OSVERSIONINFOEXW info{};
  info.dwOSVersionInfoSize = sizeof info;
  const auto query = SystemFunction<LONG(WINAPI*)(RTL_OSVERSIONINFOEXW*)>(L"ntdll.dll", "RtlGetVersion");
  if (query == nullptr || query(&info) != 0) return {};
  return {info.dwMajorVersion, info.dwMinorVersion, info.dwBuildNumber, info.dwPlatformId == VER_PLATFORM_WIN32_NT,
          info.wProductType != VER_NT_WORKSTATION};
}

}  // namespace fonklav
