#pragma once

#include <windows.h>

#include <string>

// What a window or a box shows as text. Nothing here fails: a window that has gone has no text and takes none.
namespace fonklav {

/// A window's caption or a box's content.
[[nodiscard]] std::wstring TextOf(HWND window);

/// Shows a caption or content, unless it is shown already: setting it anew would move the caret and flicker.
void ShowText(HWND window, const std::wstring& text);

/// The content of a one-line box as it is shown. The system's box takes seconds to lay out a very long line, so of such
/// a text only the beginning is shown, and "…" behind it: that is no part of any number, so nobody takes the beginning
/// for the whole.
[[nodiscard]] std::wstring OneLine(std::wstring text);

/// Shows the content of a one-line box as OneLine has it, and marks the box when that is not all of it.
void ShowOneLine(HWND box, const std::wstring& text);

/// Whether a one-line box shows the beginning of a longer text. Then an edit has to replace the whole text; otherwise
/// the edited beginning would become the content.
[[nodiscard]] bool ShowsBeginning(HWND box);

/// Takes the mark away: from now on the box's content is what it shows.
void ShowsAll(HWND box);

/// Adds at the end of a box's content and scrolls there.
void AppendText(HWND box, const std::wstring& added);

}  // namespace fonklav
