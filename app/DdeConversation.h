#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/DdeTransport.h"
#include "platform/Ports.h"

namespace fonklav {

/// What becomes of the link, told to its owner. No handler may throw.
class LinkEvents {
 public:
  LinkEvents() = default;
  LinkEvents(const LinkEvents&) = delete;
  LinkEvents& operator=(const LinkEvents&) = delete;
  virtual ~LinkEvents() = default;

  /// The question has been out for longer than a person should wait for. Its outcome is still to come.
  virtual void txtDDE_LinkLate() noexcept = 0;
  /// The outcome of the question: there is no server, or none that answers.
  virtual void txtDDE_LinkFailed() noexcept = 0;
  /// The other outcome: a server has answered.
  virtual void txtDDE_LinkOpen() noexcept = 0;
  /// The server will not report changes of the item.
  virtual void txtDDE_LinkError() noexcept = 0;
  /// The conversation is over: the server has ended it, or its window is gone. Comes once after
  /// txtDDE_LinkOpen, unless the owner closes first.
  virtual void txtDDE_LinkClose() noexcept = 0;
  /// The item has a new value, in bytes of the code page.
  virtual void txtDDE_LinkData(const std::string& bytes) noexcept = 0;
  /// A report that had been posted was refused, or has found no answer in time.
  virtual void txtDDE_SendFailed() noexcept = 0;
};

/// The client's side of one conversation: what is outstanding, what counts as lost and when. It never waits: a question
/// or a report is posted, and what becomes of it is heard later.
///
///     not connected --Connect--> asking --answer--> advising --ack--> linked
///            asking --nobody, 10 seconds--> closed
///            advising, linked --terminate, partner gone--> closed (for good)
class DdeConversation : public DdeSink {
 public:
  /// How long the question for a server waits for a program that is busy; one that hangs never answers.
  static constexpr std::chrono::milliseconds kAskingTime{10000};
  /// How long a person waits for a window before it is shown without the question's outcome.
  static constexpr std::chrono::milliseconds kPatience{1000};
  /// How long a busy server is left alone before the advise is asked for again.
  static constexpr std::chrono::milliseconds kBusyTime{1000};
  /// How long an execute may stay without an answer before it counts as failed.
  static constexpr std::chrono::milliseconds kAnswerTime{5000};

  DdeConversation(DdeTransport& transport, const Clock& clock) : transport_(transport), clock_(clock) {}
  DdeConversation(const DdeConversation&) = delete;
  DdeConversation& operator=(const DdeConversation&) = delete;
  /// Ends a conversation that is still up.
  ~DdeConversation() override { Close(); }

  /// Asks for a server and, once one has answered, for the item's changes. Names are bytes of the code page, at most
  /// 255. `events` must live until the conversation is closed; it hears the outcome, at once where the question cannot
  /// even be put.
  void Connect(LinkEvents& events, std::string_view application, std::string_view topic, std::string_view item);

  /// Posts a report; false when it could not be posted, or there is no partner.
  [[nodiscard]] bool Send(std::string_view bytes);

  /// Ends the question or the conversation from our side. Raises no event.
  void Close() noexcept;

  void OnAnswer() noexcept override;
  void OnNobody() noexcept override;
  void OnAdviseAck(std::uint16_t status) noexcept override;
  void OnExecuteAck(DdeExecute execute, std::uint16_t status) noexcept override;
  void OnData(std::string bytes) noexcept override;
  void OnTerminate() noexcept override;
  /// Looks after the question, the partner and the answers that are overdue.
  bool OnTick() noexcept override;

 private:
  enum class State { NotConnected, Asking, Advising, Linked, Closed };

  /// A report that the partner has not answered yet, nor failed to answer in time.
  struct Outstanding {
    DdeExecute execute;
    std::chrono::milliseconds sent;
  };

  [[nodiscard]] bool Connected() const { return state_ == State::Advising || state_ == State::Linked; }
  /// Tells the owner once that the question takes long, and gives it up when its time is over.
  void WatchQuestion() noexcept;
  /// Takes the reports that nobody has answered in time for refused.
  void WatchAnswers() noexcept;
  /// Asks for the item's changes; a question that cannot be posted counts as refused.
  void Advise() noexcept;
  /// Ends the link for good and tells the owner by this event.
  void EndWith(void (LinkEvents::*event)() noexcept) noexcept;

  DdeTransport& transport_;
  const Clock& clock_;
  LinkEvents* events_{nullptr};  ///< not owned; set from Connect to the end
  State state_{State::NotConnected};
  std::string item_;
  std::chrono::milliseconds since_{0};  ///< of the question or, while the server is busy, of its last answer
  bool late_{false};                    ///< the owner knows that the question takes long
  bool busy_{false};                    ///< the advise is to be asked for again
  std::vector<Outstanding> outstanding_;
};

}  // namespace fonklav
