#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "util/RunTimeError.h"

// Telephony's numbers as the program keeps them. What does not fit is a fault of the statement that asked.
namespace fonklav {

/// 32 bits with a sign, as telephony's counts, identifiers and results are kept, compared and shown.
[[nodiscard]] constexpr std::int32_t Signed(std::uint32_t number) { return static_cast<std::int32_t>(number); }

/// A number that is kept in 16 bits with a sign. Throws RunTimeError 6 when it does not fit.
template <std::signed_integral Number>
[[nodiscard]] std::int16_t ToInt16(Number number, int line = __builtin_LINE()) {
  if (!std::in_range<std::int16_t>(number)) throw RunTimeError(ErrorNumber::Overflow, line);
  return static_cast<std::int16_t>(number);
}

/// The element at a device index. Throws RunTimeError 9 when there is none.
template <typename Value>
[[nodiscard]] const Value& AtIndex(const std::vector<Value>& values, std::int32_t index, int line = __builtin_LINE()) {
  if (index < 0 || std::cmp_greater_equal(index, values.size())) {
    throw RunTimeError(ErrorNumber::SubscriptOutOfRange, line);
  }
  return values[static_cast<std::size_t>(index)];
}

}  // namespace fonklav
