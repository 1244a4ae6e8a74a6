#pragma once

#include <windows.h>

#include <string>
#include <string_view>

// Windows speaks UTF-16 in its W functions, and the system's code page in its A functions; the program speaks UTF-8.
// These four are the only place where one becomes the other.
namespace fonklav {

/// UTF-8 text as UTF-16 and back. What is malformed becomes the replacement character; NUL characters stay.
[[nodiscard]] std::wstring Wide(std::string_view text);
[[nodiscard]] std::string Utf8(std::wstring_view text);

/// The conversions behind them, for any code page of the system. What the code page lacks becomes a character that
/// comes near, or its replacement character. Nothing fails: text that cannot be converted at all becomes the empty
/// text.
[[nodiscard]] std::wstring WideFrom(UINT codePage, std::string_view bytes);
[[nodiscard]] std::string BytesFrom(UINT codePage, std::wstring_view text);

}  // namespace fonklav
