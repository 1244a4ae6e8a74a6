#include "platform/win32/Win32System.h"

#include <shlobj.h>

#include <array>

#include "platform/win32/SystemFunction.h"
#include "platform/win32/WideText.h"
#include "util/Text.h"

namespace fonklav {
namespace {

/// What the user has set; LOCALE_NOUSEROVERRIDE would ask for the locale's own. No separator comes near the buffer's
/// size.
std::string LocaleText(LCTYPE which) {
  std::array<wchar_t, 80> text{};
  const int count = GetLocaleInfoW(LOCALE_USER_DEFAULT, which, text.data(), static_cast<int>(text.size()));
  return count > 0 ? Utf8(text.data()) : std::string();
}

/// GetModuleFileName does not say how long a path is: it fills the buffer and says that it is full.
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
std::string ExecutablePath() {
  // Without a buffer GetLongPathName counts the terminating zero; with one that is large enough, it does not.
  const std::wstring path = ModulePath();
  std::wstring full(GetLongPathNameW(path.c_str(), nullptr, 0), L'\0');
  const DWORD count = GetLongPathNameW(path.c_str(), full.data(), static_cast<DWORD>(full.size()));
  if (count == 0 || count >= full.size()) return Utf8(path);  // a folder on the way may not be looked into
  full.resize(count);
  return Utf8(full);
}

}  // namespace

LocalTime Win32Clock::Now() const {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

std::chrono::milliseconds Win32Clock::Ticks() const { return std::chrono::milliseconds(GetTickCount64()); }

std::string Win32CodePage::ToText(std::string_view bytes) const { return Utf8(WideFrom(CP_ACP, bytes)); }

std::string Win32CodePage::ToBytes(std::string_view text) const { return BytesFrom(CP_ACP, Wide(text)); }

NumberSeparators Win32NumberLocale::Separators() const {
  return {LocaleText(LOCALE_SDECIMAL), LocaleText(LOCALE_STHOUSAND)};
}

std::uint32_t Win32PrivateProfile::GetString(const std::string& section, const std::string& key,
                                             const std::string& defaultValue, std::span<char> buffer,
                                             const std::string& file) const {
  return GetPrivateProfileStringA(section.c_str(), key.c_str(), defaultValue.c_str(), buffer.data(),
                                  static_cast<DWORD>(buffer.size()), file.c_str());
}

std::int32_t Win32PrivateProfile::GetInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                         const std::string& file) const {
  return static_cast<std::int32_t>(GetPrivateProfileIntA(section.c_str(), key.c_str(), defaultValue, file.c_str()));
}

bool Win32PrivateProfile::WriteString(const std::string& section, const std::string& key, const std::string& value,
                                      const std::string& file) {
  return WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(), file.c_str()) != FALSE;
}

bool Win32ShellFolders::GetPath(std::uintptr_t owner, std::int32_t folder, std::span<char> path) const {
  // SHGetPathFromIDList is not told how long the buffer is and takes MAX_PATH for granted.
  if (path.size() < MAX_PATH) return false;
  PIDLIST_ABSOLUTE item = nullptr;
  SHGetSpecialFolderLocation(reinterpret_cast<HWND>(owner), folder, &item);
  if (item == nullptr) return false;
  SHGetPathFromIDListA(item, path.data());
  CoTaskMemFree(item);  // the shell's lists come from the task allocator and are the caller's
  return true;
}

Win32Process::Win32Process() {
  mark_.Reset(CreateMutexW(nullptr, FALSE, L"Local\\FonklavTAPI"));
  // To open a mutex that exists is a success of CreateMutex as well; only this tells the two apart.
  otherInstance_ = GetLastError() == ERROR_ALREADY_EXISTS;
}

std::string Win32Process::CommandLine() const { return std::string(ArgumentsOf(Utf8(GetCommandLineW()))); }

std::string Win32Process::ProgramFolder() const { return std::string(FolderOf(ExecutablePath())); }

std::string Win32Process::ExecutableName() const { return std::string(NameOf(ExecutablePath())); }

OsVersion Win32Process::SystemVersion() const {
  // GetVersionEx answers what a compatibility setting wants it to, and at most the newest system that the manifest
  // names. RtlGetVersion tells the truth.
  RTL_OSVERSIONINFOEXW info{};
  info.dwOSVersionInfoSize = sizeof info;
  const auto query = SystemFunction<LONG(WINAPI*)(RTL_OSVERSIONINFOEXW*)>(L"ntdll.dll", "RtlGetVersion");
  if (query == nullptr || query(&info) != 0) return {};
  return {info.dwMajorVersion, info.dwMinorVersion, info.dwBuildNumber, info.dwPlatformId == VER_PLATFORM_WIN32_NT,
          info.wProductType != VER_NT_WORKSTATION};
}

std::int32_t Win32MessageBoxes::Show(const std::string& prompt, std::uint32_t style, const std::string& title) {
  const HWND owner = owner_();
  // Without an owner nothing brings the box to the front, and Windows may refuse MB_SETFOREGROUND to a program that the
  // user has not just worked in. A box that nobody sees would hold up the program for ever.
  const UINT place = MB_SETFOREGROUND | (owner == nullptr ? MB_TOPMOST : 0U);
  return MessageBoxW(owner, Wide(prompt).c_str(), Wide(title).c_str(), style | place);
}

void Win32IconPainter::DrawIcon(std::uintptr_t hdc, std::int32_t left, std::int32_t top, std::uintptr_t icon,
                                std::int32_t width, std::int32_t height) {
  DrawIconEx(reinterpret_cast<HDC>(hdc), left, top, reinterpret_cast<HICON>(icon), width, height, 0, nullptr,
             DI_NORMAL);
}

void Win32IconPainter::DestroyIcon(std::uintptr_t icon) { ::DestroyIcon(reinterpret_cast<HICON>(icon)); }

}  // namespace fonklav
