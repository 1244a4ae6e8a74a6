#pragma once

#include <cstdint>
#include <string>

#include "config/ConfigState.h"
#include "platform/CodePage.h"
#include "platform/NumberLocale.h"
#include "platform/PrivateProfile.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// The one door to the settings files. Callers name a file by one of the suite's prefixes ("\data\", "\base\",
/// "\update\") or by its full path. No accessor fails: what is bad or missing is the caller's default.
class modAPI_INI {
 public:
  modAPI_INI(Diagnostics& diagnostics, ConfigState& state, PrivateProfile& profile, const CodePage& codePage,
             const NumberLocale& numberLocale)
      : diagnostics_(diagnostics), state_(state), profile_(profile), codePage_(codePage), numberLocale_(numberLocale) {}

  [[nodiscard]] std::string GetMainPath(const std::string& fileName) const;
  void SetSettStr(const std::string& section, const std::string& key, const std::string& value,
                  const std::string& fileName);
  [[nodiscard]] std::string GetSettStr(const std::string& section, const std::string& key,
                                       const std::string& defaultValue, const std::string& fileName,
                                       bool defaultIfEmpty, bool defaultIfNotNumeric) const;
  [[nodiscard]] std::int32_t GetSettLng(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                        std::int32_t lower, std::int32_t upper, bool defaultIfOutside,
                                        const std::string& fileName) const;
  [[nodiscard]] bool GetSettBool(const std::string& section, const std::string& key, bool defaultValue,
                                 const std::string& fileName) const;
  [[nodiscard]] std::int32_t Range(std::int32_t lower, std::int32_t upper, std::int32_t value, bool defaultIfOutside,
                                   std::int32_t defaultValue) const;

 private:
  [[nodiscard]] std::int32_t ReadInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                     const std::string& fileName) const;

  Diagnostics& diagnostics_;
  ConfigState& state_;
  PrivateProfile& profile_;
  const CodePage& codePage_;
  const NumberLocale& numberLocale_;
};

}  // namespace fonklav
