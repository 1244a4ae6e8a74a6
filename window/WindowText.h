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

/// Shows the content of a one-line box as OneLine has it, and marks the box when that is not all of it.
void ShowOneLine(HWND box, const std::wstring& text);

/// Whether a one-line box shows the beginning of a longer text: an edit must replace all of it then, or the beginning
/// would become the content.
[[nodiscard]] bool ShowsBeginning(HWND box);

/// What a one-line box shows is its content from now on: the user has edited it.
void ShowsAll(HWND box);

/// Adds to the content of a box whose newest line is its last, and scrolls to the end.
void AppendText(HWND box, const std::wstring& added);

}  // namespace fonklav
