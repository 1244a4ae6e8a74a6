#pragma once

#include <windows.h>

#include "app/Controls.h"

namespace fonklav {

/// Posted to the dialog when the control in lParam has lost the keyboard because it was disabled or hidden.
inline constexpr UINT kLostFocusMessage = WM_APP;

/// The number of a timer; 0 would be none.
[[nodiscard]] constexpr UINT_PTR TimerNumberOf(TimerId id) { return static_cast<UINT_PTR>(id) + 1; }

}  // namespace fonklav
