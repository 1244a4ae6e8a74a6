#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/TapiWire.h"

namespace fonklav {

/// One of the published line messages.
struct LineMessage {
  std::uint32_t hDevice{0};
  std::uint32_t message{0};
  std::uintptr_t instance{0};
  std::uintptr_t p1{0};
  std::uintptr_t p2{0};
  std::uintptr_t p3{0};
};

/// A message on its way, with what it belongs to: it is dropped when that goes before the message is due.
struct DueMessage {
  enum class Kind { Reply, State, Raw };
  std::chrono::milliseconds due{0};
  Kind kind{Kind::Raw};
  HLINEAPP app{0};  ///< 0: whichever registration is the newest when it is due
  HLINE line{0};
  HCALL call{0};
  HCALL* cell{nullptr};  ///< where a successful reply to lineMakeCall writes the call's handle
  bool creates{false};   ///< the reply to lineMakeCall
  LineMessage message{};
};

/// The messages that wait for their time, earliest first, those of the same time in the order in which they came.
class MessageQueue {
 public:
  void Add(const DueMessage& message) {
    const auto behind = std::upper_bound(waiting_.begin(), waiting_.end(), message,
                                         [](const auto& a, const auto& b) { return a.due < b.due; });
    waiting_.insert(behind, message);
  }
  /// Takes the first message that is due at `now`.
  std::optional<DueMessage> Take(std::chrono::milliseconds now) {
    if (!IsDue(now)) return std::nullopt;
    const DueMessage message = waiting_.front();
    waiting_.erase(waiting_.begin());
    return message;
  }
  [[nodiscard]] bool IsDue(std::chrono::milliseconds now) const {
    return !waiting_.empty() && waiting_.front().due <= now;
  }
  template <typename Predicate>
  void RemoveIf(Predicate gone) {
    std::erase_if(waiting_, gone);
  }
  [[nodiscard]] std::size_t Size() const { return waiting_.size(); }

 private:
  std::vector<DueMessage> waiting_;
};

}  // namespace fonklav
