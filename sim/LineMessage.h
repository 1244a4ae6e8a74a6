#pragma once

#include <chrono>
#include <cstdint>

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

/// A message on its way, with what it belongs to: replies and call states are dropped when that goes before they are
/// due, a raw message is delivered whatever has become of its call.
struct DueMessage {
  enum class Kind { Reply, State, Raw };
  std::chrono::milliseconds due{0};
  Kind kind{Kind::Raw};
  HLINEAPP app{0};  ///< 0: whichever registration is the newest when it is due
  HLINE line{0};
  HCALL call{0};
  HCALL* cell{nullptr};  ///< of a reply to lineMakeCall: where success writes the call's handle
  LineMessage message{};
};

}  // namespace fonklav
