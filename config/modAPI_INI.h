#pragma once

#include <cstdint>
#include <string>

#include "config/ConfigState.h"
#include "platform/Ports.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// The one door to the settings files. Callers name a file by one of the suite's prefixes ("\data\", "\base\",
/// "\update\") or by its full path. No accessor fails: what is bad or missing is the caller's default. Texts are UTF-8
/// on this side and bytes of the code page in the file; a character that the code page lacks is stored as its
/// replacement.
class modAPI_INI {
 public:
  modAPI_INI(Diagnostics& diagnostics, ConfigState& state, PrivateProfile& profile, const CodePage& codePage,
             const NumberLocale& numberLocale)
      : diagnostics_(diagnostics), state_(state), profile_(profile), codePage_(codePage), numberLocale_(numberLocale) {}

  /// The full path of a file name: prefixes "\data\" and "\update\" lead under the data root, "\base\" beside the
  /// executable, the empty name is the suite's main settings file, any other is a full path already.
  [[nodiscard]] std::string GetMainPath(const std::string& fileName) const;
  /// Writes a value as it is given. Whether it could be written is not told; nothing is written while writes are
  /// locked.
  void SetSettStr(const std::string& section, const std::string& key, const std::string& value,
                  const std::string& fileName);
  /// A text, cut to 2047 bytes of the code page. The default stands in for a missing key and, where that is asked for,
  /// for an empty value or one that is no number in the user's notation.
  [[nodiscard]] std::string GetSettStr(const std::string& section, const std::string& key,
                                       const std::string& defaultValue, const std::string& fileName,
                                       bool defaultIfEmpty = false, bool defaultIfNotNumeric = false) const;
  /// A whole number within the bounds by `Range`; unbounded when both bounds are 0.
  [[nodiscard]] std::int32_t GetSettLng(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                        std::int32_t lower, std::int32_t upper, bool defaultIfOutside,
                                        const std::string& fileName) const;
  /// A number above 0 is true; 0, what is below it and other text are false. So a stored -1 is false, deliberately.
  [[nodiscard]] bool GetSettBool(const std::string& section, const std::string& key, bool defaultValue,
                                 const std::string& fileName) const;
  /// `value` brought to the nearer bound, an upper bound of 0 being none; or, with `defaultIfOutside`, replaced by the
  /// default when it is outside, an upper bound of 0 then being a bound.
  [[nodiscard]] std::int32_t Range(std::int32_t lower, std::int32_t upper, std::int32_t value, bool defaultIfOutside,
                                   std::int32_t defaultValue) const;

 private:
  /// The number as the platform reads it, without bounds.
  [[nodiscard]] std::int32_t ReadInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                     const std::string& fileName) const;

  Diagnostics& diagnostics_;
  ConfigState& state_;
  PrivateProfile& profile_;
  const CodePage& codePage_;
  const NumberLocale& numberLocale_;
};

}  // namespace fonklav
