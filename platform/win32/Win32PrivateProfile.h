#pragma once

#include "platform/PrivateProfile.h"

namespace fonklav {

/// The system's private-profile functions.
class Win32PrivateProfile final : public PrivateProfile {
 public:
  std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                          std::span<char> buffer, const std::string& file) const override;
  [[nodiscard]] std::int32_t GetInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                    const std::string& file) const override;
  bool WriteString(const std::string& section, const std::string& key, const std::string& value,
                   const std::string& file) override;
};

}  // namespace fonklav
