#pragma once

#include <windows.h>

#include <string>

namespace fonklav {

/// A window's caption or a box's content.
[[nodiscard]] std::wstring TextOf(HWND window);

/// Shows a caption or content, unless it is shown already: setting it anew would move the caret and flicker.
void ShowText(HWND window, const std::wstring& text);

/// The content of a one-line box as it is shown. The system's box takes seconds to lay out a very long line, so such a
/// text ends in "…", which is no part of any number: nobody dials a part for the whole.
[[nodiscard]] std::wstring OneLine(std::wstring text);

/// Shows the content of a box whose newest line is its last: what is added is added, and the end is scrolled to.
void ShowGrowingText(HWND box, const std::wstring& text);

}  // namespace fonklav
