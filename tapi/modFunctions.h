#pragma once

#include <string>

#include "platform/Ports.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// Tests of what the user enters.
class modFunctions {
 public:
  modFunctions(Diagnostics& diagnostics, const NumberLocale& numberLocale)
      : diagnostics_(diagnostics), numberLocale_(numberLocale) {}

  /// Whether a text can be dialed: a number once every "#" and "*" is taken out.
  [[nodiscard]] bool fIsTelNumber(const std::string& text) const;

 private:
  Diagnostics& diagnostics_;
  const NumberLocale& numberLocale_;
};

}  // namespace fonklav
