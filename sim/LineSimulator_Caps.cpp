#include <algorithm>
#include <cstring>
#include <regex>
#include <utility>

#include "sim/LineSimulator.h"
#include "sim/TapiCodes.h"

namespace fonklav {

using namespace sim;

namespace {

/// How long the fixed part of LINEDEVCAPS is in 3.0: every version has appended members to what is read of it.
constexpr std::size_t kDevCapsSize = 292;

/// What telephony would dial for `address` from a location. A number that does not begin with "+" counts as dialable
/// and comes back as it is, the canonical form "+CC (AREA) N" gets the location's prefixes, anything else with a "+" is
/// no address: nothing.
std::optional<std::string> Translated(const std::string& address, const Scenario::Location& location, bool blanks) {
  if (!address.starts_with('+')) return address;
  const std::regex head(blanks ? R"(\+(\d+) (?:\((\d+)\) )?)" : R"(\+(\d+) ?(?:\((\d+)\) ?)?)");
  std::smatch codes;
  const bool canonical = std::regex_search(address, codes, head, std::regex_constants::match_continuous);
  const std::string number = canonical ? codes.suffix().str() : "";
  if (number.empty() || number.find_first_of("()+") != std::string::npos) return std::nullopt;
  const std::string country = codes[1];
  const std::string area = codes[2];
  if (country != std::to_string(location.country)) return location.longDistanceAccess + "00" + country + area + number;
  if (!area.empty() && area != location.city) return location.longDistanceAccess + "0" + area + number;
  return location.localAccess + number;
}

/// Fills a variably sized structure as telephony does: the fixed part first, then the strings, each with its size and
/// offset in the fixed part. What does not fit has size and offset 0, as has all that follows it, and still counts for
/// dwNeededSize. Never writes beyond the caller's bytes, nor beyond the dwTotalSize at their start.
class Structure {
 public:
  explicit Structure(std::span<std::byte> bytes) {
    std::uint32_t total = 0;
    if (bytes.size() >= sizeof total) std::memcpy(&total, bytes.data(), sizeof total);
    bytes_ = bytes.first(std::min<std::size_t>(bytes.size(), total));
  }

  /// Begins with a fixed part of `size` bytes, zeros behind what is known of it; dwTotalSize stays. False when there is
  /// no room for it.
  template <typename Fixed>
  [[nodiscard]] bool Begin(const Fixed& fixed, std::size_t size = sizeof(Fixed)) {
    if (size > bytes_.size()) return false;
    const auto known = std::as_bytes(std::span(&fixed, 1)).subspan(sizeof(std::uint32_t));
    const auto rest = std::ranges::copy(known, bytes_.begin() + sizeof(std::uint32_t)).out;
    std::fill(rest, bytes_.begin() + static_cast<std::ptrdiff_t>(size), std::byte{0});
    used_ = needed_ = size;
    return true;
  }

  /// Writes a number anywhere; what would leave the buffer is dropped.
  void Put(std::size_t offset, std::size_t value) {
    const auto number = static_cast<std::uint32_t>(value);
    if (offset <= bytes_.size() && sizeof number <= bytes_.size() - offset) {
      std::memcpy(bytes_.data() + offset, &number, sizeof number);
    }
  }

  /// Appends bytes, notes their size at `field` and their offset in the word behind it, and returns the offset; 0 where
  /// they do not fit.
  std::size_t Append(std::size_t field, std::string_view bytes) {
    needed_ += bytes.size();
    if (needed_ > bytes_.size()) return 0;
    std::memcpy(bytes_.data() + used_, bytes.data(), bytes.size());
    Put(field, bytes.size());
    Put(field + sizeof(std::uint32_t), used_);
    return std::exchange(used_, needed_);
  }

  /// The same for a string, which ends with a NUL.
  void AppendText(std::size_t field, const std::string& text) { Append(field, text + '\0'); }

  /// Writes dwNeededSize and dwUsedSize, and over all of it what the scenario has for structures of this name, of this
  /// device.
  void Finish(std::vector<Scenario::Patch>& patches, std::string_view name, std::uint32_t device = 0) {
    Put(1 * sizeof(std::uint32_t), needed_);
    Put(2 * sizeof(std::uint32_t), used_);
    for (auto& patch : patches) {
      if (patch.structure != name || patch.device.value_or(device) != device) continue;
      Put(patch.offset, patch.value);
      patch.value += patch.step;
    }
  }

