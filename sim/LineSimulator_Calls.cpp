#include <array>

#include "sim/LineSimulator.h"
#include "sim/TapiCodes.h"

namespace fonklav {

using namespace sim;

namespace {

struct DialSign {
  char sign;
  std::uint32_t flag;  ///< LINEDEVCAPFLAGS_ bit of a device that understands it; 0: none does
  std::int32_t code;
};

constexpr std::array kDialSigns{DialSign{'$', 0x40, LINEERR_DIALBILLING}, DialSign{'@', 0x80, LINEERR_DIALQUIET},
                                DialSign{'W', 0x100, LINEERR_DIALDIALTONE}, DialSign{'w', 0x100, LINEERR_DIALDIALTONE},
                                DialSign{'?', 0, LINEERR_DIALPROMPT}};

std::string MessageName(std::uint32_t message) {
  switch (message) {
    case LINE_CALLSTATE:
      return "LINE_CALLSTATE";
    case LINE_CLOSE:
      return "LINE_CLOSE";
    case LINE_LINEDEVSTATE:
      return "LINE_LINEDEVSTATE";
    case LINE_REPLY:
      return "LINE_REPLY";
    default:
      return std::to_string(message);
  }
}

std::string StateName(std::uintptr_t state) {
  for (const auto& named : kCallStates) {
    if (named.state == state) return std::string(named.name);
  }
  return HexText(state);
}

std::string LogLine(const LineMessage& message) {
  std::string line = "message " + MessageName(message.message) + " device=" + HexText(message.hDevice) +
                     " instance=" + HexText(message.instance) + " p1=";
  line += message.message == LINE_CALLSTATE ? StateName(message.p1) : HexText(message.p1);
  return line + " p2=" + HexText(message.p2) + " p3=" + HexText(message.p3);
}

}  // namespace

std::int32_t LineSimulator::CheckDialable(std::uint32_t device, std::string_view address) const {
  const std::uint32_t flags = scenario_.devices[device].flags;
  for (const char sign : address) {
    for (const auto& special : kDialSigns) {
      if (special.sign == sign && (special.flag & flags) == 0) return special.code;
    }
  }
  return 0;
}

std::int32_t LineSimulator::lineMakeCall(HLINE line, HCALL& call, const char* destAddress, std::uint32_t countryCode) {
  auto arguments = CallArguments().Hex("line", line).Text("address", destAddress).Number("country", countryCode);
  return Recorded("lineMakeCall", std::move(arguments), [&]() -> std::int32_t {
    const auto open = lines_.find(line);
    if (open == lines_.end()) return LINEERR_INVALLINEHANDLE;
    for (const auto& [handle, other] : live_) {
      if (other.line == line && other.state != LINECALLSTATE_IDLE) return LINEERR_CALLUNAVAIL;
    }
    if (destAddress != nullptr) {
      if (const auto code = CheckDialable(open->second.device, destAddress); code != 0) return code;
    }
    const HCALL handle = ++lastCall_;
    live_[handle] = {.line = line};
    Schedule(scenario_.callSteps,
             {.app = open->second.app, .line = line, .call = handle, .cell = &call, .creates = true});
    return lastRequest_;
  });
}

std::int32_t LineSimulator::lineDrop(HCALL call) {
  return Recorded("lineDrop", std::move(CallArguments().Hex("call", call)), [&]() -> std::int32_t {
    const auto dropped = live_.find(call);
    if (dropped == live_.end()) return LINEERR_INVALCALLHANDLE;
    if (dropped->second.state == LINECALLSTATE_IDLE) return LINEERR_INVALCALLSTATE;
    DropWaitingStates(call);
    const HLINE line = dropped->second.line;
    Schedule(scenario_.dropSteps, {.app = lines_.at(line).app, .line = line, .call = call});
    return lastRequest_;
  });
}

std::int32_t LineSimulator::lineDeallocateCall(HCALL call) {
  return Recorded("lineDeallocateCall", std::move(CallArguments().Hex("call", call)), [&]() -> std::int32_t {
    const auto given = live_.find(call);
    if (given == live_.end()) return LINEERR_INVALCALLHANDLE;
    constexpr std::uint32_t kSecond = 0x00020000;  // from here on a call may be left to the switch
    const bool idle = given->second.state == LINECALLSTATE_IDLE;
    if (!idle && lines_.at(given->second.line).version < kSecond) return LINEERR_INVALCALLSTATE;
    queue_.RemoveIf([&](const DueMessage& due) { return due.kind != DueMessage::Kind::Raw && due.call == call; });
    live_.erase(given);
    return 0;
  });
}

/// Gives the request its number and puts its steps into the queue.
void LineSimulator::Schedule(const std::vector<Scenario::Step>& steps, const DueMessage& origin) {
  ++lastRequest_;
  const std::uintptr_t instance = lines_.at(origin.line).instance;
  for (const auto& step : steps) {
    DueMessage due = origin;
    due.due = now_ + step.after;
    switch (step.kind) {
      case Scenario::Step::Kind::Reply:
        due.kind = DueMessage::Kind::Reply;
        due.message = {.message = LINE_REPLY, .instance = instance};
        due.message.p1 = static_cast<std::uintptr_t>(lastRequest_);
        due.message.p2 = step.result;
        break;
      case Scenario::Step::Kind::State:
        due.kind = DueMessage::Kind::State;
        due.message = {origin.call, LINE_CALLSTATE, instance, step.state, step.detail, 0};
        break;
      case Scenario::Step::Kind::Message:
        due.kind = DueMessage::Kind::Raw;
        due.message = {step.device, step.message, step.instance.value_or(instance), step.p1, step.p2, step.p3};
        break;
    }
    queue_.Add(due);
  }
}

void LineSimulator::DropWaitingStates(HCALL call) {
  queue_.RemoveIf([&](const DueMessage& due) { return due.kind == DueMessage::Kind::State && due.call == call; });
}

void LineSimulator::ScheduleState(HCALL call, std::uint32_t state, std::uint32_t detail) {
  DropWaitingStates(call);
  const HLINE line = live_.at(call).line;
  const Line& open = lines_.at(line);
  queue_.Add({.due = now_,
              .kind = DueMessage::Kind::State,
              .app = open.app,
              .line = line,
              .call = call,
              .message = {call, LINE_CALLSTATE, open.instance, state, detail, 0}});
}

bool LineSimulator::InjectState(std::uint32_t state, std::uint32_t detail) {
  if (live_.empty() || live_.rbegin()->second.state == LINECALLSTATE_IDLE) return false;
  ScheduleState(NewestCall(), state, detail);
  return true;
}

bool LineSimulator::RemoteAnswer() { return InjectState(LINECALLSTATE_CONNECTED); }

bool LineSimulator::RemoteHangUp() {
  if (!live_.empty() && live_.rbegin()->second.state == LINECALLSTATE_DISCONNECTED) return false;
  return InjectState(LINECALLSTATE_DISCONNECTED, LINEDISCONNECTMODE_NORMAL);
}

void LineSimulator::InjectMessage(std::uint32_t hDevice, std::uint32_t message, std::uintptr_t instance,
                                  std::uintptr_t p1, std::uintptr_t p2, std::uintptr_t p3) {
  queue_.Add({.due = now_, .message = {hDevice, message, instance, p1, p2, p3}});
}

void LineSimulator::InjectMessage(const Scenario::Step& step) {
  const std::uintptr_t newest = lines_.empty() ? 0 : lines_.rbegin()->second.instance;
  InjectMessage(step.device, step.message, step.instance.value_or(newest), step.p1, step.p2, step.p3);
}

bool LineSimulator::ForceClose() {
  if (lines_.empty()) return false;
  const HLINE line = NewestLine();
  const Line closed = lines_.at(line);
  EndLine(line);
  queue_.Add({.due = now_, .app = closed.app, .message = {line, LINE_CLOSE, closed.instance, 0, 0, 0}});
  return true;
}

void LineSimulator::Advance(Milliseconds time) { DeliverDue(now_ + time); }

void LineSimulator::DeliverDue(Milliseconds now) {
  while (const auto due = queue_.Take(now)) {
    MoveClock(due->due);
    Deliver(*due);
  }
  MoveClock(now);
}

bool LineSimulator::DeliverOne(Milliseconds now) {
  const auto due = queue_.Take(now);
  MoveClock(now);
  if (due) Deliver(*due);
  return due.has_value();
}

bool LineSimulator::Process(const DueMessage& due) {
  const auto call = live_.find(due.call);
  if (due.kind == DueMessage::Kind::Raw) return true;
  if (due.kind == DueMessage::Kind::State) {
    if (call == live_.end() || call->second.state == LINECALLSTATE_IDLE) return false;  // IDLE is the last state
    call->second.state = static_cast<std::uint32_t>(due.message.p1);
    return true;
  }
  if (!due.creates || call == live_.end()) return true;
  if (due.message.p2 == 0) {
    *due.cell = due.call;
  } else {
    DropWaitingStates(due.call);
    live_.erase(call);
  }
  return true;
}

void LineSimulator::Deliver(const DueMessage& due) {
  const auto app = due.app != 0 ? apps_.find(due.app) : apps_.empty() ? apps_.end() : std::prev(apps_.end());
  if (app == apps_.end() || !Process(due)) return;
  const auto& message = due.message;
  if (log_) Log(LogLine(message));
  // The receiver may shut down, and with it this very registration: nothing is touched after it returns.
  app->second->LineCallBackProc(message.hDevice, message.message, message.instance, message.p1, message.p2, message.p3);
}

}  // namespace fonklav
