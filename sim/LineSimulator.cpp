#include "sim/LineSimulator.h"

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

/// What follows a request for which the scenario has no steps.
const Scenario kOtherwise = Scenario::Parse("call reply after=10\ndrop reply after=10\ndrop state idle after=20\n");

/// As the command that would send it.
std::string LogLine(const LineMessage& sent) {
  const auto& [hDevice, message, instance, p1, p2, p3] = sent;
  const CallRecord shown("", {"msg", message, "device", hDevice, "instance", instance, "p1", p1, "p2", p2, "p3", p3});
  return "message " + shown.arguments;
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

void LineSimulator::CheckRefusals(std::string_view function) {
  std::optional<std::int32_t> code;
  for (auto& refusal : scenario_.refusals) {
    if (refusal.function != function) continue;
    const std::uint32_t number = ++refusal.seen;
    if (number >= refusal.nth && number - refusal.nth < refusal.times) code = refusal.code;
  }
  if (code) throw Refused{*code};
}

std::vector<std::string> LineSimulator::TextsOf(std::string_view function) const {
  std::vector<std::string> texts;
  for (const auto& call : calls_) {
    if (call.function == function) texts.push_back(call.text.value_or("(null)"));
  }
  return texts;
}

void LineSimulator::CheckApp(HLINEAPP app) const {
  Require(!apps_.empty(), LINEERR_UNINITIALIZED);
  Require(apps_.contains(app), LINEERR_INVALAPPHANDLE);
}

const Scenario::Device& LineSimulator::DeviceOf(std::uint32_t number) const {
  Require(!apps_.empty(), LINEERR_UNINITIALIZED);
  Require(number < scenario_.devices.size(), LINEERR_BADDEVICEID);
  return scenario_.devices[number];
}

const Scenario::Device& LineSimulator::DeviceOf(std::uint32_t number, const char* deviceClass) const {
  const auto& device = DeviceOf(number);
  const std::string_view named = deviceClass == nullptr ? "" : deviceClass;
  Require(named.empty() || named == "tapi/line", LINEERR_INVALDEVICECLASS);
  return device;
}

const Scenario::Device& LineSimulator::DeviceOf(HLINEAPP app, std::uint32_t number, std::uint32_t version,
                                                std::uint32_t extension) const {
  CheckApp(app);
  const auto& device = DeviceOf(number);
  Require(version >= TAPI_VERSION1_3 && version <= std::min(device.version, scenario_.version),
          LINEERR_INCOMPATIBLEAPIVERSION);
  Require(extension == 0, LINEERR_INCOMPATIBLEEXTVERSION);
  return device;
}

std::int32_t LineSimulator::lineInitializeEx(HLINEAPP& app, LineMessageSink& sink, const char* name,
                                             std::uint32_t& devices, std::uint32_t& version,
                                             LINEINITIALIZEEXPARAMS& params) {
  CallRecord record("lineInitializeEx",
                    {"name", name, "version", version, "size", params.dwTotalSize, "options", params.dwOptions});
  return Recorded(std::move(record), [&] {
    Require(params.dwTotalSize >= sizeof params, LINEERR_STRUCTURETOOSMALL);
    Require(params.dwOptions == LINEINITIALIZEEXOPTION_USEHIDDENWINDOW, LINEERR_INVALPARAM);
    // A telephony of the 1.x family is asked in its own version; a later one wants to be asked for 2.0 at least.
    const bool early = scenario_.version < TAPI_VERSION2_0;
    const bool known = early ? version <= scenario_.version : version >= TAPI_VERSION2_0;
    Require(known && version >= TAPI_VERSION1_3, LINEERR_INCOMPATIBLEAPIVERSION);
    params.dwNeededSize = params.dwUsedSize = sizeof params;
    app = NextHandle(apps_, lastApp_);
    apps_[app] = &sink;
    devices = static_cast<std::uint32_t>(scenario_.devices.size());
    version = scenario_.version;
  });
}

std::int32_t LineSimulator::lineShutdown(HLINEAPP app) {
  return Recorded({"lineShutdown", {"app", app}}, [&] {
    CheckApp(app);
    for (const auto& [line, open] : std::map(lines_)) {
      if (open.app == app) EndLine(line);
    }
    std::erase_if(queue_, [&](const DueMessage& due) { return due.app == app; });
    apps_.erase(app);
  });
}

std::int32_t LineSimulator::lineNegotiateAPIVersion(HLINEAPP app, std::uint32_t device, std::uint32_t low,
                                                    std::uint32_t high, std::uint32_t& version,
                                                    LINEEXTENSIONID& extension) {
  return Recorded({"lineNegotiateAPIVersion", {"app", app, "device", device, "low", low, "high", high}}, [&] {
    CheckApp(app);
    const auto& rules = DeviceOf(device);
    const std::uint32_t highest = std::min({high, rules.version, scenario_.version});
    Require(highest >= std::max(low, TAPI_VERSION1_3), LINEERR_INCOMPATIBLEAPIVERSION);
    version = highest;
    extension = rules.extension;
  });
}

std::int32_t LineSimulator::lineOpen(HLINEAPP app, std::uint32_t device, HLINE& line, std::uint32_t version,
                                     std::uint32_t extension, std::uintptr_t instance, std::uint32_t privileges,
                                     std::uint32_t media) {
  CallRecord record("lineOpen", {"app", app, "device", device, "version", version, "instance", instance, "privileges",
                                 privileges, "media", media});
  return Recorded(std::move(record), [&] {
    DeviceOf(app, device, version, extension);
    // The others are for who takes calls in.
    Require(privileges == LINECALLPRIVILEGE_NONE, LINEERR_INVALPRIVSELECT);
    line = NextHandle(lines_, lastLine_);
    lines_[line] = {app, version, instance};
  });
}

std::int32_t LineSimulator::lineClose(HLINE line) {
  return Recorded({"lineClose", {"line", line}}, [&] {
    Require(lines_.contains(line), LINEERR_INVALLINEHANDLE);
    EndLine(line);
  });
}

/// Closing drops the line's calls and suppresses every reply that is still out for it.
void LineSimulator::EndLine(HLINE line) {
  std::erase_if(queue_, [&](const auto& due) { return due.kind != Kind::Raw && due.line == line; });
  std::erase_if(live_, [&](const auto& call) { return call.second.line == line; });
  lines_.erase(line);
}

std::int32_t LineSimulator::lineConfigDialog(std::uint32_t device, std::uintptr_t owner, const char* deviceClass) {
  return Recorded({"lineConfigDialog", {"device", device, "owner", owner, "class", deviceClass}},
                  [&] { DeviceOf(device, deviceClass); });
}

std::int32_t LineSimulator::lineTranslateDialog(HLINEAPP app, std::uint32_t device, std::uint32_t version,
                                                std::uintptr_t owner, const char* address) {
  return Recorded(
      {"lineTranslateDialog", {"app", app, "device", device, "version", version, "owner", owner, "address", address}},
      [&] { DeviceOf(app, device, version); });
}

std::int32_t LineSimulator::lineGetIcon(std::uint32_t device, const char* deviceClass, std::uintptr_t& icon) {
  return Recorded({"lineGetIcon", {"device", device, "class", deviceClass}},
                  [&] { icon = DeviceOf(device, deviceClass).icon; });
}

std::int32_t LineSimulator::lineMakeCall(HLINE line, HCALL& call, const char* address, std::uint32_t country) {
  return Recorded({"lineMakeCall", {"line", line, "address", address, "country", country}}, [&] {
    Require(lines_.contains(line), LINEERR_INVALLINEHANDLE);
    for (const auto& [handle, other] : live_) {
      Require(other.line != line || other.state == LINECALLSTATE_IDLE, LINEERR_CALLUNAVAIL);
    }
    const HCALL made = NextHandle(live_, lastCall_);
    live_[made] = {.line = line};
    return Request(*(scenario_.callSteps ? scenario_ : kOtherwise).callSteps, made, &call);
  });
}

std::int32_t LineSimulator::lineDrop(HCALL call) {
  return Recorded({"lineDrop", {"call", call}}, [&] {
    Require(live_.contains(call), LINEERR_INVALCALLHANDLE);
    Require(live_.at(call).state != LINECALLSTATE_IDLE, LINEERR_INVALCALLSTATE);
    DropWaiting(call, false);
    return Request(*(scenario_.dropSteps ? scenario_ : kOtherwise).dropSteps, call);
  });
}

std::int32_t LineSimulator::lineDeallocateCall(HCALL call) {
  return Recorded({"lineDeallocateCall", {"call", call}}, [&] {
    Require(live_.contains(call), LINEERR_INVALCALLHANDLE);
    const auto& [line, state] = live_.at(call);
    // From 2.0 on a call that is not idle may be left to the switch.
    Require(state == LINECALLSTATE_IDLE || lines_.at(line).version >= TAPI_VERSION2_0, LINEERR_INVALCALLSTATE);
    DropWaiting(call, true);
    live_.erase(call);
  });
}

void LineSimulator::Queue(const DueMessage& message) {
  queue_.insert(std::ranges::upper_bound(queue_, message.due, {}, &DueMessage::due), message);
}

void LineSimulator::QueueStep(const Scenario::Step& step, HCALL call, HCALL* cell) {
  const auto& [handle, line] = *lines_.find(live_.at(call).line);
  DueMessage due{now_ + step.after, step.kind, line.app, handle, call, nullptr, step.message};
  due.cell = cell;
  if (step.ownInstance) due.message.instance = line.instance;
  if (step.kind == Kind::Reply) due.message.p1 = static_cast<std::uintptr_t>(lastRequest_);
  if (step.kind == Kind::State) due.message.hDevice = call;
  Queue(due);
}

std::int32_t LineSimulator::Request(const std::vector<Scenario::Step>& steps, HCALL call, HCALL* cell) {
  ++lastRequest_;
  for (const auto& step : steps) QueueStep(step, call, cell);
  return lastRequest_;
}

void LineSimulator::DropWaiting(HCALL call, bool repliesToo) {
  std::erase_if(queue_, [&](const DueMessage& due) {
    return due.call == call && (due.kind == Kind::State || (due.kind == Kind::Reply && repliesToo));
  });
}

void LineSimulator::InjectState(std::uint32_t state, std::uintptr_t detail) {
  const HCALL call = NewestCall();
  if (call == 0 || live_.at(call).state == LINECALLSTATE_IDLE) return;
  DropWaiting(call, false);
  QueueStep({.kind = Kind::State, .message = {.message = LINE_CALLSTATE, .p1 = state, .p2 = detail}}, call);
}

bool LineSimulator::ForceClose() {
  if (lines_.empty()) return false;
  const auto [handle, closed] = *lines_.rbegin();
  EndLine(handle);
  Queue({.due = now_, .app = closed.app, .message = {handle, LINE_CLOSE, closed.instance, 0, 0, 0}});
  return true;
}

void LineSimulator::Advance(Milliseconds time) {
  const Milliseconds end = now_ + time;
  while (DeliverOne(end)) continue;
}

/// Brings call and cell up to what the message says. False when it has become void: IDLE is the last state.
bool LineSimulator::Process(const DueMessage& due) {
  const auto call = live_.find(due.call);
  if (due.kind == Kind::State) {
    if (call == live_.end() || call->second.state == LINECALLSTATE_IDLE) return false;
    call->second.state = static_cast<std::uint32_t>(due.message.p1);
  }
  if (due.kind != Kind::Reply || due.cell == nullptr || call == live_.end()) return true;
  if (due.message.p2 == 0) {
    *due.cell = due.call;
  } else {
    DropWaiting(due.call, false);
    live_.erase(call);
  }
  return true;
}

bool LineSimulator::DeliverOne(Milliseconds now) {
  const bool waits = queue_.empty() || queue_.front().due > now;
  MoveClock(waits ? now : queue_.front().due);
  if (waits) return false;
  const DueMessage due = queue_.front();
  queue_.erase(queue_.begin());
  const auto app = due.app != 0 || apps_.empty() ? apps_.find(due.app) : std::prev(apps_.end());
  if (app == apps_.end() || !Process(due)) return true;
  const auto& [hDevice, message, instance, p1, p2, p3] = due.message;
  if (log_) log_(LogLine(due.message));
  // The receiver may shut down, and with it this very registration: nothing is touched after it returns.
  app->second->LineCallBackProc(hDevice, message, instance, p1, p2, p3);
  return true;
}

}  // namespace fonklav
