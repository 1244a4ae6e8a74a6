#pragma once

#include <chrono>

#include "util/DateTime.h"

namespace fonklav {

/// The time, for log stamps and for waiting.
class Clock {
 public:
  Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;
  virtual ~Clock() = default;

  [[nodiscard]] virtual LocalTime Now() const = 0;
  /// A count that never goes back, from an arbitrary start.
  [[nodiscard]] virtual std::chrono::milliseconds Ticks() const = 0;
};

}  // namespace fonklav
