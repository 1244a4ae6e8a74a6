#include "app/DdeConversation.h"

#include <algorithm>
#include <utility>

namespace fonklav {

void DdeConversation::Connect(LinkEvents& events, std::string_view application, std::string_view topic,
                              std::string_view item) {
  item_ = item;
  events_ = &events;
  since_ = clock_.Ticks();
  state_ = State::Asking;
  if (!transport_.Ask(application, topic, *this)) OnNobody();
}

void DdeConversation::OnAnswer() noexcept {
  if (state_ != State::Asking) return;
  state_ = State::Advising;
  events_->txtDDE_LinkOpen();
  // The owner may have ended the conversation in its handler.
  if (state_ == State::Advising) Advise();
}

void DdeConversation::OnNobody() noexcept {
  if (state_ == State::Asking) EndWith(&LinkEvents::txtDDE_LinkFailed);
}

bool DdeConversation::Send(std::string_view bytes) {
  if (!Connected()) return false;
  const DdeExecute execute = transport_.PostExecute(bytes);
  if (execute == 0) return false;
  outstanding_.push_back({execute, clock_.Ticks()});
  return true;
}

bool DdeConversation::OnTick() noexcept {
  if (state_ == State::Asking) WatchQuestion();
  if (Connected() && !transport_.PartnerAlive()) EndWith(&LinkEvents::txtDDE_LinkClose);
  if (Connected()) WatchAnswers();
  return state_ != State::Linked || !outstanding_.empty();
}

void DdeConversation::WatchQuestion() noexcept {
  const auto asked = clock_.Ticks() - since_;
  if (asked >= kAskingTime) return OnNobody();
  if (asked > kPatience && !std::exchange(late_, true)) events_->txtDDE_LinkLate();
}

void DdeConversation::WatchAnswers() noexcept {
  if (busy_ && clock_.Ticks() - since_ >= kBusyTime) Advise();
  // What has failed by silence is forgotten: its late answer changes nothing any more.
  const auto overdue = [now = clock_.Ticks()](const Outstanding& sent) { return now - sent.sent >= kAnswerTime; };
  if (std::erase_if(outstanding_, overdue) != 0) events_->txtDDE_SendFailed();
}

void DdeConversation::Advise() noexcept {
  busy_ = false;
  bool posted = false;
  try {
    posted = transport_.PostAdvise(item_);
  } catch (...) {
    // Want of memory is one more reason why it could not be posted.
  }
  if (!posted) OnAdviseAck(0);
}

void DdeConversation::OnAdviseAck(std::uint16_t status) noexcept {
  if (state_ != State::Advising) return;
  if ((status & kDdeAckPositive) == 0 && (status & kDdeAckBusy) != 0) {
    busy_ = true;
    since_ = clock_.Ticks();
    return;
  }
  // Refused or not, there is a partner to watch and to report to.
  state_ = State::Linked;
  if ((status & kDdeAckPositive) == 0) events_->txtDDE_LinkError();
}

void DdeConversation::OnExecuteAck(DdeExecute execute, std::uint16_t status) noexcept {
  const bool waitedFor = std::erase_if(outstanding_, [&](const auto& sent) { return sent.execute == execute; }) != 0;
  // A busy server has lost the report, but the link stands.
  const bool refused = (status & (kDdeAckPositive | kDdeAckBusy)) == 0;
  if (Connected() && waitedFor && refused) events_->txtDDE_SendFailed();
}

void DdeConversation::OnData(std::string bytes) noexcept {
  if (Connected()) events_->txtDDE_LinkData(bytes);
}

void DdeConversation::OnTerminate() noexcept {
  if (Connected()) EndWith(&LinkEvents::txtDDE_LinkClose);
}

void DdeConversation::EndWith(void (LinkEvents::*event)() noexcept) noexcept {
  LinkEvents* const events = events_;
  Close();
  (events->*event)();
}

void DdeConversation::Close() noexcept {
  if (state_ != State::Asking && !Connected()) return;
  state_ = State::Closed;
  events_ = nullptr;
  outstanding_.clear();
  transport_.End();
}

}  // namespace fonklav
