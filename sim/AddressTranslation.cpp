#include "sim/AddressTranslation.h"

#include "sim/TapiCodes.h"

namespace fonklav {

namespace {

/// Takes a canonical number apart from its front.
class Canonical {
 public:
  Canonical(std::string_view rest, bool blanksOptional) : rest_(rest), blanksOptional_(blanksOptional) {}

  std::string_view Digits() {
    const auto digits = rest_.substr(0, rest_.find_first_not_of("0123456789"));
    rest_.remove_prefix(digits.size());
    return digits;
  }
  bool Take(char sign) {
    if (!rest_.starts_with(sign)) return false;
    rest_.remove_prefix(1);
    return true;
  }
  bool Blank() { return Take(' ') || blanksOptional_; }
  [[nodiscard]] std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
  bool blanksOptional_;
};

TranslatedAddress Dialed(std::string_view country, std::string_view area, std::string_view number,
                         const Scenario::Location& from) {
  const std::string local{number};
  const std::string national = std::string(area) + local;
  if (country != std::to_string(from.country)) {
    return {from.longDistanceAccess + from.internationalPrefix + std::string(country) + national,
            {},
            sim::LINETRANSLATERESULT_CANONICAL | sim::LINETRANSLATERESULT_INTERNATIONAL};
  }
  if (!area.empty() && area != from.city) {
    return {from.longDistanceAccess + from.longDistancePrefix + national,
            {},
            sim::LINETRANSLATERESULT_CANONICAL | sim::LINETRANSLATERESULT_LONGDISTANCE};
  }
  return {from.localAccess + local, {}, sim::LINETRANSLATERESULT_CANONICAL | sim::LINETRANSLATERESULT_LOCAL};
}

}  // namespace

std::optional<TranslatedAddress> TranslateAddress(std::string_view address, const Scenario::Location& location,
                                                  bool blanksOptional) {
  if (!address.starts_with('+')) return TranslatedAddress{std::string(address), std::string(address), 0};
  Canonical parts(address.substr(1), blanksOptional);
  const auto country = parts.Digits();
  if (country.empty() || !parts.Blank()) return std::nullopt;
  std::string_view area;
  if (parts.Take('(')) {
    area = parts.Digits();
    if (area.empty() || !parts.Take(')') || !parts.Blank()) return std::nullopt;
  }
  const auto number = parts.Rest();
  if (number.empty() || number.find_first_of("()+") != std::string_view::npos) return std::nullopt;
  auto translated = Dialed(country, area, number, location);
  translated.displayable = address;
  return translated;
}

}  // namespace fonklav
