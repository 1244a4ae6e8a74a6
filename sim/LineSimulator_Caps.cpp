#include <algorithm>
#include <limits>

#include "sim/AddressTranslation.h"
#include "sim/DriverBuffer.h"
#include "sim/LineSimulator.h"
#include "sim/TapiCodes.h"

namespace fonklav {

using namespace sim;

namespace {

/// How long the fixed part of LINEDEVCAPS is for a negotiated version: every version has appended members.
constexpr std::size_t DevCapsSize(std::uint32_t version) {
  if (version >= TAPI_VERSION3_0) return 292;
  if (version >= 0x00020002) return 268;
  if (version >= TAPI_VERSION2_0) return 252;
  return version >= TAPI_VERSION1_4 ? 240 : sizeof(LINEDEVCAPS);
}

/// The code as telephony leaves it in a buffer of 8 bytes: one that is too long fills it without a NUL.
void PutCode(std::span<char, 8> buffer, const std::string& code) {
  std::copy_n(code.c_str(), std::min(code.size() + 1, buffer.size()), buffer.begin());
}

}  // namespace

std::int32_t LineSimulator::lineGetDevCaps(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                           std::uint32_t extVersion, std::span<std::byte> caps) {
  return Recorded(CallRecord("lineGetDevCaps", "app", lineApp, "device", deviceId, "version", apiVersion), [&] {
    if (const auto code = CheckVersion(lineApp, deviceId, apiVersion, extVersion); code != 0) return code;
    DriverBuffer buffer(caps);
    if (!buffer.Begin(DevCapsSize(apiVersion))) return LINEERR_STRUCTURETOOSMALL;
    const auto& device = scenario_.devices[deviceId];
    for (const auto& [offset, number] : device.numbers) buffer.Put(offset, number);
    buffer.AppendText(offsetof(LINEDEVCAPS, dwProviderInfoSize), device.provider);
    buffer.AppendText(offsetof(LINEDEVCAPS, dwSwitchInfoSize), device.switchInfo);
    buffer.AppendText(offsetof(LINEDEVCAPS, dwLineNameSize), device.name);
    buffer.Finish();
    ApplyPatches(buffer, "devcaps", deviceId);
    return 0;
  });
}

std::int32_t LineSimulator::lineGetTranslateCaps(HLINEAPP lineApp, std::uint32_t apiVersion,
                                                 std::span<std::byte> caps) {
  return Recorded(CallRecord("lineGetTranslateCaps", "app", lineApp, "version", apiVersion), [&] {
    if (const auto code = CheckApp(lineApp); code != 0) return code;
    if (apiVersion < TAPI_VERSION1_3 || apiVersion > scenario_.version) return LINEERR_INCOMPATIBLEAPIVERSION;
    if (scenario_.locations.empty()) return LINEERR_INIFILECORRUPT;
    DriverBuffer buffer(caps);
    if (!buffer.Begin(sizeof(LINETRANSLATECAPS))) return LINEERR_STRUCTURETOOSMALL;
    FillLocations(buffer);
    buffer.Finish();
    ApplyPatches(buffer, "translatecaps");
    return 0;
  });
}

/// The list goes in as a whole and its strings behind it. Without room for the list the strings have no entry to note
/// themselves in: they only count for the needed size, and no location is reported.
void LineSimulator::FillLocations(DriverBuffer& buffer) const {
  const auto& locations = scenario_.locations;
  std::vector<LINELOCATIONENTRY> entries(locations.size());
  for (std::size_t index = 0; index < locations.size(); ++index) {
    entries[index].dwPermanentLocationID = locations[index].id;
    entries[index].dwCountryCode = entries[index].dwCountryID = locations[index].country;
  }
  const std::string_view list(reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof entries[0]);
  const std::size_t at = buffer.Append(offsetof(LINETRANSLATECAPS, dwLocationListSize), list);
  if (at != 0) buffer.Put(offsetof(LINETRANSLATECAPS, dwNumLocations), static_cast<std::uint32_t>(entries.size()));
  if (CurrentLocation() != nullptr) {
    buffer.Put(offsetof(LINETRANSLATECAPS, dwCurrentLocationID), CurrentLocation()->id);
  }
  constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max() / 2;
  std::size_t entry = at != 0 ? at : kNowhere;
  for (const auto& location : locations) {
    buffer.AppendText(entry + offsetof(LINELOCATIONENTRY, dwLocationNameSize), location.name);
    buffer.AppendText(entry + offsetof(LINELOCATIONENTRY, dwCityCodeSize), location.city);
    buffer.AppendText(entry + offsetof(LINELOCATIONENTRY, dwLocalAccessCodeSize), location.localAccess);
    buffer.AppendText(entry + offsetof(LINELOCATIONENTRY, dwLongDistanceAccessCodeSize), location.longDistanceAccess);
    entry += sizeof(LINELOCATIONENTRY);
  }
}

void LineSimulator::ApplyPatches(DriverBuffer& buffer, std::string_view structure,
                                 std::optional<std::uint32_t> device) {
  for (auto& patch : scenario_.patches) {
    if (patch.structure != structure || patch.device.value_or(device.value_or(0)) != device.value_or(0)) continue;
    buffer.Put(patch.offset, patch.value);
    patch.value += patch.step;
  }
}

const Scenario::Location* LineSimulator::CurrentLocation() const {
  const auto& all = scenario_.locations;
  const auto current = std::ranges::find_if(
      all, [&](const auto& location) { return location.id == scenario_.currentLocation.value_or(location.id); });
  return current == all.end() ? nullptr : &*current;
}

std::int32_t LineSimulator::tapiGetLocationInfo(std::span<char, 8> countryCode, std::span<char, 8> cityCode) {
  return Recorded(CallRecord("tapiGetLocationInfo"), [&] {
    const auto* const location = CurrentLocation();
    if (!scenario_.codes && location == nullptr) return TAPIERR_REQUESTFAILED;
    PutCode(countryCode, scenario_.codes ? scenario_.codes->country : std::to_string(location->country));
    PutCode(cityCode, scenario_.codes ? scenario_.codes->city : location->city);
    return 0;
  });
}

std::int32_t LineSimulator::lineTranslateAddress(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                                 const char* addressIn, std::uint32_t card,
                                                 std::uint32_t translateOptions, std::span<std::byte> output) {
  CallRecord record("lineTranslateAddress", "app", lineApp, "device", deviceId, "version", apiVersion, "address",
                    addressIn, "card", card, "options", translateOptions);
  return Recorded(std::move(record), [&] {
    if (const auto code = CheckVersion(lineApp, deviceId, apiVersion); code != 0) return code;
    if (addressIn == nullptr) return LINEERR_INVALPOINTER;
    const auto* const location = CurrentLocation();
    if (location == nullptr) return LINEERR_INIFILECORRUPT;
    DriverBuffer buffer(output);
    if (!buffer.Begin(sizeof(LINETRANSLATEOUTPUT))) return LINEERR_STRUCTURETOOSMALL;
    const auto dialed = TranslateAddress(addressIn, *location, scenario_.blanksOptional);
    if (!dialed) return LINEERR_INVALADDRESS;
    buffer.Put(offsetof(LINETRANSLATEOUTPUT, dwCurrentCountry), location->country);
    buffer.AppendText(offsetof(LINETRANSLATEOUTPUT, dwDialableStringSize),
                      scenario_.dialable.value_or(scenario_.dialPrefix + *dialed));
    buffer.AppendText(offsetof(LINETRANSLATEOUTPUT, dwDisplayableStringSize), addressIn);
    buffer.Finish();
    ApplyPatches(buffer, "translateoutput", deviceId);
    return 0;
  });
}

}  // namespace fonklav
