#pragma once

#include <cstdint>
#include <string>

#include "platform/Ports.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// The one way to a message box. While a box is shown, messages are handled: anything may have happened when it closes.
class modPrivateDummy {
 public:
  modPrivateDummy(Diagnostics& diagnostics, MessageBoxes& boxes, const Process& process)
      : diagnostics_(diagnostics), boxes_(boxes), process_(process) {}

  /// Shows a message box and returns the button pressed. An empty title becomes "Rufmon - " and the program's name.
  std::int32_t MsgBoxForward(const std::string& prompt, std::uint32_t style, const std::string& title);

 private:
  Diagnostics& diagnostics_;
  MessageBoxes& boxes_;
  const Process& process_;
};

}  // namespace fonklav
