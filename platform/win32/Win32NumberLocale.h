#pragma once

#include "platform/NumberLocale.h"

namespace fonklav {

/// The number signs that the user has chosen in the system's regional settings.
class Win32NumberLocale final : public NumberLocale {
 public:
  [[nodiscard]] NumberSeparators Separators() const override;
};

}  // namespace fonklav
