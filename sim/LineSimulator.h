#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Telephony.h"
#include "sim/CallRecord.h"
#include "sim/MessageQueue.h"
#include "sim/Scenario.h"

namespace fonklav {

class DriverBuffer;

/// A telephone system that behaves as TAPI does: devices, locations, translation, asynchronous requests, handles that
/// are checked, and calls whose progress a scenario gives. Time is virtual; messages wait until somebody pumps
/// (Advance, DeliverDue, DeliverOne) and never come from inside one of the telephony functions. Every call made is
/// recorded. One thread only.
class LineSimulator : public Telephony {
 public:
  using Milliseconds = std::chrono::milliseconds;

  explicit LineSimulator(Scenario scenario) : scenario_(std::move(scenario)) {}

  // Time.
  [[nodiscard]] Milliseconds Now() const { return now_; }
  /// Lets `time` pass and delivers what comes due on the way, each at its own moment.
  void Advance(Milliseconds time);
  /// The same for a clock that runs elsewhere: `now` counts from its own zero and never goes back.
  void DeliverDue(Milliseconds now);
  /// Moves the clock and delivers at most one message that is due. False when there was none.
  bool DeliverOne(Milliseconds now);
  /// Moves the clock alone: what was due on the way waits for the next pumping.
  void MoveClock(Milliseconds now) { now_ = std::max(now_, now); }
  [[nodiscard]] bool IsDue(Milliseconds now) const { return queue_.IsDue(now); }

  // What the test reads.
  [[nodiscard]] const std::vector<CallRecord>& Calls() const { return calls_; }
  void ForgetCalls() { calls_.clear(); }
  /// The string argument of every call of `function`, "(null)" for a null pointer.
  [[nodiscard]] std::vector<std::string> TextsOf(std::string_view function) const;
  [[nodiscard]] std::size_t CountOf(std::string_view function) const;
  [[nodiscard]] std::size_t Registrations() const { return apps_.size(); }
  [[nodiscard]] std::size_t OpenLines() const { return lines_.size(); }
  [[nodiscard]] std::size_t LiveCalls() const { return live_.size(); }
  [[nodiscard]] std::size_t WaitingMessages() const { return queue_.Size(); }
  /// The scenario, which may be changed at any time: what follows goes by the new rules.
  [[nodiscard]] Scenario& Rules() { return scenario_; }
  /// Receives one line of text for every call made and every message delivered.
  void SetLog(std::function<void(std::string_view)> log) { log_ = std::move(log); }

  // What happens at the far end, or in a driver that errs. All of it arrives with the next pumping. The first three go
  // to the newest call and return false when there is none that could do so.
  bool RemoteAnswer();
  bool RemoteHangUp();
  /// Puts the call into `state`, whatever it is in; what the scenario still held for it is dropped.
  bool InjectState(std::uint32_t state, std::uint32_t detail = 0);
  /// Any message, for any object instance; it goes to the newest registration.
  void InjectMessage(std::uint32_t hDevice, std::uint32_t message, std::uintptr_t instance, std::uintptr_t p1,
                     std::uintptr_t p2, std::uintptr_t p3);
  /// The same for a message of the scenario's kind; without an instance it goes to that of the newest line, or to 0.
  void InjectMessage(const Scenario::Step& step);
  /// Telephony takes the newest open line away: its handle is dead, LINE_CLOSE says so. False without an open line.
  bool ForceClose();
  /// The handles that the newest line and call have, 0 without one; tests address messages with them.
  [[nodiscard]] HLINE NewestLine() const { return lines_.empty() ? 0 : lines_.rbegin()->first; }
  [[nodiscard]] HCALL NewestCall() const { return live_.empty() ? 0 : live_.rbegin()->first; }

