#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <type_traits>
#include <utility>
#include <variant>

#include "platform/Telephony.h"
#include "sim/Scenario.h"
#include "sim/TapiCodes.h"

namespace fonklav {

/// "0x" and the number in hexadecimal digits.
[[nodiscard]] std::string HexText(std::uintptr_t value);

/// One call that was made on the simulated telephony.
struct CallRecord {
  using Value = std::variant<const char*, std::uintptr_t>;
  /// A record without a result; the arguments are given as name, value, name, value …
  CallRecord(std::string_view name, std::initializer_list<Value> named);

  std::string function;             ///< published name, without the A of the 8-bit variant
  std::string arguments;            ///< `line=0x20001 address="0301234567"`; other bytes than printable ASCII as \xNN
  std::optional<std::string> text;  ///< the string argument, a number or a device class; nothing for a null pointer
  std::int32_t result{0};

  /// "call lineOpen(app=…) = 0x0" without a line end. A request's number is decimal.
  [[nodiscard]] std::string LogLine() const;
};

/// A telephone system that behaves as TAPI does: devices, locations, translation, asynchronous requests, handles that
/// are checked, and calls whose progress a scenario gives. Time is virtual; messages wait until somebody pumps
/// (Advance, DeliverOne) and come from inside a telephony function only where the scenario says so. Every call is
/// recorded. One thread only.
class LineSimulator : public Telephony {
 public:
  using Milliseconds = std::chrono::milliseconds;

  explicit LineSimulator(Scenario scenario) : scenario_(std::move(scenario)) {}

  /// Called at the start of each function with its published name: what telephony lets happen in the middle of it, for
  /// example a message that it dispatches. What this throws is as if the system had no such function.
  std::function<void(std::string_view)> inside;

  // Time.
  /// Moves the clock alone, never back: what was due on the way waits for the next pumping.
  void MoveClock(Milliseconds now) { now_ = std::max(now_, now); }
  /// Lets `time` pass and delivers what comes due on the way, each at its own moment.
  void Advance(Milliseconds time);
  /// Delivers one message that is due at `now`, the earliest. Where there is none the clock moves there: false.
  bool DeliverOne(Milliseconds now);

  // What a test reads.
  [[nodiscard]] const std::vector<CallRecord>& Calls() const { return calls_; }
  void ForgetCalls() { calls_.clear(); }
  /// The string argument of every call of `function`, "(null)" for a null pointer.
  [[nodiscard]] std::vector<std::string> TextsOf(std::string_view function) const;
  [[nodiscard]] std::size_t Registrations() const { return apps_.size(); }
  [[nodiscard]] std::size_t OpenLines() const { return lines_.size(); }
  [[nodiscard]] std::size_t LiveCalls() const { return live_.size(); }
  [[nodiscard]] std::size_t WaitingMessages() const { return queue_.size(); }
  /// The newest call's handle, 0 without any.
  [[nodiscard]] HCALL NewestCall() const { return live_.empty() ? 0 : live_.rbegin()->first; }
  /// The scenario, which may be changed at any time: what follows goes by the new rules.
  [[nodiscard]] Scenario& Rules() { return scenario_; }
  /// Receives one line of text for every call made and every message delivered.
  void SetLog(std::function<void(std::string_view)> log) { log_ = std::move(log); }

  // What happens at the far end, or in a driver that errs; it arrives with the next pumping. The first two go to the
  // newest call; nothing comes of them where it has ended, or there is none.
  void RemoteHangUp() { InjectState(LINECALLSTATE_DISCONNECTED, sim::LINEDISCONNECTMODE_NORMAL); }
  /// Puts the call into `state`, whatever it is in; what the scenario still held for it is dropped.
  void InjectState(std::uint32_t state, std::uintptr_t detail = 0);
  /// Any message, for any object instance; it goes to the newest registration.
  void InjectMessage(const LineMessage& message) { Queue({.due = now_, .message = message}); }
  /// Telephony takes the newest open line away: its handle is dead, LINE_CLOSE says so. False without an open line.
  bool ForceClose();

