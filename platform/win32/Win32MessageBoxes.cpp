#include "platform/win32/Win32MessageBoxes.h"

#include "platform/win32/WideText.h"

namespace fonklav {

std::int32_t Win32MessageBoxes::Show(const std::string& prompt, std::uint32_t style, const std::string& title) {
  // A hidden program has no window that could bring the box to the front.
  return MessageBoxW(owner_(), Wide(prompt).c_str(), Wide(title).c_str(), style | MB_SETFOREGROUND);
}

}  // namespace fonklav
