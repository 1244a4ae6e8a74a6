#pragma once

#include <set>
#include <string>

#include "platform/FileSystem.h"

namespace fonklav {

/// Files by the functions of Windows. Every file is opened so that other programs may read, write and replace it
/// meanwhile; only an append keeps other writers out, if it can.
class Win32FileSystem final : public FileSystem {
 public:
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesA(const std::string& pathBytes) const override;
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesW(const std::string& path) const override;
  bool DeleteA(const std::string& pathBytes) override;

  [[nodiscard]] std::string Read(const std::string& path) const override;
  [[nodiscard]] std::uint64_t Length(const std::string& path) const override;
  void Write(const std::string& path, std::string_view bytes) override;
  void Append(const std::string& path, std::string_view bytes) override;
  void Replace(const std::string& path, std::string_view bytes) override;

 private:
  std::set<std::wstring> kept_;  ///< files that somebody else kept open for writing when they were last appended to
};

}  // namespace fonklav
