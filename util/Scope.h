#pragma once

#include <utility>

namespace fonklav {

/// Holds a flag up for as long as it lives and leaves it as it was, so that scopes on one flag may stand inside each
/// other.
class Scope {
 public:
  explicit Scope(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  ~Scope() { flag_ = before_; }

 private:
  bool& flag_;
  bool before_;
};

}  // namespace fonklav
