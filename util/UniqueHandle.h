#pragma once

#include <utility>

namespace fonklav {

/// Owns one handle of the system and closes it. `Traits` says what the handle is:
///
///     using Type = ...;                                  the handle, cheap to copy
///     static Type None() noexcept;                       the value that stands for no handle
///     static void Close(Type handle) noexcept;           called once for each other value
template <typename Traits>
class UniqueHandle {
 public:
  using Type = typename Traits::Type;

  UniqueHandle() noexcept = default;
  /// Takes the handle over; the value for none is taken as well.
  explicit UniqueHandle(Type handle) noexcept : handle_(handle) {}
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }
  ~UniqueHandle() { Reset(); }

  /// For calls of the system alone: the handle stays ours to close.
  [[nodiscard]] Type Get() const noexcept { return handle_; }
  explicit operator bool() const noexcept { return handle_ != Traits::None(); }

  /// Gives the handle away: whoever takes it closes it.
  [[nodiscard]] Type Release() noexcept { return std::exchange(handle_, Traits::None()); }

  /// Closes what is held and holds `handle` instead. The member is changed first, because closing a window runs code
  /// that may look here.
  void Reset(Type handle = Traits::None()) noexcept {
    const Type old = std::exchange(handle_, handle);
    if (old != Traits::None() && old != handle) Traits::Close(old);
  }

 private:
  Type handle_{Traits::None()};
};

}  // namespace fonklav
