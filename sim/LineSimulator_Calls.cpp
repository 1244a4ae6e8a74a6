#include "sim/LineSimulator.h"

namespace fonklav {

using namespace sim;

namespace {

/// What follows a request for which the scenario has no steps.
const Scenario kOtherwise = Scenario::Parse("call reply after=10\ndrop reply after=10\ndrop state idle after=20\n");

/// As the command that would send it.
std::string LogLine(const LineMessage& sent) {
  const auto& [hDevice, message, instance, p1, p2, p3] = sent;
  const CallRecord shown("", {"msg", message, "device", hDevice, "instance", instance, "p1", p1, "p2", p2, "p3", p3});
  return "message " + shown.arguments;
}

}  // namespace

std::int32_t LineSimulator::lineMakeCall(HLINE line, HCALL& call, const char* address, std::uint32_t country) {
  return Recorded({"lineMakeCall", {"line", line, "address", address, "country", country}}, [&] {
    Require(lines_.contains(line), LINEERR_INVALLINEHANDLE);
    for (const auto& [handle, other] : live_) {
      Require(other.line != line || other.state == LINECALLSTATE_IDLE, LINEERR_CALLUNAVAIL);
    }
    const HCALL made = NextHandle(live_, lastCall_);
    live_[made] = {.line = line};
    return Request(scenario_.callSteps.value_or(*kOtherwise.callSteps), made, &call);
  });
}

std::int32_t LineSimulator::lineDrop(HCALL call) {
  return Recorded({"lineDrop", {"call", call}}, [&] {
    Require(live_.contains(call), LINEERR_INVALCALLHANDLE);
    Require(live_.at(call).state != LINECALLSTATE_IDLE, LINEERR_INVALCALLSTATE);
    DropWaiting(call, false);
    return Request(scenario_.dropSteps.value_or(*kOtherwise.dropSteps), call);
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

bool LineSimulator::InjectState(std::uint32_t state, std::uintptr_t detail) {
  const HCALL call = NewestCall();
  if (call == 0 || live_.at(call).state == LINECALLSTATE_IDLE) return false;
  DropWaiting(call, false);
  QueueStep({.kind = Kind::State, .message = {.message = LINE_CALLSTATE, .p1 = state, .p2 = detail}}, call);
  return true;
}

bool LineSimulator::RemoteHangUp() {
  const HCALL call = NewestCall();
  const bool gone = call != 0 && live_.at(call).state == LINECALLSTATE_DISCONNECTED;
  return !gone && InjectState(LINECALLSTATE_DISCONNECTED, LINEDISCONNECTMODE_NORMAL);
}

bool LineSimulator::ForceClose() {
  if (lines_.empty()) return false;
  const auto [handle, closed] = *lines_.rbegin();
  EndLine(handle);
  Queue({.due = now_, .app = closed.app, .message = {handle, LINE_CLOSE, closed.instance, 0, 0, 0}});
  return true;
}

void LineSimulator::Command(std::string_view text) {
  ScenarioLine line(text, 1);
  if (line.Empty()) return;
  const std::string command = line.Word("a command");
  bool done = true;
  if (command == "hangup") {
    done = RemoteHangUp();
  } else if (command == "close") {
    done = ForceClose();
  } else if (command == "state") {
    const LineMessage message = ReadStep(command, line).message;
    done = InjectState(static_cast<std::uint32_t>(message.p1), message.p2);
  } else if (command == "message") {
    auto [kind, after, message, ownInstance] = ReadStep(command, line);
    if (ownInstance && !lines_.empty()) message.instance = lines_.rbegin()->second.instance;
    InjectMessage(message);
  } else {
    return scenario_.Apply(text);
  }
  line.End();
  if (!done) line.Fail("there is no call or line for '" + command + "'");
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
