#pragma once

#include "platform/Clock.h"

namespace fonklav::test {

/// A clock that moves when the test says so.
class FakeClock : public Clock {
 public:
  [[nodiscard]] LocalTime Now() const override { return now; }
  [[nodiscard]] std::chrono::milliseconds Ticks() const override { return ticks; }
  void Advance(std::chrono::milliseconds time) { ticks += time; }

  LocalTime now{2015, 3, 7, 9, 5, 31};
  std::chrono::milliseconds ticks{1000};
};

}  // namespace fonklav::test
