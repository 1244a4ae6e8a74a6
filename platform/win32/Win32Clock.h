#pragma once

#include "platform/Clock.h"

namespace fonklav {

/// The system's local time and its tick count.
class Win32Clock final : public Clock {
 public:
  [[nodiscard]] LocalTime Now() const override;
  [[nodiscard]] std::chrono::milliseconds Ticks() const override;
};

}  // namespace fonklav
