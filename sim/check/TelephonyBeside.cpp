#include <array>
#include <filesystem>

#include "platform/win32/Win32Telephony.h"
#include "util/RunTimeError.h"

// The dialer's door to telephony, leading to the line simulator beside the program: in the system's own folder no
// library can be given the place of another.
namespace fonklav {

HMODULE TelephonyLibrary::Loaded(const FunctionName& wanted) {
  if (module_) return module_.Get();
  std::array<wchar_t, 0x1000> program{};
  GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
  module_.Reset(LoadLibraryW(std::filesystem::path(program.data()).replace_filename(L"line.dll").c_str()));
  if (!module_) throw RunTimeError(ErrorNumber::FileNotFound, "File not found: line.dll", wanted.line);
  return module_.Get();
}

void TelephonyLibrary::ThrowMissing(const FunctionName& wanted) {
  throw RunTimeError(ErrorNumber::DllEntryPointNotFound, wanted.name, wanted.line);
}

}  // namespace fonklav
