#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace fonklav {

/// The number of one posted execute string, never used again; 0 is none.
using DdeExecute = std::uint64_t;

/// What becomes of a conversation, as it arrives on the program's message loop. Messages from any window but the
/// partner's never get here.
class DdeSink {
 public:
  DdeSink() = default;
  DdeSink(const DdeSink&) = delete;
  DdeSink& operator=(const DdeSink&) = delete;
  virtual ~DdeSink() = default;

  /// A server has answered the question and is the partner from now on. Comes at most once.
  virtual void OnAnswer() noexcept = 0;
  /// Every window has dealt with the question, and none is a server. Comes at most once, and never after OnAnswer.
  virtual void OnNobody() noexcept = 0;
  /// The partner has answered the advise with this status word.
  virtual void OnAdviseAck(std::uint16_t status) noexcept = 0;
  /// The partner has answered an execute with this status word. Comes at most once for each.
  virtual void OnExecuteAck(DdeExecute execute, std::uint16_t status) noexcept = 0;
  /// WM_DDE_DATA: the value's bytes up to the first NUL.
  virtual void OnData(std::string bytes) noexcept = 0;
  /// WM_DDE_TERMINATE.
  virtual void OnTerminate() noexcept = 0;
  /// Time passes: comes from Ask to End, four times a second. Returns whether anything but the end of the partner is
  /// waited for: if not, the next one comes after 1.7 seconds.
  virtual bool OnTick() noexcept = 0;
};

/// The published DDE messages between a hidden window of ours and one partner, as the client sees them. Nothing waits
/// and nothing pumps messages. The transport owns the memory and the atoms that go with its messages: they go when the
/// partner has answered, or at the end. Strings are bytes of the code page.
class DdeTransport {
 public:
  DdeTransport() = default;
  DdeTransport(const DdeTransport&) = delete;
  DdeTransport& operator=(const DdeTransport&) = delete;
  virtual ~DdeTransport() = default;

  /// WM_DDE_INITIATE to every window of other programs. Returns at once; `sink`, which must live until End, hears what
  /// comes of it: the first server that answers is the partner, and further ones are sent away. False when the question
  /// could not be put.
  [[nodiscard]] virtual bool Ask(std::string_view application, std::string_view topic, DdeSink& sink) = 0;
  /// WM_DDE_ADVISE for `item`, with data and as text. False when it could not be posted. May be asked again after the
  /// answer.
  [[nodiscard]] virtual bool PostAdvise(std::string_view item) = 0;
  /// WM_DDE_EXECUTE. 0 when it could not be posted.
  [[nodiscard]] virtual DdeExecute PostExecute(std::string_view bytes) = 0;
  /// Ends the question or the conversation: says WM_DDE_TERMINATE to a partner, now or when a server still answers, and
  /// frees what is out. The sink hears nothing any more.
  virtual void End() noexcept = 0;
  /// Whether the partner's window still exists.
  [[nodiscard]] virtual bool PartnerAlive() const = 0;
};

/// The bits of WM_DDE_ACK's status word: accepted; too busy, to be asked again. Without either it is a refusal.
inline constexpr std::uint16_t kDdeAckPositive = 0x8000;
inline constexpr std::uint16_t kDdeAckBusy = 0x4000;

}  // namespace fonklav
