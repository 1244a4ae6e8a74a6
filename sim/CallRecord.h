#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fonklav {

/// "0x" and the number in hexadecimal digits.
[[nodiscard]] std::string HexText(std::uintptr_t value);

/// One call that was made on the simulated telephony.
struct CallRecord {
  std::string function;             ///< published name, without the A of the 8-bit variant
  std::string arguments;            ///< `line=0x20001 address="0301234567"`; other bytes than printable ASCII as \xNN
  std::optional<std::string> text;  ///< the string argument, a number or a device class; nothing for a null pointer
  std::int32_t result{0};

  /// A record without a result; the arguments are given as name, value, name, value …
  template <typename... Arguments>
  explicit CallRecord(std::string_view name, Arguments... named) : function(name) {
    if constexpr (sizeof...(named) > 0) Add(named...);
  }

  /// "call lineOpen(app=…) = 0x0" without a line end. A request's number is decimal.
  [[nodiscard]] std::string LogLine() const;

 private:
  void AddText(std::string_view name, const char* value);
  void AddRendered(std::string_view name, std::string_view value);

  template <typename Value, typename... Rest>
  void Add(std::string_view name, Value value, Rest... rest) {
    if constexpr (std::integral<Value>) {
      AddRendered(name, HexText(value));
    } else {
      AddText(name, value);
    }
    if constexpr (sizeof...(rest) > 0) Add(rest...);
  }
};

}  // namespace fonklav
