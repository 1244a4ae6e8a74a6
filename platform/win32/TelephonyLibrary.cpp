#include "platform/win32/TelephonyLibrary.h"

#include <string>

#include "platform/win32/WideText.h"
#include "util/RunTimeError.h"

namespace fonklav {
namespace {

constexpr const wchar_t* kFileName = L"tapi32.dll";

/// Older systems do not know the flag that names the system folder; they take the full path, and look for what the
/// library itself needs in the library's folder.
HMODULE LoadByPath() {
  std::wstring folder(MAX_PATH, L'\0');
  folder.resize(GetSystemDirectoryW(folder.data(), MAX_PATH));
  return LoadLibraryExW((folder + L'\\' + kFileName).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace

HMODULE TelephonyLibrary::Loaded(const FunctionName& wanted) {
  if (module_) return module_.Get();
  module_.Reset(LoadLibraryExW(kFileName, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
  if (!module_ && GetLastError() == ERROR_INVALID_PARAMETER) module_.Reset(LoadByPath());
  if (!module_) throw RunTimeError(ErrorNumber::FileNotFound, "File not found: " + Utf8(kFileName), wanted.line);
  return module_.Get();
}

void TelephonyLibrary::ThrowMissing(const FunctionName& wanted) {
  throw RunTimeError(ErrorNumber::DllEntryPointNotFound,
                     std::string("Can't find DLL entry point ") + wanted.name + " in " + Utf8(kFileName), wanted.line);
}

}  // namespace fonklav
