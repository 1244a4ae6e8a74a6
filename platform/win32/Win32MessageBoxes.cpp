#include "platform/win32/Win32MessageBoxes.h"

#include "platform/win32/WideText.h"

namespace fonklav {

std::int32_t Win32MessageBoxes::Show(const std::string& prompt, std::uint32_t style, const std::string& title) {
  const HWND owner = owner_();
  // A hidden program has no window that could bring the box to the front, and Windows may refuse it the foreground.
  const UINT place = MB_SETFOREGROUND | (owner == nullptr ? MB_TOPMOST : 0U);
  return MessageBoxW(owner, Wide(prompt).c_str(), Wide(title).c_str(), style | place);
}

}  // namespace fonklav
