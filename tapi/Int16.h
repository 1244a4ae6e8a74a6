#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <utility>

#include "util/RunTimeError.h"

namespace fonklav {

/// A number that the program keeps in 16 bits with a sign. Throws RunTimeError 6 when it does not fit.
template <std::integral Number>
[[nodiscard]] std::int16_t ToInt16(Number number) {
  if (!std::in_range<std::int16_t>(number)) throw RunTimeError(ErrorNumber::Overflow);
  return static_cast<std::int16_t>(number);
}

}  // namespace fonklav
