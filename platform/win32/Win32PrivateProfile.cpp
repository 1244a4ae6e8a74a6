#include "platform/win32/Win32PrivateProfile.h"

#include <windows.h>

namespace fonklav {

std::uint32_t Win32PrivateProfile::GetString(const std::string& section, const std::string& key,
                                             const std::string& defaultValue, std::span<char> buffer,
                                             const std::string& file) const {
  return GetPrivateProfileStringA(section.c_str(), key.c_str(), defaultValue.c_str(), buffer.data(),
                                  static_cast<DWORD>(buffer.size()), file.c_str());
}

std::int32_t Win32PrivateProfile::GetInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                         const std::string& file) const {
  return static_cast<std::int32_t>(GetPrivateProfileIntA(section.c_str(), key.c_str(), defaultValue, file.c_str()));
}

bool Win32PrivateProfile::WriteString(const std::string& section, const std::string& key, const std::string& value,
                                      const std::string& file) {
  return WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(), file.c_str()) != FALSE;
}

}  // namespace fonklav
