#pragma once

#include <chrono>

namespace fonklav {

/// A local date and time of day as a wall clock shows them.
struct LocalTime {
  int year{1601};
  int month{1};
  int day{1};
  int hour{0};
  int minute{0};
  int second{0};
};

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
