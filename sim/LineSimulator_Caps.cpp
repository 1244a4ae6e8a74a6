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
  if (version >= 0x00030000) return 292;
  if (version >= 0x00020002) return 268;
  if (version >= 0x00020000) return 252;
  return version >= TAPI_VERSION1_4 ? 240 : sizeof(LINEDEVCAPS);
}

/// Where a string notes itself that has no entry.
constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max() / 2;

/// The code as telephony leaves it in a buffer of 8 bytes: one that is too long fills it without a NUL.
void PutCode(std::span<char, 8> buffer, const std::string& code) {
  const std::string text = code + '\0';
  std::copy_n(text.begin(), std::min(text.size(), buffer.size()), buffer.begin());
}

}  // namespace

std::int32_t LineSimulator::lineGetDevCaps(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                           std::uint32_t extVersion, std::span<std::byte> caps) {
  auto arguments = CallArguments().Hex("app", lineApp).Number("device", deviceId).Hex("version", apiVersion);
  return Recorded("lineGetDevCaps", std::move(arguments), [&] {
    if (const auto code = CheckVersion(lineApp, deviceId, apiVersion, extVersion); code != 0) return code;
    DriverBuffer buffer(caps);
    const std::size_t fixed = DevCapsSize(apiVersion);
    if (!buffer.Holds(fixed)) return LINEERR_STRUCTURETOOSMALL;
    FillDevCaps(buffer, deviceId, fixed);
    ApplyPatches(buffer, "devcaps", deviceId);
    return 0;
  });
}

void LineSimulator::FillDevCaps(DriverBuffer& buffer, std::uint32_t deviceId, std::size_t fixedSize) const {
  const auto& device = scenario_.devices[deviceId];
  LINEDEVCAPS caps{};
  caps.dwPermanentLineID = device.permanentId;
  caps.dwStringFormat = device.stringFormat;
  caps.dwAddressModes = device.addressModes;
  caps.dwNumAddresses = device.addresses;
  caps.dwBearerModes = device.bearer;
  caps.dwMaxRate = device.rate;
  caps.dwMediaModes = device.media;
  caps.dwGenerateToneModes = device.tones;
  caps.dwGenerateToneMaxNumFreq = device.toneFrequencies;
  caps.dwDevCapFlags = device.flags;
  caps.dwMaxNumActiveCalls = 1;
  caps.dwNumTerminals = device.terminals;
  buffer.Begin(caps, fixedSize);
  buffer.AppendText(offsetof(LINEDEVCAPS, dwProviderInfoSize), device.provider);
  buffer.AppendText(offsetof(LINEDEVCAPS, dwSwitchInfoSize), device.switchInfo);
  buffer.AppendText(offsetof(LINEDEVCAPS, dwLineNameSize), device.name);
  buffer.Finish();
}

std::int32_t LineSimulator::lineGetTranslateCaps(HLINEAPP lineApp, std::uint32_t apiVersion,
                                                 std::span<std::byte> caps) {
  auto arguments = CallArguments().Hex("app", lineApp).Hex("version", apiVersion);
  return Recorded("lineGetTranslateCaps", std::move(arguments), [&] {
    if (const auto code = CheckApp(lineApp); code != 0) return code;
    if (apiVersion < TAPI_VERSION1_3 || apiVersion > scenario_.version) return LINEERR_INCOMPATIBLEAPIVERSION;
    if (scenario_.locations.empty()) return LINEERR_INIFILECORRUPT;
    DriverBuffer buffer(caps);
    if (!buffer.Holds(sizeof(LINETRANSLATECAPS))) return LINEERR_STRUCTURETOOSMALL;
    FillTranslateCaps(buffer);
    ApplyPatches(buffer, "translatecaps");
    return 0;
  });
}

