#pragma once

#include "util/RunTimeError.h"

namespace fonklav::test {

/// Counts what can fail, and lets one of it fail, or all from one on.
class Faults {
 public:
  /// From now on the call of this number, counted from now, fails; with `forever` all that follow, too.
  void Arm(long first, bool forever) {
    calls_ = 0;
    first_ = first;
    forever_ = forever;
  }
  void Disarm() { first_ = -1; }
  /// Calls since Arm.
  [[nodiscard]] long Calls() const { return calls_; }
  /// To be called by whatever can fail. True when it has to.
  bool Due() {
    const long call = calls_++;
    return first_ >= 0 && (forever_ ? call >= first_ : call == first_);
  }

 private:
  long calls_{0};
  long first_{-1};
  bool forever_{false};
};

/// A fake whose operations fail when a test says so: by their failure result where they have one, by a run-time error
/// otherwise.
struct CanFail {
  Faults* faults{nullptr};  ///< not owned; null where nothing is to fail
  [[nodiscard]] bool Due() const { return faults != nullptr && faults->Due(); }
  void Step() const {
    if (Due()) throw RunTimeError(ErrorNumber::DeviceIOError);
  }
};

}  // namespace fonklav::test
