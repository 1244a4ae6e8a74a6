#include "sim/LineSimulator.h"

#include <algorithm>

#include "sim/TapiCodes.h"

namespace fonklav {

using namespace sim;

namespace {

/// With other bytes than printable ASCII as \xNN.
std::string Quoted(const char* text) {
  if (text == nullptr) return "null";
  std::string quoted{'"'};
  for (const char byte : std::string_view(text)) {
    const bool plain = byte >= ' ' && byte <= '~';
    quoted += plain ? std::string{byte} : "\\x" + HexText(0x100U + static_cast<unsigned char>(byte)).substr(3);
  }
  return quoted + '"';
}

}  // namespace

std::string HexText(std::uintptr_t value) {
  const std::string last{"0123456789abcdef"[value & 0xFU]};
  return value < 16 ? "0x" + last : HexText(value >> 4U) + last;
}

CallRecord::CallRecord(std::string_view name, std::initializer_list<Value> named) : function(name) {
  for (const Value* at = named.begin(); at != named.end(); at += 2) {
    arguments += (at == named.begin() ? "" : " ") + std::string(std::get<const char*>(at[0])) + '=';
    const auto* const number = std::get_if<std::uintptr_t>(&at[1]);
    const char* const string = number == nullptr ? std::get<const char*>(at[1]) : nullptr;
    if (string != nullptr) text = string;
    arguments += number != nullptr ? HexText(*number) : Quoted(string);
  }
}

std::string CallRecord::LogLine() const {
  const auto code = HexText(static_cast<std::uint32_t>(result));
  return "call " + function + "(" + arguments + ") = " + (result > 0 ? std::to_string(result) : code);
}

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
  const bool known = version >= TAPI_VERSION1_3 && version <= std::min(rules.version, scenario_.version);
  if (!known) return LINEERR_INCOMPATIBLEAPIVERSION;
  return extension == 0 ? 0 : LINEERR_INCOMPATIBLEEXTVERSION;
}

std::int32_t LineSimulator::lineInitializeEx(HLINEAPP& lineApp, LineMessageSink& sink, const char* friendlyName,
                                             std::uint32_t& numDevs, std::uint32_t& apiVersion,
                                             LINEINITIALIZEEXPARAMS& params) {
  CallRecord record("lineInitializeEx", {"name", friendlyName, "version", apiVersion, "size", params.dwTotalSize,
                                         "options", params.dwOptions});
  return Recorded(std::move(record), [&] {
    if (params.dwTotalSize < sizeof params) return LINEERR_STRUCTURETOOSMALL;
    if (params.dwOptions != LINEINITIALIZEEXOPTION_USEHIDDENWINDOW) return LINEERR_INVALPARAM;
    // A telephony of the 1.x family is asked in its own version; a later one wants to be asked for 2.0 at least.
    const bool early = scenario_.version < TAPI_VERSION2_0;
    const bool known = early ? apiVersion <= scenario_.version : apiVersion >= TAPI_VERSION2_0;
    if (!known || apiVersion < TAPI_VERSION1_3) return LINEERR_INCOMPATIBLEAPIVERSION;
    params.dwNeededSize = params.dwUsedSize = sizeof params;
    lineApp = NextHandle(apps_, lastApp_);
    apps_[lineApp] = &sink;
    numDevs = static_cast<std::uint32_t>(scenario_.devices.size());
    apiVersion = scenario_.version;
    return 0;
  });
}

std::int32_t LineSimulator::lineShutdown(HLINEAPP lineApp) {
  return Recorded({"lineShutdown", {"app", lineApp}}, [&] {
    if (const auto code = CheckApp(lineApp); code != 0) return code;
    for (auto next = lines_.begin(); next != lines_.end();) {
      const auto [line, open] = *next++;
      if (open.app == lineApp) EndLine(line);
    }
    std::erase_if(queue_, [&](const DueMessage& due) { return due.app == lineApp; });
    apps_.erase(lineApp);
    return 0;
  });
}

