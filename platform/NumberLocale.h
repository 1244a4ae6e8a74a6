#pragma once

#include "util/Text.h"

namespace fonklav {

/// How the user's locale writes numbers.
class NumberLocale {
 public:
  NumberLocale() = default;
  NumberLocale(const NumberLocale&) = delete;
  NumberLocale& operator=(const NumberLocale&) = delete;
  virtual ~NumberLocale() = default;

  [[nodiscard]] virtual NumberSeparators Separators() const = 0;
};

}  // namespace fonklav
