#pragma once

#include <windows.h>

// The resolution of the screen, by the newest functions that the system has. The functions that take or give a DPI came
// with Windows 10, version 1607. Older systems have one resolution for all screens as far as this program is concerned,
// and get what comes nearest. All lengths are pixels; nothing here fails.
namespace fonklav {

/// Dots per inch of the screen that shows the window; those of the system where it has no function to tell.
[[nodiscard]] unsigned DpiOf(HWND window) noexcept;

/// Dots per inch of the system as it was when the user logged on: the measure of positions, which span all screens.
[[nodiscard]] unsigned SystemDpi() noexcept;

/// A length that GetSystemMetrics knows, in pixels on a screen of `dpi`.
[[nodiscard]] int SystemLength(int metric, unsigned dpi) noexcept;

/// The font that the system uses in messages and dialogs, in the size for `dpi` and with the user's enlargement of
/// texts, as far as lines of it fit the labels.
[[nodiscard]] LOGFONTW MessageFont(unsigned dpi) noexcept;

/// Tells newer systems that this dialog scales itself. In a process that is aware of each monitor's DPI (PerMonitorV2)
/// they would otherwise resize the dialog, its controls and their fonts at WM_DPICHANGED, once more than the program
/// does.
void KeepFromScaling(HWND dialog) noexcept;

}  // namespace fonklav
