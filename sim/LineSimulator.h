#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Telephony.h"
#include "sim/CallRecord.h"
#include "sim/LineMessage.h"
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
  /// Moves the clock alone, never back: what was due on the way waits for the next pumping.
  void MoveClock(Milliseconds now);
  /// Lets `time` pass and delivers what comes due on the way, each at its own moment.
  void Advance(Milliseconds time) { DeliverDue(now_ + time); }
  /// The same for a clock that runs elsewhere: `now` counts from its own zero.
  void DeliverDue(Milliseconds now);
  /// Moves the clock and delivers at most one message that is due. False when there was none.
  bool DeliverOne(Milliseconds now);
  [[nodiscard]] bool IsDue(Milliseconds now) const { return !queue_.empty() && queue_.front().due <= now; }

  // What a test reads.
  [[nodiscard]] const std::vector<CallRecord>& Calls() const { return calls_; }
  void ForgetCalls() { calls_.clear(); }
  /// The string argument of every call of `function`, "(null)" for a null pointer.
  [[nodiscard]] std::vector<std::string> TextsOf(std::string_view function) const;
  [[nodiscard]] std::size_t CountOf(std::string_view function) const { return TextsOf(function).size(); }
  [[nodiscard]] std::size_t Registrations() const { return apps_.size(); }
  [[nodiscard]] std::size_t OpenLines() const { return lines_.size(); }
  [[nodiscard]] std::size_t LiveCalls() const { return live_.size(); }
  [[nodiscard]] std::size_t WaitingMessages() const { return queue_.size(); }
  /// The newest handles, 0 without any.
  [[nodiscard]] HLINE NewestLine() const { return lines_.empty() ? 0 : lines_.rbegin()->first; }
  [[nodiscard]] HCALL NewestCall() const { return live_.empty() ? 0 : live_.rbegin()->first; }
  /// The scenario, which may be changed at any time: what follows goes by the new rules.
  [[nodiscard]] Scenario& Rules() { return scenario_; }
  /// Receives one line of text for every call made and every message delivered.
  void SetLog(std::function<void(std::string_view)> log) { log_ = std::move(log); }

  // What happens at the far end, or in a driver that errs. All of it arrives with the next pumping. The first three go
  // to the newest call and return false when there is none that could do so.
  bool RemoteAnswer() { return InjectState(LINECALLSTATE_CONNECTED); }
  bool RemoteHangUp();
  /// Puts the call into `state`, whatever it is in; what the scenario still held for it is dropped.
  bool InjectState(std::uint32_t state, std::uint32_t detail = 0);
  /// Any message, for any object instance; it goes to the newest registration.
  void InjectMessage(std::uint32_t hDevice, std::uint32_t message, std::uintptr_t instance, std::uintptr_t p1,
                     std::uintptr_t p2, std::uintptr_t p3);
  /// Telephony takes the newest open line away: its handle is dead, LINE_CLOSE says so. False without an open line.
  bool ForceClose();
  /// Does what one line of text says: "answer", "hangup", "close", "state NAME detail=N", "message msg=N …", or any
  /// line of a scenario, which holds from then on. Throws ScenarioError for what it does not understand or cannot do.
  void Command(std::string_view text);

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
    std::uint32_t version{0};
    std::uintptr_t instance{0};
  };
  struct Call {
    HLINE line{0};
    std::uint32_t state{0};
  };

  /// Refuses the call or runs its body, and records it with the result.
  template <typename Body>
  std::int32_t Recorded(CallRecord record, const Body& body) {
    OnEntry(record.function);
    const auto refused = Refused(record.function);
    record.result = refused ? *refused : body();
    if (log_) log_(record.LogLine());
    calls_.push_back(std::move(record));
    const std::int32_t result = calls_.back().result;
    if (scenario_.inside != 0) DeliverDue(now_);
    return result;
  }
  std::optional<std::int32_t> Refused(std::string_view function);
  /// A handle for a new entry of `living`, whose numbers begin behind `first`; `last` is the newest given out.
  template <typename Map>
  typename Map::key_type NextHandle(const Map& living, typename Map::key_type first, typename Map::key_type& last) {
    if (scenario_.reuse == 0) return ++last;
    typename Map::key_type handle = first + 1;
    while (living.contains(handle)) ++handle;
    return handle;
  }

  [[nodiscard]] std::int32_t CheckApp(HLINEAPP app) const;
  [[nodiscard]] std::int32_t CheckDevice(HLINEAPP app, std::uint32_t device) const;
  [[nodiscard]] std::int32_t CheckVersion(HLINEAPP app, std::uint32_t device, std::uint32_t version,
                                          std::uint32_t extension = 0) const;
  [[nodiscard]] std::int32_t CheckDeviceClass(std::uint32_t device, const char* deviceClass) const;
  [[nodiscard]] const Scenario::Location* CurrentLocation() const;
  void FillLocations(DriverBuffer& buffer) const;
  void ApplyPatches(DriverBuffer& buffer, std::string_view structure, std::optional<std::uint32_t> device = {});

  void Queue(const DueMessage& message);
  std::int32_t Schedule(const std::vector<Scenario::Step>& steps, const DueMessage& origin);
  void DropWaiting(HCALL call, bool repliesToo);
  void EndLine(HLINE line);
  void Deliver();
  bool Process(const DueMessage& due);

  Scenario scenario_;
  Milliseconds now_{0};
  std::vector<DueMessage> queue_;  ///< the earliest first, those of the same time in the order in which they came
  std::map<HLINEAPP, LineMessageSink*> apps_;
  std::map<HLINE, Line> lines_;
  std::map<HCALL, Call> live_;
  static constexpr HLINEAPP kFirstApp = 0x10000;
  static constexpr HLINE kFirstLine = 0x20000;
  static constexpr HCALL kFirstCall = 0x30000;
  HLINEAPP lastApp_{kFirstApp};
  HLINE lastLine_{kFirstLine};
  HCALL lastCall_{kFirstCall};
  std::int32_t lastRequest_{0};
  std::vector<CallRecord> calls_;
  std::function<void(std::string_view)> log_;
};

}  // namespace fonklav
