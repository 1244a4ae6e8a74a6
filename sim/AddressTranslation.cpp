#include "sim/AddressTranslation.h"

namespace fonklav {

namespace {

std::string_view TakeDigits(std::string_view& rest) {
  const auto digits = rest.substr(0, rest.find_first_not_of("0123456789"));
  rest.remove_prefix(digits.size());
  return digits;
}

bool Take(std::string_view& rest, char sign) {
  const bool there = rest.starts_with(sign);
  if (there) rest.remove_prefix(1);
  return there;
}

}  // namespace

std::optional<std::string> TranslateAddress(std::string_view address, const Scenario::Location& location,
                                            bool blanksOptional) {
  if (!Take(address, '+')) return std::string(address);
  const auto country = TakeDigits(address);
  if (country.empty() || !(Take(address, ' ') || blanksOptional)) return std::nullopt;
  std::string_view area;
  if (Take(address, '(')) {
    area = TakeDigits(address);
    if (area.empty() || !Take(address, ')') || !(Take(address, ' ') || blanksOptional)) return std::nullopt;
  }
  if (address.empty() || address.find_first_of("()+") != std::string_view::npos) return std::nullopt;
  const std::string number{address};
  const std::string national = std::string(area) + number;
  if (country != std::to_string(location.country)) {
    return location.longDistanceAccess + "00" + std::string(country) + national;
  }
  if (!area.empty() && area != location.city) return location.longDistanceAccess + "0" + national;
  return location.localAccess + number;
}

}  // namespace fonklav
