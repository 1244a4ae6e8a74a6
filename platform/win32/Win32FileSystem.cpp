#include "platform/win32/Win32FileSystem.h"

#include <array>

#include "platform/FileSystem.h"
#include "platform/win32/FileMutex.h"
#include "platform/win32/Handles.h"
#include "platform/win32/WideText.h"
#include "util/RunTimeError.h"

namespace fonklav {
namespace {

std::optional<std::uint32_t> AttributesOrNothing(DWORD attributes) {
  if (attributes == INVALID_FILE_ATTRIBUTES) return std::nullopt;
  return attributes;
}

/// The run-time error that stands for what a file function of Windows answers.
ErrorNumber ErrorNumberOf(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
      return ErrorNumber::FileNotFound;
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
      return ErrorNumber::OutOfMemory;
    default:
      return ErrorNumber::DeviceIOError;
  }
}

[[noreturn]] void ThrowFault(DWORD error, const std::wstring& path, int line = __builtin_LINE()) {
  // Opening a folder as a file is answered with the same code as a forbidden file.
  const DWORD attributes = error == ERROR_ACCESS_DENIED ? GetFileAttributesW(path.c_str()) : INVALID_FILE_ATTRIBUTES;
  const bool folder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  throw RunTimeError(folder ? ErrorNumber::PathFileAccessError : ErrorNumberOf(error), line);
}

// Without FILE_WRITE_DATA, or GENERIC_WRITE, which includes it: see Append.
constexpr DWORD kAppend = FILE_APPEND_DATA | SYNCHRONIZE;
constexpr DWORD kPatience = 100;  ///< milliseconds that a line waits for a lock or a file

/// Opens a file, sharing everything. FILE_SHARE_DELETE is what lets another program rename the file or put a new one in
/// its place while we read it.
UniqueFile TryOpen(const std::wstring& path, DWORD access, DWORD disposition) {
  constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return UniqueFile{CreateFileW(path.c_str(), access, shareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr)};
}

UniqueFile Open(const std::wstring& path, DWORD access, DWORD disposition, int line = __builtin_LINE()) {
  UniqueFile file = TryOpen(path, access, disposition);
  if (!file) ThrowFault(GetLastError(), path, line);
  return file;
}

/// Opens a file for one append; empty when it cannot be opened, or when somebody who does not share it still has it
/// after `patience` milliseconds. Windows tells nobody that a file is free again, so this has to try.
UniqueFile OpenToAppend(const std::wstring& path, DWORD patience) {
  const ULONGLONG begin = GetTickCount64();
  for (;;) {
    UniqueFile file = TryOpen(path, kAppend, OPEN_ALWAYS);
    const bool inUse = !file && GetLastError() == ERROR_SHARING_VIOLATION;
    if (!inUse || GetTickCount64() - begin >= patience) return file;
    Sleep(1);
  }
}

std::wstring LockName(const std::string& path) {
  // Asked without a buffer, GetFullPathName counts the terminating zero; asked with one, it does not.
  const std::wstring wide = Wide(path);
  std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return Wide(FileLockName(Utf8(full)));
}

void WriteAll(const UniqueFile& file, std::string_view bytes, const std::wstring& path, int line = __builtin_LINE()) {
  DWORD written = 0;
  const BOOL done = WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  if (done == FALSE) ThrowFault(GetLastError(), path, line);
  if (written != bytes.size()) ThrowFault(ERROR_DISK_FULL, path, line);
}

/// Writes the file that is to take another's place, down to the disk: what MoveFileEx renames afterwards may be in the
/// folder's index before its content has left the cache, and a system that fails in between would keep an empty file.
void WriteBeside(const std::wstring& path, std::string_view bytes) {
  const UniqueFile file = Open(path, GENERIC_WRITE, CREATE_ALWAYS);
  WriteAll(file, bytes, path);
  FlushFileBuffers(file.Get());
}

}  // namespace

std::optional<std::uint32_t> Win32FileSystem::GetAttributesA(const std::string& pathBytes) const {
  return AttributesOrNothing(GetFileAttributesA(pathBytes.c_str()));
}

std::optional<std::uint32_t> Win32FileSystem::GetAttributesW(const std::string& path) const {
  return AttributesOrNothing(GetFileAttributesW(Wide(path).c_str()));
}

bool Win32FileSystem::DeleteA(const std::string& pathBytes) { return DeleteFileA(pathBytes.c_str()) != FALSE; }

std::string Win32FileSystem::Read(const std::string& path) const {
  const std::wstring wide = Wide(path);
  const UniqueFile file = Open(wide, GENERIC_READ, OPEN_EXISTING);
  std::string bytes;
  std::array<char, 0x4000> part{};
  for (;;) {
    DWORD count = 0;
    if (ReadFile(file.Get(), part.data(), static_cast<DWORD>(part.size()), &count, nullptr) == FALSE) {
      ThrowFault(GetLastError(), wide);
    }
    if (count == 0) return bytes;
    bytes.append(part.data(), count);
  }
}

std::uint64_t Win32FileSystem::Length(const std::string& path) const {
  // By the attributes, which need no share in the file: one that somebody shares with nobody has a length, too.
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(Wide(path).c_str(), GetFileExInfoStandard, &data) == FALSE) return 0;
  return (std::uint64_t{data.nFileSizeHigh} << 32U) | data.nFileSizeLow;
}

void Win32FileSystem::Write(const std::string& path, std::string_view bytes) {
  const std::wstring wide = Wide(path);
  WriteAll(Open(wide, GENERIC_WRITE, CREATE_ALWAYS), bytes, wide);
}

std::unique_ptr<FileLock> Win32FileSystem::Lock(const std::string& path) {
  const std::wstring name = LockName(path);
  auto lock = std::make_unique<FileMutex>(name);
  if (lock->Take(PatienceWith(name))) {
    kept_.erase(name);
    return lock;
  }
  kept_.insert(name);
  return nullptr;
}

DWORD Win32FileSystem::PatienceWith(const std::wstring& name) const { return kept_.contains(name) ? 0 : kPatience; }

void Win32FileSystem::Append(const std::string& path, std::string_view bytes) {
  // FILE_APPEND_DATA without FILE_WRITE_DATA: Windows itself puts each write at the end of the file as it then is,
  // whoever else writes. Where a system does not, two programs that append at the same moment would overwrite each
  // other's lines; the lock keeps ours from it.
  const std::unique_ptr<FileLock> lock = Lock(path);
  const std::wstring wide = Wide(path);
  UniqueFile file = OpenToAppend(wide, PatienceWith(wide));
  if (file) {
    kept_.erase(wide);
  } else {
    kept_.insert(wide);
    file = Open(wide, kAppend, OPEN_ALWAYS);
  }
  WriteAll(file, bytes, wide);
}

void Win32FileSystem::Replace(const std::string& path, std::string_view bytes) {
  const std::unique_ptr<FileLock> lock = Lock(path);
  const std::wstring target = Wide(path);
  const std::wstring beside = target + L".new";
  try {
    WriteBeside(beside, bytes);
  } catch (const RunTimeError& fault) {
    DeleteFileW(beside.c_str());
    // A full disk would take the old file with it; anything else may be a matter of the folder alone.
    if (fault.Number() == static_cast<int>(ErrorNumber::DiskFull)) throw;
    return Write(path, bytes);
  }
  // The one call that changes what a name stands for in a single step. It is refused while somebody has the old file
  // open in a way that forbids it, and for a read-only one: then the old file is written over, or the fault is told.
  if (MoveFileExW(beside.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE) return;
  DeleteFileW(beside.c_str());
  Write(path, bytes);
}

}  // namespace fonklav
