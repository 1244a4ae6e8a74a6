#include <cstring>
#include <regex>

#include "sim/LineSimulator.h"

namespace fonklav {

using namespace sim;

namespace {

/// How long the fixed part of LINEDEVCAPS is in 3.0: every version has appended members to what is read of it.
constexpr std::size_t kDevCapsSize = 292;

/// What telephony would dial for `address` from a location. A number that does not begin with "+" counts as dialable
/// and comes back as it is, the canonical form "+CC (AREA) N" gets the location's prefixes, anything else with a "+" is
/// refused.
std::string Translated(const std::string& address, const Scenario::Location& location, bool blanks) {
  if (!address.starts_with('+')) return address;
  static const std::regex strict(R"(\+(\d+) (?:\((\d+)\) )?)");
  static const std::regex loose(R"(\+(\d+) ?(?:\((\d+)\) ?)?)");
  std::smatch codes;
  const bool canonical =
      std::regex_search(address, codes, blanks ? strict : loose, std::regex_constants::match_continuous);
  const std::string number = canonical ? codes.suffix().str() : "";
  Require(!number.empty() && number.find_first_of("()+") == std::string::npos, LINEERR_INVALADDRESS);
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
  /// Begins with a fixed part of `size` bytes, zeros behind what is known of it; dwTotalSize stays.
  template <typename Fixed>
  Structure(std::span<std::byte> bytes, const Fixed& fixed, std::size_t size = sizeof(Fixed)) : used_(size) {
    std::uint32_t total = 0;
    if (bytes.size() >= sizeof total) std::memcpy(&total, bytes.data(), sizeof total);
    bytes_ = bytes.first(std::min<std::size_t>(bytes.size(), total));
    Require(size <= bytes_.size(), LINEERR_STRUCTURETOOSMALL);
    std::ranges::fill(bytes_.subspan(sizeof total, size - sizeof total), std::byte{0});
    std::ranges::copy(std::as_bytes(std::span(&fixed, 1)).subspan(sizeof total), bytes_.begin() + sizeof total);
  }

  /// Writes a number anywhere; what would leave the buffer is dropped.
  void Put(std::size_t offset, std::size_t value) {
    const auto number = static_cast<std::uint32_t>(value);
    if (offset <= bytes_.size() && sizeof number <= bytes_.size() - offset) {
      std::memcpy(bytes_.data() + offset, &number, sizeof number);
    }
  }

  /// Appends bytes with their size at `field` and behind it their offset, which is returned; 0 where they do not fit.
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

  /// Writes dwNeededSize and dwUsedSize, and over all of it what the scenario has for this structure of this device.
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
  std::size_t used_;
  std::size_t needed_{used_};  ///< the same, as long as all has fitted
};

}  // namespace

std::int32_t LineSimulator::lineGetDevCaps(HLINEAPP app, std::uint32_t device, std::uint32_t version,
                                           std::uint32_t extension, std::span<std::byte> caps) {
  return Recorded({"lineGetDevCaps", {"app", app, "device", device, "version", version}}, [&] {
    const auto& rules = DeviceOf(app, device, version, extension);
    Structure structure(caps, rules.caps, kDevCapsSize);
    structure.AppendText(offsetof(LINEDEVCAPS, dwProviderInfoSize), rules.provider);
    structure.AppendText(offsetof(LINEDEVCAPS, dwSwitchInfoSize), rules.switchInfo);
    structure.AppendText(offsetof(LINEDEVCAPS, dwLineNameSize), rules.name);
    structure.Finish(scenario_.patches, "devcaps", device);
  });
}

std::int32_t LineSimulator::lineGetTranslateCaps(HLINEAPP app, std::uint32_t version, std::span<std::byte> caps) {
  return Recorded({"lineGetTranslateCaps", {"app", app, "version", version}}, [&] {
    CheckApp(app);
    Require(version >= TAPI_VERSION1_3 && version <= scenario_.version, LINEERR_INCOMPATIBLEAPIVERSION);
    LINETRANSLATECAPS fixed{};
    fixed.dwCurrentLocationID = CurrentLocation(LINEERR_INIFILECORRUPT).id;
    Structure structure(caps, fixed);
    const auto& locations = scenario_.locations;
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
  });
}

const Scenario::Location& LineSimulator::CurrentLocation(std::int32_t otherwise) const {
  Require(!scenario_.locations.empty(), otherwise);
  return scenario_.locations.at(scenario_.currentLocation);
}

std::int32_t LineSimulator::tapiGetLocationInfo(std::span<char, 8> country, std::span<char, 8> city) {
  return Recorded({"tapiGetLocationInfo", {}}, [&] {
    const auto& location = CurrentLocation(TAPIERR_REQUESTFAILED);
    // As telephony does: a code that is too long fills its buffer without a NUL.
    std::strncpy(country.data(), std::to_string(location.country).c_str(), country.size());
    std::strncpy(city.data(), location.city.c_str(), city.size());
  });
}

std::int32_t LineSimulator::lineTranslateAddress(HLINEAPP app, std::uint32_t device, std::uint32_t version,
                                                 const char* address, std::uint32_t card, std::uint32_t options,
                                                 std::span<std::byte> output) {
  CallRecord record("lineTranslateAddress", {"app", app, "device", device, "version", version, "address", address,
                                             "card", card, "options", options});
  return Recorded(std::move(record), [&] {
    DeviceOf(app, device, version);
    Require(address != nullptr, LINEERR_INVALPOINTER);
    const auto& location = CurrentLocation(LINEERR_INIFILECORRUPT);
    LINETRANSLATEOUTPUT fixed{};
    fixed.dwCurrentCountry = location.country;
    Structure structure(output, fixed);
    const std::string dialed = Translated(address, location, scenario_.blanks != 0);
    structure.AppendText(offsetof(LINETRANSLATEOUTPUT, dwDialableStringSize), dialed);
    structure.AppendText(offsetof(LINETRANSLATEOUTPUT, dwDisplayableStringSize), address);
    structure.Finish(scenario_.patches, "translateoutput", device);
  });
}

}  // namespace fonklav
