#include "platform/win32/WindowsError.h"

namespace fonklav {

ErrorNumber ErrorNumberOf(DWORD error) noexcept {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_MOD_NOT_FOUND:
    case ERROR_BAD_EXE_FORMAT:
      return ErrorNumber::FileNotFound;
    case ERROR_PROC_NOT_FOUND:
      return ErrorNumber::DllEntryPointNotFound;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ErrorNumber::DiskFull;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
      return ErrorNumber::PermissionDenied;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return ErrorNumber::PathNotFound;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ErrorNumber::OutOfMemory;
    default:
      return ErrorNumber::DeviceIOError;
  }
}

}  // namespace fonklav
