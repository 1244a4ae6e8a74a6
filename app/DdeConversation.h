#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/DdeTransport.h"

namespace fonklav {

/// What becomes of the link, told to its owner. No handler may throw.
class LinkEvents {
 public:
  LinkEvents() = default;
  LinkEvents(const LinkEvents&) = delete;
  LinkEvents& operator=(const LinkEvents&) = delete;
  virtual ~LinkEvents() = default;

  /// The server has answered.
  virtual void LinkOpen() noexcept = 0;
  /// The server will not report changes of the item.
  virtual void LinkError() noexcept = 0;
  /// The conversation is over: the server has ended it, or its window is gone. Comes exactly once after LinkOpen.
  virtual void LinkClose() noexcept = 0;
  /// The item has a new value, in bytes of the code page.
  virtual void LinkData(const std::string& bytes) noexcept = 0;
  /// A report that had been posted was refused, or has found no answer in time.
  virtual void LinkSendFailed() noexcept = 0;
};

/// The client's side of one conversation: what is outstanding, what an acknowledgement belongs to, when the link counts
/// as lost. It never waits: a report is posted, and what becomes of it is heard later.
///
///     not connected --Connect--> advising --ack--> linked
///            advising, linked --terminate, partner gone--> closed (for good)
class DdeConversation : public DdeSink {
 public:
  /// How long an execute may stay without an answer before it counts as failed.
  static constexpr std::chrono::milliseconds kAnswerTime{5000};

  DdeConversation(DdeTransport& transport, const Clock& clock) : transport_(transport), clock_(clock) {}
  DdeConversation(const DdeConversation&) = delete;
  DdeConversation& operator=(const DdeConversation&) = delete;
  /// Ends a conversation that is still up.
  ~DdeConversation() override { Close(); }

  /// Opens the conversation and asks for the item's changes. Names are bytes of the code page, at most 255. Throws
  /// RunTimeError 282 when no server answers.
  void Connect(LinkEvents& events, std::string_view application, std::string_view topic, std::string_view item);

  /// Posts a report; false when it could not be posted, or there is no conversation.
  [[nodiscard]] bool Send(std::string_view bytes);

  /// Looks after the partner and the answers that are overdue. To be called some times a second while Connected.
  void Tick();

  /// Whether there is a partner.
  [[nodiscard]] bool Connected() const { return state_ == State::Advising || state_ == State::Linked; }

  /// Ends the conversation from our side. Raises no event.
  void Close() noexcept;

  void OnAck(std::uint16_t status, std::uintptr_t what) noexcept override;
  void OnData(std::string bytes) noexcept override;
  void OnTerminate() noexcept override;

 private:
  enum class State { NotConnected, Advising, Linked, Closed };

  struct Outstanding {
    DdeTransport::Block block;
    std::chrono::milliseconds sent;
    bool overdue;  ///< has failed by silence; its memory waits for the late answer
  };

  void HandleAdviseAck(std::uint16_t status) noexcept;
  void FreeOutstanding() noexcept;
  void Lost() noexcept;

  DdeTransport& transport_;
  const Clock& clock_;
  LinkEvents* events_{nullptr};  ///< not owned; set while there is a partner
  State state_{State::NotConnected};
  std::vector<Outstanding> outstanding_;
};

}  // namespace fonklav
