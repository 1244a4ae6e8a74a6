#pragma once

#include <string>

#include "platform/FileSystem.h"
#include "platform/win32/Handles.h"

namespace fonklav {

/// The lock of a file by a mutex that all our programs know by its name. A program that ends without giving it back
/// leaves it to the next. A thread that has it may take it again by another of these.
class FileMutex final : public FileLock {
 public:
  /// Makes or opens the mutex of this name. A system that refuses it keeps nobody out.
  explicit FileMutex(const std::wstring& name);
  FileMutex(const FileMutex&) = delete;
  FileMutex& operator=(const FileMutex&) = delete;
  ~FileMutex() override;

  /// Waits for the mutex; false when another program has it for longer than that.
  [[nodiscard]] bool Take(DWORD milliseconds);

 private:
  UniqueKernelHandle mutex_;
  bool taken_{false};
};

}  // namespace fonklav
