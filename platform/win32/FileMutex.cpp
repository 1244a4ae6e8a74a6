#include "platform/win32/FileMutex.h"

#include <sddl.h>

namespace fonklav {
namespace {

/// What ConvertStringSecurityDescriptorToSecurityDescriptor allocates is to be freed by LocalFree.
struct LocalMemory : NullHandle<HLOCAL> {
  static void Close(HLOCAL memory) noexcept { LocalFree(memory); }
};

/// To wait for the mutex and to release it. CreateMutexW would ask for MUTEX_ALL_ACCESS, which kEveryUser does not give
/// for a mutex that another user has made; CreateMutexExW takes the rights that are wanted.
constexpr DWORD kUse = SYNCHRONIZE | MUTEX_MODIFY_STATE;

/// The rights to the mutex in SDDL: whoever has logged on (AU, authenticated users) may use it, because programs of
/// several users write the same logs; the list grants nobody more than that. The number is kUse.
constexpr const wchar_t* kEveryUser = L"D:(A;;0x00100001;;;AU)";
static_assert(kUse == 0x00100001);

UniqueKernelHandle MakeOrOpen(const std::wstring& name) {
  PSECURITY_DESCRIPTOR rights = nullptr;
  // Where this fails `rights` stays null, and the mutex gets the default descriptor: programs of other users may not
  // open it, and write without the lock.
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
  // WAIT_ABANDONED gives the mutex, too: its owner has ended without releasing it. Nothing is to be repaired then: at
  // worst the log has a broken line.
  taken_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
  return taken_ || result == WAIT_FAILED;
}

}  // namespace fonklav