/// The list goes in as a whole, so that the strings find their entries to note themselves in; without room for the
/// list the strings have no entry, and only the needed size tells of them.
void LineSimulator::FillTranslateCaps(DriverBuffer& buffer) const {
  const auto& locations = scenario_.locations;
  std::string list;
  for (const auto& location : locations) {
    LINELOCATIONENTRY entry{};
    entry.dwPermanentLocationID = location.id;
    entry.dwCountryCode = entry.dwCountryID = location.country;
    list.append(reinterpret_cast<const char*>(&entry), sizeof entry);
  }
  LINETRANSLATECAPS caps{};
  caps.dwNumLocations = static_cast<std::uint32_t>(locations.size());
  caps.dwCurrentLocationID = CurrentLocation()->id;
  buffer.Begin(caps);
  std::size_t entry = buffer.Append(offsetof(LINETRANSLATECAPS, dwLocationListSize), list);
  const bool fits = entry != 0;
  if (!fits) buffer.Put(offsetof(LINETRANSLATECAPS, dwNumLocations), 0);
  for (const auto& location : locations) {
    const auto field = [&](std::size_t member) { return fits ? entry + member : kNowhere; };
    buffer.AppendText(field(offsetof(LINELOCATIONENTRY, dwLocationNameSize)), location.name);
    buffer.AppendText(field(offsetof(LINELOCATIONENTRY, dwCityCodeSize)), location.city);
    buffer.AppendText(field(offsetof(LINELOCATIONENTRY, dwLocalAccessCodeSize)), location.localAccess);
    buffer.AppendText(field(offsetof(LINELOCATIONENTRY, dwLongDistanceAccessCodeSize)), location.longDistanceAccess);
    entry += sizeof(LINELOCATIONENTRY);
  }
  buffer.Finish();
}

void LineSimulator::ApplyPatches(DriverBuffer& buffer, std::string_view structure,
                                 std::optional<std::uint32_t> device) const {
  for (const auto& patch : scenario_.patches) {
    if (patch.structure != structure || (patch.device && patch.device != device)) continue;
    buffer.Put(patch.offset, patch.value);
  }
}

const Scenario::Location* LineSimulator::CurrentLocation() const {
  for (const auto& location : scenario_.locations) {
    if (location.id == scenario_.currentLocation.value_or(location.id)) return &location;
  }
  return nullptr;
}

std::int32_t LineSimulator::tapiGetLocationInfo(std::span<char, 8> countryCode, std::span<char, 8> cityCode) {
  return Recorded("tapiGetLocationInfo", CallArguments(), [&] {
    const auto* const location = CurrentLocation();
    if (scenario_.codesMissing || (!scenario_.codes && location == nullptr)) return TAPIERR_REQUESTFAILED;
    PutCode(countryCode, scenario_.codes ? scenario_.codes->country : std::to_string(location->country));
    PutCode(cityCode, scenario_.codes ? scenario_.codes->city : location->city);
    return 0;
  });
}

std::int32_t LineSimulator::lineTranslateAddress(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                                 const char* addressIn, std::uint32_t card,
                                                 std::uint32_t translateOptions, std::span<std::byte> output) {
  auto arguments = CallArguments().Hex("app", lineApp).Number("device", deviceId).Hex("version", apiVersion);
  arguments.Text("address", addressIn).Number("card", card).Hex("options", translateOptions);
  return Recorded("lineTranslateAddress", std::move(arguments), [&] {
    if (const auto code = CheckVersion(lineApp, deviceId, apiVersion, 0); code != 0) return code;
    if (addressIn == nullptr) return LINEERR_INVALPOINTER;
    const auto* const location = CurrentLocation();
    if (location == nullptr) return LINEERR_INIFILECORRUPT;
    DriverBuffer buffer(output);
    if (!buffer.Holds(sizeof(LINETRANSLATEOUTPUT))) return LINEERR_STRUCTURETOOSMALL;
    const auto translated = TranslateAddress(addressIn, *location, scenario_.blanksOptional);
    if (!translated) return LINEERR_INVALADDRESS;
    LINETRANSLATEOUTPUT head{};
    head.dwCurrentCountry = location->country;
    head.dwTranslateResults = translated->results;
    buffer.Begin(head);
    buffer.AppendText(offsetof(LINETRANSLATEOUTPUT, dwDialableStringSize),
                      scenario_.dialable.value_or(scenario_.dialPrefix + translated->dialable));
    buffer.AppendText(offsetof(LINETRANSLATEOUTPUT, dwDisplayableStringSize), translated->displayable);
    buffer.Finish();
    ApplyPatches(buffer, "translateoutput", deviceId);
    return 0;
  });
}

}  // namespace fonklav
