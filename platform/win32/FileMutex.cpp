#include "platform/win32/FileMutex.h"

#include <sddl.h>

namespace fonklav {
namespace {

struct LocalMemory : NullHandle<HLOCAL> {
  static void Close(HLOCAL memory) noexcept { LocalFree(memory); }
};

constexpr DWORD kUse = SYNCHRONIZE | MUTEX_MODIFY_STATE;

/// Whoever has logged on to this computer may use the mutex, as two users' programs write the same logs; nobody may
/// change who may. The number is kUse.
constexpr const wchar_t* kEveryUser = L"D:(A;;0x00100001;;;AU)";
static_assert(kUse == 0x00100001);

UniqueKernelHandle MakeOrOpen(const std::wstring& name) {
  PSECURITY_DESCRIPTOR rights = nullptr;
  // Without a descriptor it is the user's own mutex, and other users do without.
  ConvertStringSecurityDescriptorToSecurityDescriptorW(kEveryUser, SDDL_REVISION_1, &rights, nullptr);
  const UniqueHandle<LocalMemory> memory{rights};
  SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), rights, FALSE};
  return UniqueKernelHandle{CreateMutexExW(&attributes, name.c_str(), 0, kUse)};
}

}  // namespace

FileMutex::FileMutex(const std::wstring& name) : mutex_(MakeOrOpen(name)) {}

FileMutex::~FileMutex() {
  if (taken_) ReleaseMutex(mutex_.Get());
}

bool FileMutex::Take(DWORD milliseconds) {
  if (!mutex_) return true;
  const DWORD result = WaitForSingleObject(mutex_.Get(), milliseconds);
  taken_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
  return taken_ || result == WAIT_FAILED;
}

}  // namespace fonklav
