#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sim/Scenario.h"

namespace fonklav {

/// A number as telephony would dial it from a location.
struct TranslatedAddress {
  std::string dialable;
  std::string displayable;
  std::uint32_t results{0};  ///< LINETRANSLATERESULT_ bits
};

/// Translates as the system does: a number that does not begin with "+" counts as dialable and comes back as it is, the
/// canonical form "+CC (AREA) N" gets the location's prefixes, anything else with a "+" is no address: nothing.
[[nodiscard]] std::optional<TranslatedAddress> TranslateAddress(std::string_view address,
                                                                const Scenario::Location& location,
                                                                bool blanksOptional);

}  // namespace fonklav