std::int32_t LineSimulator::lineNegotiateAPIVersion(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t low,
                                                    std::uint32_t high, std::uint32_t& apiVersion,
                                                    LINEEXTENSIONID& extensionId) {
  CallRecord record("lineNegotiateAPIVersion", {"app", lineApp, "device", deviceId, "low", low, "high", high});
  return Recorded(std::move(record), [&] {
    if (const auto code = CheckDevice(lineApp, deviceId); code != 0) return code;
    const auto& device = scenario_.devices[deviceId];
    const std::uint32_t version = std::min({high, device.version, scenario_.version});
    if (version < low || version < TAPI_VERSION1_3) return LINEERR_INCOMPATIBLEAPIVERSION;
    apiVersion = version;
    const auto& words = device.extension;
    extensionId = {words[0], words[1], words[2], words[3]};
    return 0;
  });
}

std::int32_t LineSimulator::lineOpen(HLINEAPP lineApp, std::uint32_t deviceId, HLINE& line, std::uint32_t apiVersion,
                                     std::uint32_t extVersion, std::uintptr_t callbackInstance,
                                     std::uint32_t privileges, std::uint32_t mediaModes) {
  CallRecord record("lineOpen", {"app", lineApp, "device", deviceId, "version", apiVersion, "instance",
                                 callbackInstance, "privileges", privileges, "media", mediaModes});
  return Recorded(std::move(record), [&] {
    if (const auto code = CheckVersion(lineApp, deviceId, apiVersion, extVersion); code != 0) return code;
    // The others are for who takes calls in.
    if (privileges != LINECALLPRIVILEGE_NONE) return LINEERR_INVALPRIVSELECT;
    line = NextHandle(lines_, lastLine_);
    lines_[line] = {lineApp, apiVersion, callbackInstance};
    return 0;
  });
}

std::int32_t LineSimulator::lineClose(HLINE line) {
  return Recorded({"lineClose", {"line", line}}, [&] {
    if (!lines_.contains(line)) return LINEERR_INVALLINEHANDLE;
    EndLine(line);
    return 0;
  });
}

/// Closing drops the line's calls and suppresses every reply that is still out for it.
void LineSimulator::EndLine(HLINE line) {
  std::erase_if(queue_, [&](const auto& due) { return due.kind != Kind::Raw && due.line == line; });
  std::erase_if(live_, [&](const auto& call) { return call.second.line == line; });
  lines_.erase(line);
}

std::int32_t LineSimulator::CheckDeviceClass(std::uint32_t device, const char* deviceClass) const {
  if (apps_.empty()) return LINEERR_UNINITIALIZED;
  if (device >= scenario_.devices.size()) return LINEERR_BADDEVICEID;
  const bool known = deviceClass == nullptr || *deviceClass == '\0' || std::string_view(deviceClass) == "tapi/line";
  return known ? 0 : LINEERR_INVALDEVICECLASS;
}

std::int32_t LineSimulator::lineConfigDialog(std::uint32_t deviceId, std::uintptr_t owner, const char* deviceClass) {
  return Recorded({"lineConfigDialog", {"device", deviceId, "owner", owner, "class", deviceClass}},
                  [&] { return CheckDeviceClass(deviceId, deviceClass); });
}

std::int32_t LineSimulator::lineTranslateDialog(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                                std::uintptr_t owner, const char* addressIn) {
  CallRecord record("lineTranslateDialog",
                    {"app", lineApp, "device", deviceId, "version", apiVersion, "owner", owner, "address", addressIn});
  return Recorded(std::move(record), [&] { return CheckVersion(lineApp, deviceId, apiVersion); });
}

std::int32_t LineSimulator::lineGetIcon(std::uint32_t deviceId, const char* deviceClass, std::uintptr_t& icon) {
  return Recorded({"lineGetIcon", {"device", deviceId, "class", deviceClass}}, [&] {
    if (const auto code = CheckDeviceClass(deviceId, deviceClass); code != 0) return code;
    icon = scenario_.devices[deviceId].icon;
    return 0;
  });
}

}  // namespace fonklav
