#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "util/CaseFold.h"

namespace fonklav {

/// FILE_ATTRIBUTE_DIRECTORY, of the attributes that the platform gives.
inline constexpr std::uint32_t kFileAttributeDirectory = 0x10;

/// The name of the mutex that is a file's lock, for a full path in UTF-8. It is the same for every program of ours, in
/// whatever case the path is spelled. A mutex name holds no backslash and at most 260 characters
/// (https://learn.microsoft.com/windows/win32/api/synchapi/nf-synchapi-createmutexw), so a long path counts by its end:
/// two that end alike have one lock, which costs a wait and nothing else.
[[nodiscard]] inline std::string FileLockName(std::string_view fullPath) {
  constexpr std::size_t mostOfPath = 200;
  std::string path = FoldCase(fullPath);
  path.erase(0, path.size() - std::min(path.size(), mostOfPath));
  std::ranges::replace(path, '\\', '/');
  // All sessions of a computer share the logs, so they share the locks.
  return "Global\\FonklavTAPI log " + path;
}

/// Keeps other programs of ours from writing a file for as long as it lives. Given by FileSystem::Lock; to be let go on
/// the thread that took it.
class FileLock {
 public:
  FileLock() = default;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  virtual ~FileLock() = default;
};

/// Files as bytes. Paths are UTF-8 text unless an operation says otherwise. Operations that open a file throw
/// RunTimeError with the classic number of what went wrong (53 file not found, 61 disk full, 70 held by another program
/// or forbidden, 75 the path is a folder, 76 no such folder, 57 anything else) and leave no handle open.
class FileSystem {
 public:
  FileSystem() = default;
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;
  virtual ~FileSystem() = default;

  /// GetFileAttributesA of a path in bytes of the code page; nothing when they cannot be read.
  [[nodiscard]] virtual std::optional<std::uint32_t> GetAttributesA(const std::string& pathBytes) const = 0;
  /// GetFileAttributesW of a path in UTF-8; nothing when they cannot be read.
  [[nodiscard]] virtual std::optional<std::uint32_t> GetAttributesW(const std::string& path) const = 0;
  /// DeleteFileA of a path in bytes of the code page; whether the platform reported success.
  virtual bool DeleteA(const std::string& pathBytes) = 0;

  /// Takes the lock that belongs to a path; the file need not exist. Whoever has the lock may take it once more. It
  /// keeps out only programs that ask for it. Waits a tenth of a second at most; null when another program keeps it for
  /// longer. The caller may add a line all the same, but must not replace the file, which would lose what the other
  /// program writes.
  [[nodiscard]] virtual std::unique_ptr<FileLock> Lock(const std::string& path) = 0;
  /// The whole file. Other programs may read and write it meanwhile.
  [[nodiscard]] virtual std::string Read(const std::string& path) const = 0;
  /// Length in bytes, 0 for a file that is missing. Does not throw.
  [[nodiscard]] virtual std::uint64_t Length(const std::string& path) const = 0;
  /// Creates or empties the file and writes `bytes`.
  virtual void Write(const std::string& path, std::string_view bytes) = 0;
  /// Adds `bytes` at the end, under the lock, in one operation that no other program's append can split; creates the
  /// file if needed.
  virtual void Append(const std::string& path, std::string_view bytes) = 0;
  /// Writes `bytes` to a file beside `path` and puts that in the place of `path`, under the lock: a crash leaves the
  /// old or the new file whole. Where the platform refuses the replacement it writes over the old file, as Write does.
  virtual void Replace(const std::string& path, std::string_view bytes) = 0;
};

}  // namespace fonklav