  // Telephony.
  std::int32_t lineInitializeEx(HLINEAPP& lineApp, LineMessageSink& sink, const char* friendlyName,
                                std::uint32_t& numDevs, std::uint32_t& apiVersion,
                                LINEINITIALIZEEXPARAMS& params) override;
  std::int32_t lineShutdown(HLINEAPP lineApp) override;
  std::int32_t lineNegotiateAPIVersion(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t low, std::uint32_t high,
                                       std::uint32_t& apiVersion, LINEEXTENSIONID& extensionId) override;
  std::int32_t lineGetDevCaps(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                              std::uint32_t extVersion, std::span<std::byte> caps) override;
  std::int32_t lineGetTranslateCaps(HLINEAPP lineApp, std::uint32_t apiVersion, std::span<std::byte> caps) override;
  std::int32_t tapiGetLocationInfo(std::span<char, 8> countryCode, std::span<char, 8> cityCode) override;
  std::int32_t lineOpen(HLINEAPP lineApp, std::uint32_t deviceId, HLINE& line, std::uint32_t apiVersion,
                        std::uint32_t extVersion, std::uintptr_t callbackInstance, std::uint32_t privileges,
                        std::uint32_t mediaModes) override;
  std::int32_t lineClose(HLINE line) override;
  std::int32_t lineMakeCall(HLINE line, HCALL& call, const char* destAddress, std::uint32_t countryCode) override;
  std::int32_t lineDrop(HCALL call) override;
  std::int32_t lineDeallocateCall(HCALL call) override;
  std::int32_t lineTranslateAddress(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                    const char* addressIn, std::uint32_t card, std::uint32_t translateOptions,
                                    std::span<std::byte> output) override;
  std::int32_t lineConfigDialog(std::uint32_t deviceId, std::uintptr_t owner, const char* deviceClass) override;
  std::int32_t lineTranslateDialog(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                   std::uintptr_t owner, const char* addressIn) override;
  std::int32_t lineGetIcon(std::uint32_t deviceId, const char* deviceClass, std::uintptr_t& icon) override;

 protected:
  /// Called at the start of every telephony function with its published name.
  virtual void OnEntry(std::string_view /*function*/) {}

 private:
  struct Line {
    HLINEAPP app{0};
    std::uint32_t device{0};
    std::uint32_t version{0};
    std::uintptr_t instance{0};
  };
  struct Call {
    HLINE line{0};
    std::uint32_t state{0};
  };

  template <typename Body>
  std::int32_t Recorded(std::string_view function, CallArguments&& arguments, const Body& body);
  std::optional<std::int32_t> Refused(std::string_view function);

  [[nodiscard]] std::int32_t CheckApp(HLINEAPP app) const;
  [[nodiscard]] std::int32_t CheckDevice(HLINEAPP app, std::uint32_t device) const;
  [[nodiscard]] std::int32_t CheckVersion(HLINEAPP app, std::uint32_t device, std::uint32_t version,
                                          std::uint32_t extension) const;
  [[nodiscard]] std::int32_t CheckDeviceClass(std::uint32_t device, const char* deviceClass) const;
  [[nodiscard]] std::int32_t CheckDialable(std::uint32_t device, std::string_view address) const;
  [[nodiscard]] const Scenario::Location* CurrentLocation() const;

  void FillDevCaps(DriverBuffer& buffer, std::uint32_t deviceId, std::size_t fixedSize) const;
  void FillTranslateCaps(DriverBuffer& buffer) const;
  void ApplyPatches(DriverBuffer& buffer, std::string_view structure, std::optional<std::uint32_t> device = {}) const;

  void Schedule(const std::vector<Scenario::Step>& steps, const DueMessage& origin);
  void ScheduleState(HCALL call, std::uint32_t state, std::uint32_t detail);
  void DropWaitingStates(HCALL call);
  void EndLine(HLINE line);
  void Deliver(const DueMessage& due);
  /// Brings the state up to what the message says. False when the message has become void.
  bool Process(const DueMessage& due);
  void Log(std::string_view line) const;

  Scenario scenario_;
  Milliseconds now_{0};
  MessageQueue queue_;
  std::map<HLINEAPP, LineMessageSink*> apps_;
  std::map<HLINE, Line> lines_;
  std::map<HCALL, Call> live_;
  HLINEAPP lastApp_{0x10000};
  HLINE lastLine_{0x20000};
  HCALL lastCall_{0x30000};
  std::int32_t lastRequest_{0};
  std::vector<CallRecord> calls_;
  std::function<void(std::string_view)> log_;
};

template <typename Body>
std::int32_t LineSimulator::Recorded(std::string_view function, CallArguments&& arguments, const Body& body) {
  OnEntry(function);
  CallRecord record = std::move(arguments).For(function);
  const auto refused = Refused(function);
  record.result = refused ? *refused : body();
  if (log_) Log(LogLine(record));
  calls_.push_back(std::move(record));
  return calls_.back().result;
}

}  // namespace fonklav