  // Telephony.
  std::int32_t lineInitializeEx(HLINEAPP& app, LineMessageSink& sink, const char* name, std::uint32_t& devices,
                                std::uint32_t& version, LINEINITIALIZEEXPARAMS& params) override;
  std::int32_t lineShutdown(HLINEAPP app) override;
  std::int32_t lineNegotiateAPIVersion(HLINEAPP app, std::uint32_t device, std::uint32_t low, std::uint32_t high,
                                       std::uint32_t& version, LINEEXTENSIONID& extension) override;
  std::int32_t lineGetDevCaps(HLINEAPP app, std::uint32_t device, std::uint32_t version, std::uint32_t extension,
                              std::span<std::byte> caps) override;
  std::int32_t lineGetTranslateCaps(HLINEAPP app, std::uint32_t version, std::span<std::byte> caps) override;
  std::int32_t tapiGetLocationInfo(std::span<char, 8> country, std::span<char, 8> city) override;
  std::int32_t lineOpen(HLINEAPP app, std::uint32_t device, HLINE& line, std::uint32_t version, std::uint32_t extension,
                        std::uintptr_t instance, std::uint32_t privileges, std::uint32_t media) override;
  std::int32_t lineClose(HLINE line) override;
  std::int32_t lineMakeCall(HLINE line, HCALL& call, const char* address, std::uint32_t country) override;
  std::int32_t lineDrop(HCALL call) override;
  std::int32_t lineDeallocateCall(HCALL call) override;
  std::int32_t lineTranslateAddress(HLINEAPP app, std::uint32_t device, std::uint32_t version, const char* address,
                                    std::uint32_t card, std::uint32_t options, std::span<std::byte> output) override;
  std::int32_t lineConfigDialog(std::uint32_t device, std::uintptr_t owner, const char* deviceClass) override;
  std::int32_t lineTranslateDialog(HLINEAPP app, std::uint32_t device, std::uint32_t version, std::uintptr_t owner,
                                   const char* address) override;
  std::int32_t lineGetIcon(std::uint32_t device, const char* deviceClass, std::uintptr_t& icon) override;

 private:
  using Kind = Scenario::Step::Kind;

  struct Line {
    HLINEAPP app{0};
    std::uint32_t version{0};
    std::uintptr_t instance{0};
  };
  struct Call {
    HLINE line{0};
    std::uint32_t state{0};
  };
  /// A message on its way, with what it belongs to.
  struct DueMessage {
    Milliseconds due{0};
    Kind kind{Kind::Raw};
    HLINEAPP app{0};  ///< 0: whichever registration is the newest when it is due
    HLINE line{0};
    HCALL call{0};
    HCALL* cell{nullptr};  ///< of a reply to lineMakeCall: where success writes the call's handle
    LineMessage message{};
  };

  /// Refuses the call or runs its body, and records it with the result: what a body does not return is 0.
  template <typename Body>
  std::int32_t Recorded(CallRecord record, const Body& body) {
    if (inside) inside(record.function);
    try {
      CheckRefusals(record.function);
      if constexpr (std::is_void_v<decltype(body())>) {
        body();
      } else {
        record.result = body();
      }
    } catch (const sim::Refused& refused) {
      record.result = refused.code;
    }
    const std::int32_t result = record.result;
    if (log_) log_(record.LogLine());
    calls_.push_back(std::move(record));
    if (scenario_.inside != 0) Advance({});
    return result;
  }
  void CheckRefusals(std::string_view function);
  /// A handle for a new entry of `living`; `last` is the newest given out.
  template <typename Map>
  std::uint32_t NextHandle(const Map& living, std::uint32_t& last) {
    if (scenario_.reuse != 0) last &= 0xFFFF0000;
    do ++last;
    while (living.contains(last));
    return last;
  }

  // These refuse what they do not find, or what does not fit together.
  void CheckApp(HLINEAPP app) const;
  const Scenario::Device& DeviceOf(std::uint32_t number) const;
  const Scenario::Device& DeviceOf(std::uint32_t number, const char* deviceClass) const;
  const Scenario::Device& DeviceOf(HLINEAPP app, std::uint32_t number, std::uint32_t version,
                                   std::uint32_t extension = 0) const;
  [[nodiscard]] const Scenario::Location& CurrentLocation(std::int32_t otherwise) const;

  void Queue(const DueMessage& message);
  /// Queues what comes to a call, of the newest request or by itself, with all that it belongs to.
  void QueueStep(const Scenario::Step& step, HCALL call, HCALL* cell = nullptr);
  /// Queues a request's steps and returns its number.
  std::int32_t Request(const std::vector<Scenario::Step>& steps, HCALL call, HCALL* cell = nullptr);
  /// Takes back the states that a call was still to go through, and where it ends its replies too.
  void DropWaiting(HCALL call, bool repliesToo);
  void EndLine(HLINE line);
  bool Process(const DueMessage& due);

  Scenario scenario_;
  Milliseconds now_{0};
  std::vector<DueMessage> queue_;  ///< the earliest first, those of the same time in the order in which they came
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

}  // namespace fonklav
