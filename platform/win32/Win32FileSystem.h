#pragma once

#include <memory>
#include <set>
#include <string>

#include "platform/FileSystem.h"

namespace fonklav {

/// Files by the functions of Windows. Every file is opened so that other programs may read, write and replace it
/// meanwhile. What somebody keeps, a lock or a file, is waited for once, and not again before it was free: nobody's
/// call waits for a log.
class Win32FileSystem final : public FileSystem {
 public:
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesA(const std::string& pathBytes) const override;
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesW(const std::string& path) const override;
  bool DeleteA(const std::string& pathBytes) override;

  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string& path) override;
  [[nodiscard]] std::string Read(const std::string& path) const override;
  [[nodiscard]] std::uint64_t Length(const std::string& path) const override;
  void Write(const std::string& path, std::string_view bytes) override;
  void Append(const std::string& path, std::string_view bytes) override;
  void Replace(const std::string& path, std::string_view bytes) override;

 private:
  /// How many milliseconds to wait for a lock or a file.
  [[nodiscard]] unsigned long PatienceWith(const std::wstring& name) const;

  std::set<std::wstring> kept_;  ///< locks and files that somebody else had when they were last asked for
};

}  // namespace fonklav
