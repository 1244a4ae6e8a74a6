#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace fonklav {

class LogArg;

/// The arguments that a procedure records, as written in braces at its guard.
using LogArgs = std::initializer_list<LogArg>;

/// One argument as a procedure hands it to its guard: a reference, rendered only when a log line needs it. The value
/// referred to must outlive the guarded call, which every argument of the procedure does.
class LogArg {
 public:
  struct Nothing {};  ///< an object, an empty value: rendered as the empty text

  using Value = std::variant<Nothing, std::string_view, const std::string*, bool, std::int64_t, double,
                             std::span<const std::string>, std::span<const LogArg>>;

  LogArg() = default;
  LogArg(std::string_view text) : value_(text) {}
  LogArg(const char* text) : value_(std::string_view(text)) {}
  LogArg(const std::string& text) : value_(&text) {}
  LogArg(bool flag) : value_(flag) {}
  LogArg(double number) : value_(number) {}
  LogArg(std::span<const std::string> texts) : value_(texts) {}
  LogArg(std::span<const LogArg> values) : value_(values) {}
  template <std::integral Integer>
  requires(!std::same_as<Integer, bool>) LogArg(Integer number) : value_(static_cast<std::int64_t>(number)) {}

  [[nodiscard]] const Value& Get() const noexcept { return value_; }

 private:
  Value value_;
};

}  // namespace fonklav
