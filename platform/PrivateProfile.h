#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace fonklav {

/// The platform's private-profile functions in their 8-bit forms: all strings are bytes of the code page, zero
/// terminated. Section and key are matched without regard to case; no operation reports why it failed.
class PrivateProfile {
 public:
  PrivateProfile() = default;
  PrivateProfile(const PrivateProfile&) = delete;
  PrivateProfile& operator=(const PrivateProfile&) = delete;
  virtual ~PrivateProfile() = default;

  /// GetPrivateProfileStringA: fills `buffer` with a zero-terminated value, cut to fit, and returns how many bytes it
  /// copied without the zero.
  virtual std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                                  std::span<char> buffer, const std::string& file) const = 0;
  /// GetPrivateProfileIntA: the leading decimal number of the value, 0 for other text, `defaultValue` for a missing
  /// key.
  [[nodiscard]] virtual std::int32_t GetInt(const std::string& section, const std::string& key,
                                            std::int32_t defaultValue, const std::string& file) const = 0;
  /// WritePrivateProfileStringA: makes file, section and key as needed, never a folder. False when nothing was written.
  virtual bool WriteString(const std::string& section, const std::string& key, const std::string& value,
                           const std::string& file) = 0;
};

}  // namespace fonklav
