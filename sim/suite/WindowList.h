#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace fonklav::suite {

/// Describes what a process shows, so that a script can look at the dialer as a person does and knows where to click:
/// one line for each visible window and, after it, for each visible control in it. Fields are separated by "|":
/// "window" or "control", class, left, top, width, height in pixels of the screen, "enabled" or "disabled",
/// "focus" or nothing, the ticked entries of a list, the text.
[[nodiscard]] std::vector<std::string> WindowList(DWORD processId);

/// A visible window or control of a process: by its text as one line, with or without the marks of access keys, or by
/// its class and its place in tab order ("Edit 1"); null when there is none.
[[nodiscard]] HWND FindShown(DWORD processId, const std::string& what);

/// The ticked entries of a list; the text of anything else.
[[nodiscard]] std::string ContentOf(HWND window);

/// A dialog of a process, `shown` or not; null when it has none.
[[nodiscard]] HWND DialogOf(DWORD processId, bool shown);

/// What a screen reader learns of a dialog's visible controls over IAccessible, one line each and one for each entry of
/// a list: window class or "entry", role and states (ROLE_SYSTEM_… and STATE_SYSTEM_… as decimal numbers, empty when
/// the system does not tell), name, separated by "|".
[[nodiscard]] std::vector<std::string> ReadingList(HWND dialog);

/// Where a person would aim at in a dialog, one line each: a name, x and y in pixels of the screen, separated by "|".
/// "caption", "minimize", "close", "lower edge" and "corner" are what the window itself says of its frame; "box N" and
/// "entry N" the check box and the text of each entry in sight of its list.
[[nodiscard]] std::vector<std::string> PlaceList(HWND dialog);

}  // namespace fonklav::suite
