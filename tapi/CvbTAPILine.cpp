#include "tapi/CvbTAPILine.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Ports.h"
#include "platform/Telephony.h"
#include "tapi/Numbers.h"
#include "tapi/StructReader.h"
#include "tapi/mTAPIvb.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

// Registration, devices and capabilities. The call itself is in CvbTAPILine_Call.cpp, the number in
// CvbTAPILine_Number.cpp.
namespace fonklav {
namespace {

// The fixed part of each structure and room for what stands behind it. Capabilities that want more room come without
// the strings that did not fit; translation capabilities that want more are not read at all.
constexpr std::size_t kDevCapsSize = 2301;
constexpr std::size_t kTranslateCapsSize = 6189;
constexpr std::uint32_t kMostLines = 32768;  ///< device indexes are kept in 16 bits with a sign

}  // namespace

std::shared_ptr<CvbTAPILine> CvbTAPILine::Make(const LineServices& services, LineEvents& events) {
  // The callback keeps a weak reference, which there is only once the object is in a shared pointer.
  std::shared_ptr<CvbTAPILine> line(new CvbTAPILine(services, events));
  line->instance_ = services.callback.Register(line, line->hCall_);
  return line;
}

CvbTAPILine::CvbTAPILine(const LineServices& services, LineEvents& events) : services_(services), events_(&events) {}

CvbTAPILine::~CvbTAPILine() {
  events_ = nullptr;
  try {
    TraceEntry(services_.diagnostics, "CvbTAPILine.Class_Terminate", {});
    if (Release()) services_.callback.Unregister(instance_);
  } catch (...) {  // NOLINT(bugprone-empty-catch): only while no handler is armed, and nobody is left to tell
  }
}

bool CvbTAPILine::Release() {
  // What belongs to the registration goes before it: nobody may open a line by it while telephony shuts down.
  apiVersions_.clear();
  extensionIds_.clear();
  numLines_ = 0;
  // One by one: what cannot be given back must not keep the rest.
  const auto giveBack = [&](auto& handle, auto&& how) {
    if (handle != 0) Guarded(services_.diagnostics, "CvbTAPILine.Class_Terminate", {}, how);
  };
  giveBack(*hCall_, [&] { services_.telephony.lineDeallocateCall(std::exchange(*hCall_, 0)); });
  giveBack(hLine_, [&] { CloseLine(); });
  bool refused = hLineApp_ != 0;  // until it is known better
  giveBack(hLineApp_, [&] { refused = services_.telephony.lineShutdown(std::exchange(hLineApp_, 0)) != 0; });
  stillRegistered_ |= refused;
  return !stillRegistered_;
}

bool CvbTAPILine::Succeeded(std::int32_t result) {
  if (result != 0) lastError_ = result;
  return result == 0;
}

bool CvbTAPILine::CheckAreaCodes() {
  return Procedure(services_.diagnostics, "CvbTAPILine.CheckAreaCodes", {}, true, [&](bool& complete) {
    // Blanks, so that a call that writes nothing is seen as missing codes.
    std::array<char, 8> country{};
    std::array<char, 8> city{};
    country.fill(' ');
    city.fill(' ');
    services_.telephony.tapiGetLocationInfo(country, city);
    if (!TakeLocationCode({country.data(), country.size()}, country_)) complete = false;
    if (!TakeLocationCode({city.data(), city.size()}, areaCode_)) complete = false;
  });
}

bool CvbTAPILine::TakeLocationCode(std::string_view buffer, std::string& code) const {
  const auto end = buffer.find('\0');
  if (end == std::string_view::npos) return false;
  code = services_.codePage.ToText(buffer.substr(0, end));
  return true;
}

bool CvbTAPILine::Create() {
  return Procedure(services_.diagnostics, "CvbTAPILine.Create", {lowApi_, HiAPI()}, false, [&](bool& created) {
    if (hLineApp_ != 0) static_cast<void>(Release());
    if (!Register()) return;
    NegotiateVersions();
    GetLineDevCaps();
    const std::int16_t locations = ReadLocations();
    created = locations >= 1;
    idle_ = true;
  });
}

bool CvbTAPILine::Register() {
  LINEINITIALIZEEXPARAMS params{};
  SetTotalSize(std::as_writable_bytes(std::span(&params, 1)));
  params.dwOptions = LINEINITIALIZEEXOPTION_USEHIDDENWINDOW;
  const std::string title = services_.codePage.ToBytes(services_.title);
  HLINEAPP lineApp = 0;
  std::uint32_t lines = 0;
  if (!Succeeded(
          services_.telephony.lineInitializeEx(lineApp, services_.callback, title.c_str(), lines, hiApi_, params))) {
    return false;
  }
  hLineApp_ = lineApp;
  if (Signed(lines) < 1) return false;
  if (lines > kMostLines) throw RunTimeError(ErrorNumber::Overflow);
  numLines_ = lines;
  return true;
}

void CvbTAPILine::NegotiateVersions() {
  apiVersions_.assign(numLines_, 0);
  extensionIds_.assign(numLines_, LINEEXTENSIONID{});
  for (std::size_t device = 0; device < numLines_; ++device) NegotiateVersion(device);
}

void CvbTAPILine::NegotiateVersion(std::size_t device) {
  std::uint32_t version = 0;
  LINEEXTENSIONID extension{};
  const auto result = services_.telephony.lineNegotiateAPIVersion(
      hLineApp_, static_cast<std::uint32_t>(device), static_cast<std::uint32_t>(lowApi_), hiApi_, version, extension);
  if (result != 0) return;  // the version stays 0: the device is skipped, the others go on
  apiVersions_[device] = version;
  extensionIds_[device] = extension;
  highestApiVersion_ = std::max(highestApiVersion_, Signed(version));
}

void CvbTAPILine::GetLineDevCaps() {
  Procedure(services_.diagnostics, "CvbTAPILine.GetLineDevCaps", {currentLineId_}, [&] {
    std::array<std::byte, kDevCapsSize> buffer{};
    SetTotalSize(buffer);
    const auto device = static_cast<std::uint32_t>(currentLineId_);
    const std::uint32_t version = AtIndex(apiVersions_, currentLineId_);
    if (!Succeeded(services_.telephony.lineGetDevCaps(hLineApp_, device, version, 0, buffer))) return;
    const auto read = StructReader(buffer).Read<LINEDEVCAPS>();
    const LINEDEVCAPS& caps = read.value();
    GetTAPIStructString(buffer, caps.dwLineNameOffset, caps.dwLineNameSize, caps_.lineName);
    GetTAPIStructString(buffer, caps.dwProviderInfoOffset, caps.dwProviderInfoSize, caps_.providerInfo);
    GetTAPIStructString(buffer, caps.dwSwitchInfoOffset, caps.dwSwitchInfoSize, caps_.switchInfo);
    caps_.permanentLineId = Signed(caps.dwPermanentLineID);
    caps_.stringFormat = Signed(caps.dwStringFormat);
    caps_.numAddresses = Signed(caps.dwNumAddresses);
    caps_.maxDataRate = Signed(caps.dwMaxRate);
    caps_.bearerModes = Signed(caps.dwBearerModes);
    caps_.addressModes = Signed(caps.dwAddressModes);
    caps_.mediaModes = Signed(caps.dwMediaModes);
    caps_.generateToneMaxNumFreq = Signed(caps.dwGenerateToneMaxNumFreq);
    caps_.generateToneModes = Signed(caps.dwGenerateToneModes);
    caps_.numTerminals = Signed(caps.dwNumTerminals);
  });
}

void CvbTAPILine::GetTAPIStructString(std::span<const std::byte> structure, std::uint32_t offset, std::uint32_t size,
                                      std::string& text) const {
  text.clear();
  Procedure(services_.diagnostics, "CvbTAPILine.GetTAPIStructString", {offset, size}, [&] {
    if (Signed(size) < 1 || offset == 0) return;
    const std::string_view bytes = StructReader(structure).Bytes(offset, size);
    text = services_.codePage.ToText(bytes.substr(0, bytes.find('\0')));
  });
}

std::int16_t CvbTAPILine::ReadLocations() {
  std::vector<std::byte> buffer(kTranslateCapsSize);
  SetTotalSize(buffer);
  // The result is not looked at: a call that has failed leaves a structure of zeros, which has no location.
  services_.telephony.lineGetTranslateCaps(hLineApp_, TAPI_VERSION1_4, buffer);
  const auto header = StructReader(buffer).Read<LINETRANSLATECAPS>().value();
  if (header.dwNeededSize > kTranslateCapsSize) return 0;
  const std::int16_t locations = ToInt16(Signed(header.dwNumLocations));
  if (locations >= 1) TakeAccessCodes(buffer, header);
  return locations;
}

void CvbTAPILine::TakeAccessCodes(std::span<const std::byte> translateCaps, const LINETRANSLATECAPS& header) {
  const std::int16_t current = ToInt16(Signed(header.dwCurrentLocationID));
  const StructReader reader(translateCaps);
  const std::string_view list = reader.Bytes(header.dwLocationListOffset, header.dwLocationListSize);
  const std::size_t held = list.size() / sizeof(LINELOCATIONENTRY);  // a list cut short ends at its last whole entry
  const std::size_t entries = std::min<std::size_t>(header.dwNumLocations, held);
  for (std::size_t index = 0; index < entries; ++index) {
    const auto entry =
        reader.Read<LINELOCATIONENTRY>(header.dwLocationListOffset + index * sizeof(LINELOCATIONENTRY)).value();
    // No stop at a match: where two entries carry the current number, the later one counts. That is deliberate.
    if (Signed(entry.dwPermanentLocationID) != current) continue;
    GetTAPIStructString(translateCaps, entry.dwLocalAccessCodeOffset, entry.dwLocalAccessCodeSize, outsideLocalAccess_);
    GetTAPIStructString(translateCaps, entry.dwLongDistanceAccessCodeOffset, entry.dwLongDistanceAccessCodeSize,
                        outsideLongDistanceAccess_);
  }
}

void CvbTAPILine::CurrentLineID(std::int32_t newId) {
  TraceEntry(services_.diagnostics, "CvbTAPILine.CurrentLineID", {newId});
  if (newId < 0 || newId >= numLines()) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  currentLineId_ = newId;
  GetLineDevCaps();
}

std::int32_t CvbTAPILine::NegotiatedAPIVersion() const {
  return Procedure(services_.diagnostics, "CvbTAPILine.NegotiatedAPIVersion", {}, 0,
                   [&](std::int32_t& version) { version = Signed(AtIndex(apiVersions_, currentLineId_)); });
}

std::int32_t CvbTAPILine::ExtensionWord(const char* name, std::uint32_t LINEEXTENSIONID::*word) const {
  return Procedure(services_.diagnostics, name, {}, 0,
                   [&](std::int32_t& value) { value = Signed(AtIndex(extensionIds_, currentLineId_).*word); });
}

std::int32_t CvbTAPILine::ExtAPI_ID0() const {
  return ExtensionWord("CvbTAPILine.ExtAPI_ID0", &LINEEXTENSIONID::dwExtensionID0);
}

std::int32_t CvbTAPILine::ExtAPI_ID1() const {
  return ExtensionWord("CvbTAPILine.ExtAPI_ID1", &LINEEXTENSIONID::dwExtensionID1);
}

std::int32_t CvbTAPILine::ExtAPI_ID2() const {
  return ExtensionWord("CvbTAPILine.ExtAPI_ID2", &LINEEXTENSIONID::dwExtensionID2);
}

std::int32_t CvbTAPILine::ExtAPI_ID3() const {
  return ExtensionWord("CvbTAPILine.ExtAPI_ID3", &LINEEXTENSIONID::dwExtensionID3);
}

bool CvbTAPILine::LineSupportsVoiceCalls() const {
  return Procedure(services_.diagnostics, "CvbTAPILine.LineSupportsVoiceCalls", {}, false, [&](bool& supported) {
    supported = (static_cast<std::uint32_t>(caps_.bearerModes) & LINEBEARERMODE_VOICE) != 0 &&
                (static_cast<std::uint32_t>(caps_.mediaModes) & LINEMEDIAMODE_INTERACTIVEVOICE) != 0;
  });
}

}  // namespace fonklav
