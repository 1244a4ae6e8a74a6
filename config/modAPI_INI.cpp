#include "config/modAPI_INI.h"

#include <algorithm>
#include <array>

#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {
namespace {

constexpr const char* kMainSettings = "\\data\\Rufmon.ini";
constexpr std::size_t kBufferSize = 2048;  ///< the terminating zero takes one of them

}  // namespace

std::string modAPI_INI::GetMainPath(const std::string& fileName) const {
  return Procedure(diagnostics_, "modAPI_INI.GetMainPath", {fileName}, std::string{}, [&](std::string& path) {
    if (fileName.starts_with("\\data\\") || fileName.starts_with("\\update\\")) {
      path = state_.dataRoot + fileName;
    } else if (fileName.starts_with("\\base\\")) {
      path = state_.programFolder + fileName;
    } else if (fileName.empty()) {
      path = state_.dataRoot + kMainSettings;
    } else {
      path = fileName;
    }
  });
}

void modAPI_INI::SetSettStr(const std::string& section, const std::string& key, const std::string& value,
                            const std::string& fileName) {
  Procedure(diagnostics_, "modAPI_INI.SetSettStr", {section, key, value, fileName}, [&] {
    if (state_.writeLocked) return;
    const auto bytes = [&](const std::string& text) { return codePage_.ToBytes(text); };
    profile_.WriteString(bytes(section), bytes(key), bytes(value), bytes(GetMainPath(fileName)));
  });
}

std::string modAPI_INI::GetSettStr(const std::string& section, const std::string& key, const std::string& defaultValue,
                                   const std::string& fileName, bool defaultIfEmpty, bool defaultIfNotNumeric) const {
  return Procedure(diagnostics_, "modAPI_INI.GetSettStr", {section, key, defaultValue, fileName}, std::string{},
                   [&](std::string& value) {
    const auto bytes = [&](const std::string& text) { return codePage_.ToBytes(text); };
    std::array<char, kBufferSize> buffer{};
    const std::uint32_t count =
        profile_.GetString(bytes(section), bytes(key), bytes(defaultValue), buffer, bytes(GetMainPath(fileName)));
    value = codePage_.ToText({buffer.data(), std::min<std::size_t>(count, buffer.size())});
    if (defaultIfEmpty && value.empty()) value = defaultValue;
    if (defaultIfNotNumeric && !IsNumeric(value, numberLocale_.Separators())) value = defaultValue;
  });
}

std::int32_t modAPI_INI::ReadInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                 const std::string& fileName) const {
  return profile_.GetInt(codePage_.ToBytes(section), codePage_.ToBytes(key), defaultValue,
                         codePage_.ToBytes(GetMainPath(fileName)));
}

std::int32_t modAPI_INI::GetSettLng(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                    std::int32_t lower, std::int32_t upper, bool defaultIfOutside,
                                    const std::string& fileName) const {
  return Procedure(diagnostics_, "modAPI_INI.GetSettLng", {section, key, defaultValue, fileName}, 0,
                   [&](std::int32_t& value) {
    value = ReadInt(section, key, defaultValue, fileName);
    const bool bounded = lower != 0 || upper != 0;
    if (bounded) value = Range(lower, upper, value, defaultIfOutside, defaultValue);
  });
}

bool modAPI_INI::GetSettBool(const std::string& section, const std::string& key, bool defaultValue,
                             const std::string& fileName) const {
  return Procedure(
      diagnostics_, "modAPI_INI.GetSettBool", {section, key, defaultValue, fileName}, false,
      [&](bool& value) { value = Range(0, 1, ReadInt(section, key, defaultValue ? 1 : 0, fileName), false, 0) != 0; });
}

std::int32_t modAPI_INI::Range(std::int32_t lower, std::int32_t upper, std::int32_t value, bool defaultIfOutside,
                               std::int32_t defaultValue) const {
  return Procedure(diagnostics_, "modAPI_INI.Range", {lower, upper, value, defaultIfOutside, defaultValue}, 0,
                   [&](std::int32_t& result) {
    result = value;
    if (defaultIfOutside) {
      if (value < lower || value > upper) result = defaultValue;
      return;
    }
    // Only here is an upper bound of 0 no bound; the lower one always counts.
    if (value < lower) result = lower;
    if (upper != 0 && value > upper) result = upper;
  });
}

}  // namespace fonklav
