#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fonklav {

inline constexpr std::uint32_t kFileAttributeDirectory = 0x10;

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

  /// The whole file. Other programs may read and write it meanwhile.
  [[nodiscard]] virtual std::string Read(const std::string& path) const = 0;
  /// Length in bytes, 0 for a file that is missing. Does not throw.
  [[nodiscard]] virtual std::uint64_t Length(const std::string& path) const = 0;
  /// Creates or empties the file and writes `bytes`.
  virtual void Write(const std::string& path, std::string_view bytes) = 0;
  /// Adds `bytes` at the end in one operation that no other program's append can split; creates the file if needed.
  virtual void Append(const std::string& path, std::string_view bytes) = 0;
  /// Writes `bytes` to a file beside `path` and puts it in its place, so that a crash leaves the old or the new file
  /// whole. Falls back to Write where the platform refuses the replacement.
  virtual void Replace(const std::string& path, std::string_view bytes) = 0;
};

}  // namespace fonklav
