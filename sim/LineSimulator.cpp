#include "sim/LineSimulator.h"

#include <algorithm>

#include "sim/TapiCodes.h"

namespace fonklav {

using namespace sim;

std::optional<std::int32_t> LineSimulator::Refused(std::string_view function) {
  std::optional<std::int32_t> code;
  for (auto& refusal : scenario_.refusals) {
    if (refusal.function != function) continue;
    const std::uint32_t number = ++refusal.seen;
    if (number >= refusal.nth && number - refusal.nth < refusal.times) code = refusal.code;
  }
  return code;
}

std::vector<std::string> LineSimulator::TextsOf(std::string_view function) const {
  std::vector<std::string> texts;
  for (const auto& call : calls_) {
    if (call.function == function) texts.push_back(call.text.value_or("(null)"));
  }
  return texts;
}

std::size_t LineSimulator::CountOf(std::string_view function) const { return TextsOf(function).size(); }

std::int32_t LineSimulator::CheckApp(HLINEAPP app) const {
  if (apps_.empty()) return LINEERR_UNINITIALIZED;
  return apps_.contains(app) ? 0 : LINEERR_INVALAPPHANDLE;
}

std::int32_t LineSimulator::CheckDevice(HLINEAPP app, std::uint32_t device) const {
  if (const auto code = CheckApp(app); code != 0) return code;
  return device < scenario_.devices.size() ? 0 : LINEERR_BADDEVICEID;
}

std::int32_t LineSimulator::CheckVersion(HLINEAPP app, std::uint32_t device, std::uint32_t version,
                                         std::uint32_t extension) const {
  if (const auto code = CheckDevice(app, device); code != 0) return code;
  const auto& rules = scenario_.devices[device];
  if (version < rules.low || version > std::min(rules.version, scenario_.version)) {
    return LINEERR_INCOMPATIBLEAPIVERSION;
  }
  return extension == 0 ? 0 : LINEERR_INCOMPATIBLEEXTVERSION;
}

std::int32_t LineSimulator::lineInitializeEx(HLINEAPP& lineApp, LineMessageSink& sink, const char* friendlyName,
                                             std::uint32_t& numDevs, std::uint32_t& apiVersion,
                                             LINEINITIALIZEEXPARAMS& params) {
  auto arguments = CallArguments().Text("name", friendlyName).Hex("version", apiVersion);
  arguments.Number("size", params.dwTotalSize).Hex("options", params.dwOptions);
  return Recorded("lineInitializeEx", std::move(arguments), [&] {
    if (params.dwTotalSize < sizeof params) return LINEERR_STRUCTURETOOSMALL;
    if (params.dwOptions != LINEINITIALIZEEXOPTION_USEHIDDENWINDOW) return LINEERR_INVALPARAM;
    // A telephony of the 1.x family is asked in its own version; a later one wants to be asked for 2.0 at least.
    constexpr std::uint32_t kSecond = 0x00020000;
    const bool known = scenario_.version < kSecond ? apiVersion <= scenario_.version : apiVersion >= kSecond;
    if (!known || apiVersion < TAPI_VERSION1_3) return LINEERR_INCOMPATIBLEAPIVERSION;
    params.dwNeededSize = params.dwUsedSize = sizeof params;
    lineApp = ++lastApp_;
    apps_[lineApp] = &sink;
    numDevs = static_cast<std::uint32_t>(scenario_.devices.size());
    apiVersion = scenario_.version;
    return 0;
  });
}

std::int32_t LineSimulator::lineShutdown(HLINEAPP lineApp) {
  return Recorded("lineShutdown", std::move(CallArguments().Hex("app", lineApp)), [&] {
    if (const auto code = CheckApp(lineApp); code != 0) return code;
    while (true) {
      const auto line =
          std::find_if(lines_.begin(), lines_.end(), [&](const auto& open) { return open.second.app == lineApp; });
      if (line == lines_.end()) break;
      EndLine(line->first);
    }
    queue_.RemoveIf([&](const DueMessage& due) { return due.app == lineApp; });
    apps_.erase(lineApp);
    return 0;
  });
}

std::int32_t LineSimulator::lineNegotiateAPIVersion(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t low,
                                                    std::uint32_t high, std::uint32_t& apiVersion,
                                                    LINEEXTENSIONID& extensionId) {
  auto arguments = CallArguments().Hex("app", lineApp).Number("device", deviceId).Hex("low", low).Hex("high", high);
  return Recorded("lineNegotiateAPIVersion", std::move(arguments), [&] {
    if (const auto code = CheckDevice(lineApp, deviceId); code != 0) return code;
    const auto& device = scenario_.devices[deviceId];
    const std::uint32_t version = std::min({high, device.version, scenario_.version});
    if (version < low || version < device.low) return LINEERR_INCOMPATIBLEAPIVERSION;
    apiVersion = version;
    const auto& words = device.extension;
    extensionId = {words[0], words[1], words[2], words[3]};
    return 0;
  });
}

std::int32_t LineSimulator::lineOpen(HLINEAPP lineApp, std::uint32_t deviceId, HLINE& line, std::uint32_t apiVersion,
                                     std::uint32_t extVersion, std::uintptr_t callbackInstance,
                                     std::uint32_t privileges, std::uint32_t mediaModes) {
  auto arguments = CallArguments().Hex("app", lineApp).Number("device", deviceId).Hex("version", apiVersion);
  arguments.Hex("instance", callbackInstance).Hex("privileges", privileges).Hex("media", mediaModes);
  return Recorded("lineOpen", std::move(arguments), [&] {
    if (const auto code = CheckVersion(lineApp, deviceId, apiVersion, extVersion); code != 0) return code;
    constexpr auto kKnown = LINECALLPRIVILEGE_NONE | LINECALLPRIVILEGE_MONITOR | LINECALLPRIVILEGE_OWNER;
    if (privileges == 0 || (privileges & ~kKnown) != 0) return LINEERR_INVALPRIVSELECT;
    // The media modes say which incoming calls an owner wants; who only calls out is not asked for them.
    const bool owner = (privileges & LINECALLPRIVILEGE_OWNER) != 0;
    if (owner && (mediaModes == 0 || (mediaModes & ~scenario_.devices[deviceId].media) != 0)) {
      return LINEERR_INVALMEDIAMODE;
    }
    line = ++lastLine_;
    lines_[line] = {lineApp, deviceId, apiVersion, callbackInstance};
    return 0;
  });
}

/// Closing drops the line's calls and suppresses every reply that is still out for it.
void LineSimulator::EndLine(HLINE line) {
  queue_.RemoveIf([&](const DueMessage& due) { return due.kind != DueMessage::Kind::Raw && due.line == line; });
  std::erase_if(live_, [&](const auto& call) { return call.second.line == line; });
  lines_.erase(line);
}

std::int32_t LineSimulator::lineClose(HLINE line) {
  return Recorded("lineClose", std::move(CallArguments().Hex("line", line)), [&] {
    if (!lines_.contains(line)) return LINEERR_INVALLINEHANDLE;
    EndLine(line);
    return 0;
  });
}

std::int32_t LineSimulator::CheckDeviceClass(std::uint32_t device, const char* deviceClass) const {
  if (apps_.empty()) return LINEERR_UNINITIALIZED;
  if (device >= scenario_.devices.size()) return LINEERR_BADDEVICEID;
  const bool known = deviceClass == nullptr || *deviceClass == '\0' || std::string_view(deviceClass) == "tapi/line";
  return known ? 0 : LINEERR_INVALDEVICECLASS;
}

std::int32_t LineSimulator::lineConfigDialog(std::uint32_t deviceId, std::uintptr_t owner, const char* deviceClass) {
  auto arguments = CallArguments().Number("device", deviceId).Hex("owner", owner).Text("class", deviceClass);
  return Recorded("lineConfigDialog", std::move(arguments), [&] { return CheckDeviceClass(deviceId, deviceClass); });
}

std::int32_t LineSimulator::lineTranslateDialog(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                                std::uintptr_t owner, const char* addressIn) {
  auto arguments = CallArguments().Hex("app", lineApp).Number("device", deviceId).Hex("version", apiVersion);
  arguments.Hex("owner", owner).Text("address", addressIn);
  return Recorded("lineTranslateDialog", std::move(arguments),
                  [&] { return CheckVersion(lineApp, deviceId, apiVersion, 0); });
}

std::int32_t LineSimulator::lineGetIcon(std::uint32_t deviceId, const char* deviceClass, std::uintptr_t& icon) {
  auto arguments = CallArguments().Number("device", deviceId).Text("class", deviceClass);
  return Recorded("lineGetIcon", std::move(arguments), [&] {
    if (const auto code = CheckDeviceClass(deviceId, deviceClass); code != 0) return code;
    icon = scenario_.devices[deviceId].icon;
    return 0;
  });
}

void LineSimulator::Log(std::string_view line) const {
  if (log_) log_(line);
}

}  // namespace fonklav
