#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace fonklav::suite {

/// Describes what a process shows, so that a script can look at the dialer as a person does and knows where to click:
/// one line for each visible window and, after it, for each visible control in it. Fields are separated by "|":
/// "window" or "control", class, left, top, width, height in pixels of the screen, "enabled" or "disabled",
/// "focus" or nothing, the ticked entries of a list, the text with its line ends written as "\n".
[[nodiscard]] std::vector<std::string> WindowList(DWORD processId);

}  // namespace fonklav::suite
