#pragma once

#include <string>

#include "platform/FileSystem.h"
#include "platform/win32/Handles.h"

namespace fonklav {

/// The lock of a file by a named mutex, which all our programs can open. Not by LockFileEx: that lock lives on an open
/// handle of the file, and Windows may refuse to replace a file that somebody has open. A mutex belongs to the thread
/// that waits for it, so the same thread may take it again by another object of this class, and each object has to go
/// on the thread that took it. A program that ends without giving the mutex back leaves it to the next.
class FileMutex final : public FileLock {
 public:
  /// Makes or opens the mutex of this name. Does not throw: where the system refuses it, the lock keeps nobody out.
  explicit FileMutex(const std::wstring& name);
  FileMutex(const FileMutex&) = delete;
  FileMutex& operator=(const FileMutex&) = delete;
  ~FileMutex() override;

  /// Waits for the mutex; false when somebody else has it for longer than that. True as well where there is no mutex or
  /// the wait itself fails: a line without the lock is better than no line.
  [[nodiscard]] bool Take(DWORD milliseconds);

 private:
  UniqueKernelHandle mutex_;
  bool taken_{false};  ///< ReleaseMutex is for the owner alone
};

}  // namespace fonklav
