#pragma once

#include <windows.h>

// The resolution of the screen, by the newest functions that the system has. Older systems have one resolution for all
// screens, or lack some of the functions; they get what comes nearest.
namespace fonklav {

/// Dots per inch of the screen that shows the window, as far as the window is told; the system's where it is not.
[[nodiscard]] unsigned DpiOf(HWND window) noexcept;

/// Dots per inch of the system as it was when the user logged on: the measure of positions, which span all screens.
[[nodiscard]] unsigned SystemDpi() noexcept;

/// A length that GetSystemMetrics knows, in pixels on a screen of `dpi`.
[[nodiscard]] int SystemLength(int metric, unsigned dpi) noexcept;

/// The font that the system uses in messages and dialogs, in the size for `dpi` and with the user's enlargement of
/// texts, as far as lines of it fit the labels.
[[nodiscard]] LOGFONTW MessageFont(unsigned dpi) noexcept;

/// Tells newer systems that this dialog scales itself.
void KeepFromScaling(HWND dialog) noexcept;

}  // namespace fonklav
