#pragma once

#include <windows.h>

#include "util/RunTimeError.h"

namespace fonklav {

/// The run-time error that stands for an error code of Windows.
[[nodiscard]] ErrorNumber ErrorNumberOf(DWORD error) noexcept;

}  // namespace fonklav