 private:
  std::span<std::byte> bytes_;
  std::size_t used_{0};
  std::size_t needed_{0};  ///< the same, as long as all has fitted
};

}  // namespace

std::int32_t LineSimulator::lineGetDevCaps(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                           std::uint32_t extVersion, std::span<std::byte> caps) {
  return Recorded({"lineGetDevCaps", {"app", lineApp, "device", deviceId, "version", apiVersion}}, [&] {
    if (const auto code = CheckVersion(lineApp, deviceId, apiVersion, extVersion); code != 0) return code;
    Structure structure(caps);
    const auto& device = scenario_.devices[deviceId];
    if (!structure.Begin(device.caps, kDevCapsSize)) return LINEERR_STRUCTURETOOSMALL;
    structure.AppendText(offsetof(LINEDEVCAPS, dwProviderInfoSize), device.provider);
    structure.AppendText(offsetof(LINEDEVCAPS, dwSwitchInfoSize), device.switchInfo);
    structure.AppendText(offsetof(LINEDEVCAPS, dwLineNameSize), device.name);
    structure.Finish(scenario_.patches, "devcaps", deviceId);
    return 0;
  });
}

std::int32_t LineSimulator::lineGetTranslateCaps(HLINEAPP lineApp, std::uint32_t apiVersion,
                                                 std::span<std::byte> caps) {
  return Recorded({"lineGetTranslateCaps", {"app", lineApp, "version", apiVersion}}, [&] {
    if (const auto code = CheckApp(lineApp); code != 0) return code;
    if (apiVersion < TAPI_VERSION1_3 || apiVersion > scenario_.version) return LINEERR_INCOMPATIBLEAPIVERSION;
    const auto& locations = scenario_.locations;
    if (locations.empty()) return LINEERR_INIFILECORRUPT;
    Structure structure(caps);
    LINETRANSLATECAPS fixed{};
    if (CurrentLocation() != nullptr) fixed.dwCurrentLocationID = CurrentLocation()->id;
    if (!structure.Begin(fixed)) return LINEERR_STRUCTURETOOSMALL;
    // The list goes in as a whole and its strings behind it. Without room for it no location is reported.
    std::vector<LINELOCATIONENTRY> entries(locations.size());
    for (std::size_t index = 0; index < locations.size(); ++index) {
      entries[index].dwPermanentLocationID = locations[index].id;
      entries[index].dwCountryCode = entries[index].dwCountryID = locations[index].country;
    }
    const std::string_view list(reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof entries[0]);
    std::size_t entry = structure.Append(offsetof(LINETRANSLATECAPS, dwLocationListSize), list);
    if (entry != 0) structure.Put(offsetof(LINETRANSLATECAPS, dwNumLocations), entries.size());
    for (const auto& location : locations) {
      structure.AppendText(entry + offsetof(LINELOCATIONENTRY, dwLocationNameSize), location.name);
      structure.AppendText(entry + offsetof(LINELOCATIONENTRY, dwCityCodeSize), location.city);
      structure.AppendText(entry + offsetof(LINELOCATIONENTRY, dwLocalAccessCodeSize), location.localAccess);
      structure.AppendText(entry + offsetof(LINELOCATIONENTRY, dwLongDistanceAccessCodeSize),
                           location.longDistanceAccess);
      entry += sizeof(LINELOCATIONENTRY);
    }
    structure.Finish(scenario_.patches, "translatecaps");
    return 0;
  });
}

const Scenario::Location* LineSimulator::CurrentLocation() const {
  const auto& all = scenario_.locations;
  const auto current = std::ranges::find_if(
      all, [&](const auto& location) { return location.id == scenario_.currentLocation.value_or(location.id); });
  return current == all.end() ? nullptr : &*current;
}

std::int32_t LineSimulator::tapiGetLocationInfo(std::span<char, 8> countryCode, std::span<char, 8> cityCode) {
  return Recorded({"tapiGetLocationInfo", {}}, [&] {
    const auto* const location = CurrentLocation();
    if (location == nullptr) return TAPIERR_REQUESTFAILED;
    // As telephony does: a code that is too long fills its buffer without a NUL.
    std::strncpy(countryCode.data(), std::to_string(location->country).c_str(), countryCode.size());
    std::strncpy(cityCode.data(), location->city.c_str(), cityCode.size());
    return 0;
  });
}

std::int32_t LineSimulator::lineTranslateAddress(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                                 const char* addressIn, std::uint32_t card,
                                                 std::uint32_t translateOptions, std::span<std::byte> output) {
  CallRecord record("lineTranslateAddress", {"app", lineApp, "device", deviceId, "version", apiVersion, "address",
                                             addressIn, "card", card, "options", translateOptions});
  return Recorded(std::move(record), [&] {
    if (const auto code = CheckVersion(lineApp, deviceId, apiVersion); code != 0) return code;
    if (addressIn == nullptr) return LINEERR_INVALPOINTER;
    const auto* const location = CurrentLocation();
    if (location == nullptr) return LINEERR_INIFILECORRUPT;
    Structure structure(output);
    LINETRANSLATEOUTPUT fixed{};
    fixed.dwCurrentCountry = location->country;
    if (!structure.Begin(fixed)) return LINEERR_STRUCTURETOOSMALL;
    const auto dialed = Translated(addressIn, *location, scenario_.blanks != 0);
    if (!dialed) return LINEERR_INVALADDRESS;
    structure.AppendText(offsetof(LINETRANSLATEOUTPUT, dwDialableStringSize), *dialed);
    structure.AppendText(offsetof(LINETRANSLATEOUTPUT, dwDisplayableStringSize), addressIn);
    structure.Finish(scenario_.patches, "translateoutput", deviceId);
    return 0;
  });
}

}  // namespace fonklav
