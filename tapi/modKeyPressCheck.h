#pragma once

#include <cstdint>
#include <string_view>

#include "util/Diagnostics.h"

namespace fonklav {

/// The keystroke filter of the suite's input fields.
class modKeyPressCheck {
 public:
  explicit modKeyPressCheck(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}

  /// The character code to let through in place of `key` in a field of the given class, 0 to swallow it. Copy and paste
  /// always pass, and so does every key in a class that is not known.
  [[nodiscard]] std::int16_t CheckKeyPress(std::int16_t key, std::string_view keyClass) const;

 private:
  Diagnostics& diagnostics_;
};

}  // namespace fonklav
