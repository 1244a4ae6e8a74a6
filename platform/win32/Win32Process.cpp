#include "platform/win32/Win32Process.h"

#include "platform/win32/ProcessNames.h"
#include "platform/win32/SystemFunction.h"
#include "platform/win32/WideText.h"

namespace fonklav {
namespace {

std::wstring ExecutablePath() {
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
