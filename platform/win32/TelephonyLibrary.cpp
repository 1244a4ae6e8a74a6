#include <string>

#include "platform/win32/WideText.h"
#include "platform/win32/Win32Telephony.h"
#include "util/RunTimeError.h"

// Where telephony is loaded from. On a page of its own: what is checked with calls to a simulated line differs in this
// from the product, and in nothing else.
namespace fonklav {
namespace {

constexpr const wchar_t* kFileName = L"tapi32.dll";

/// By the full path, for systems that do not know LOAD_LIBRARY_SEARCH_SYSTEM32 (Windows 7 and older without update
/// KB2533623). LOAD_WITH_ALTERED_SEARCH_PATH has what the library itself needs looked for in the library's folder
/// first, where the program's own would be otherwise.
HMODULE LoadByPath() {
  std::wstring folder(MAX_PATH, L'\0');
  folder.resize(GetSystemDirectoryW(folder.data(), MAX_PATH));
  return LoadLibraryExW((folder + L'\\' + kFileName).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace

HMODULE TelephonyLibrary::Loaded(const FunctionName& wanted) {
  if (module_) return module_.Get();
  module_.Reset(LoadLibraryExW(kFileName, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
  // ERROR_INVALID_PARAMETER is what a system says of a flag that it does not know.
  if (!module_ && GetLastError() == ERROR_INVALID_PARAMETER) module_.Reset(LoadByPath());
  if (!module_) throw RunTimeError(ErrorNumber::FileNotFound, "File not found: " + Utf8(kFileName), wanted.line);
  return module_.Get();
}

void TelephonyLibrary::ThrowMissing(const FunctionName& wanted) {
  throw RunTimeError(ErrorNumber::DllEntryPointNotFound,
                     std::string("Can't find DLL entry point ") + wanted.name + " in " + Utf8(kFileName), wanted.line);
}

}  // namespace fonklav
