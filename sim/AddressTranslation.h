#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "sim/Scenario.h"

namespace fonklav {

/// What telephony would dial for `address` from a location. A number that does not begin with "+" counts as dialable
/// and comes back as it is, the canonical form "+CC (AREA) N" gets the location's prefixes, anything else with a "+" is
/// no address: nothing. The form wants one blank behind CC and ")"; `blanksOptional` is kinder.
[[nodiscard]] std::optional<std::string> TranslateAddress(std::string_view address, const Scenario::Location& location,
                                                          bool blanksOptional);

}  // namespace fonklav
