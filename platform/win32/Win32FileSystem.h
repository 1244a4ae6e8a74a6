#pragma once

#include <memory>
#include <set>
#include <string>

#include "platform/FileSystem.h"

namespace fonklav {

/// Files by the functions of Windows. Every file is opened so that other programs may read, write and replace it
/// meanwhile. A lock, or a file to append to, that somebody else keeps is waited for once; after that, operations do
/// not wait for it any more until it has been found free again. So a log that is kept for long does not hold up each
/// step of a call.
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
  /// How many milliseconds to wait for a lock or a file: none for one that was kept when it was last asked for.
  [[nodiscard]] unsigned long PatienceWith(const std::wstring& name) const;

  std::set<std::wstring> kept_;  ///< locks and files that somebody else had when they were last asked for
};

}  // namespace fonklav
