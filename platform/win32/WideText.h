#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace fonklav {

/// UTF-8 text as UTF-16 and back. What is malformed becomes the replacement character; NUL characters stay.
[[nodiscard]] std::wstring Wide(std::string_view text);
[[nodiscard]] std::string Utf8(std::wstring_view text);

/// The conversions behind them, for any code page of the system.
[[nodiscard]] std::wstring WideFrom(UINT codePage, std::string_view bytes);
[[nodiscard]] std::string BytesFrom(UINT codePage, std::wstring_view text);

}  // namespace fonklav
