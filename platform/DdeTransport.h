#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace fonklav {

/// What the partner of a conversation sends, as it arrives on the program's message loop. Messages from any other
/// window never get here.
class DdeSink {
 public:
  DdeSink() = default;
  DdeSink(const DdeSink&) = delete;
  DdeSink& operator=(const DdeSink&) = delete;
  virtual ~DdeSink() = default;

  /// WM_DDE_ACK: the status word, and in `what` the memory of the execute that it answers or, for the other messages,
  /// an item's atom.
  virtual void OnAck(std::uint16_t status, std::uintptr_t what) noexcept = 0;
  /// WM_DDE_DATA: the value's bytes up to the first NUL. The transport has copied them out, answered and freed.
  virtual void OnData(std::string bytes) noexcept = 0;
  /// WM_DDE_TERMINATE.
  virtual void OnTerminate() noexcept = 0;
};

/// The published DDE messages between a hidden window of ours and one partner, as the client sees them. Nothing waits
/// and nothing pumps messages, Initiate aside. Strings are bytes of the code page.
class DdeTransport {
 public:
  /// The memory of one posted execute string; it belongs to the caller until Free. 0 is none.
  using Block = std::uintptr_t;

  DdeTransport() = default;
  DdeTransport(const DdeTransport&) = delete;
  DdeTransport& operator=(const DdeTransport&) = delete;
  virtual ~DdeTransport() = default;

  /// WM_DDE_INITIATE to all windows. The first server that answers becomes the partner and `sink`, which must live as
  /// long as this object, hears it from then on; further servers are sent away. False when none answered.
  virtual bool Initiate(std::string_view application, std::string_view topic, DdeSink& sink) = 0;
  /// WM_DDE_ADVISE for `item`, with data and as text. False when it could not be posted.
  virtual bool PostAdvise(std::string_view item) = 0;
  /// WM_DDE_EXECUTE. The result is 0 when it could not be posted; nothing is left behind then.
  [[nodiscard]] virtual Block PostExecute(std::string_view bytes) = 0;
  /// Frees the memory of an execute that was answered, or that nobody will answer any more.
  virtual void Free(Block block) noexcept = 0;
  /// WM_DDE_TERMINATE.
  virtual void PostTerminate() noexcept = 0;
  /// Whether the partner's window still exists.
  [[nodiscard]] virtual bool PartnerAlive() const = 0;
};

/// Status word of WM_DDE_ACK.
inline constexpr std::uint16_t kDdeAckPositive = 0x8000;
inline constexpr std::uint16_t kDdeAckBusy = 0x4000;

}  // namespace fonklav
