#include "app/DdeConversation.h"

#include <algorithm>
#include <utility>

#include "util/RunTimeError.h"

namespace fonklav {

void DdeConversation::Connect(LinkEvents& events, std::string_view application, std::string_view topic,
                              std::string_view item) {
  if (!transport_.Initiate(application, topic, *this)) throw RunTimeError(ErrorNumber::NoForeignApplication);
  events_ = &events;
  state_ = State::Advising;
  events.LinkOpen();
  if (!transport_.PostAdvise(item)) HandleAdviseAck(0);
}

bool DdeConversation::Send(std::string_view bytes) {
  if (!Connected()) return false;
  const DdeTransport::Block block = transport_.PostExecute(bytes);
  if (block == 0) return false;
  outstanding_.push_back({block, clock_.Ticks(), false});
  return true;
}

void DdeConversation::Tick() {
  if (!Connected()) return;
  if (!transport_.PartnerAlive()) {
    Lost();
    return;
  }
  const auto now = clock_.Ticks();
  bool failed = false;
  for (Outstanding& sent : outstanding_) {
    if (sent.overdue || now - sent.sent < kAnswerTime) continue;
    sent.overdue = true;
    failed = true;
  }
  if (failed) events_->LinkSendFailed();
}

void DdeConversation::OnAck(std::uint16_t status, std::uintptr_t what) noexcept {
  if (!Connected()) return;
  const auto found = std::ranges::find(outstanding_, what, &Outstanding::block);
  if (found == outstanding_.end()) {
    if (state_ == State::Advising) HandleAdviseAck(status);
    return;
  }
  const bool heldAgainstIt = found->overdue;
  transport_.Free(found->block);
  outstanding_.erase(found);
  // A busy server has lost the report, but the link stands.
  const bool refused = (status & (kDdeAckPositive | kDdeAckBusy)) == 0;
  if (refused && !heldAgainstIt) events_->LinkSendFailed();
}

void DdeConversation::HandleAdviseAck(std::uint16_t status) noexcept {
  if ((status & kDdeAckBusy) != 0) return;
  // Refused or not, there is a partner to watch and to report to.
  state_ = State::Linked;
  if ((status & kDdeAckPositive) == 0) events_->LinkError();
}

void DdeConversation::OnData(std::string bytes) noexcept {
  if (Connected()) events_->LinkData(bytes);
}

void DdeConversation::OnTerminate() noexcept {
  if (!Connected()) return;
  transport_.PostTerminate();
  Lost();
}

void DdeConversation::Lost() noexcept {
  state_ = State::Closed;
  FreeOutstanding();
  std::exchange(events_, nullptr)->LinkClose();
}

void DdeConversation::Close() noexcept {
  if (!Connected()) return;
  transport_.PostTerminate();
  state_ = State::Closed;
  events_ = nullptr;
  FreeOutstanding();
}

void DdeConversation::FreeOutstanding() noexcept {
  for (const Outstanding& sent : outstanding_) transport_.Free(sent.block);
  outstanding_.clear();
}

}  // namespace fonklav
