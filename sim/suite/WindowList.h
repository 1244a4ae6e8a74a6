#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace fonklav::suite {

/// What a process shows: each visible window and, after it, the visible controls in it.
[[nodiscard]] std::vector<HWND> ShownBy(DWORD processId);

/// A window as a person sees it, with "|" between the fields: "window" or "control", class, left, top, width, height in
/// pixels of the screen, "focus" or nothing, the ticked entries of a list, the text.
[[nodiscard]] std::string Describe(HWND window);

/// What a screen reader learns of it over IAccessible, separated by "|": window class; role (ROLE_SYSTEM_…), states
/// (STATE_SYSTEM_…) and those of its children, decimal numbers, "-" where the system does not tell; name.
[[nodiscard]] std::string Reading(HWND window);

/// A visible window or control of a process: by its text as one line, with or without the marks of access keys, or by
/// its class and its place in tab order ("Edit 1"); null when there is none.
[[nodiscard]] HWND FindShown(DWORD processId, const std::string& what);

/// The ticked entries of a list; the text of anything else.
[[nodiscard]] std::string ContentOf(HWND window);

/// The foremost dialog of a process, shown or not; null when it has none.
[[nodiscard]] HWND DialogOf(DWORD processId);

/// Where a person would aim at, in pixels of the screen; nothing when that is not shown. "caption", "minimize" and
/// "close" are what the dialog itself says of its frame; "box N" and "entry N" the check box and the text of an entry
/// of its list; any other name is one for FindShown, and means the middle.
[[nodiscard]] std::optional<POINT> PlaceOf(DWORD processId, const std::string& name);

}  // namespace fonklav::suite
