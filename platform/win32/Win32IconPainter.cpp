#include "platform/win32/Win32IconPainter.h"

#include <windows.h>

namespace fonklav {

void Win32IconPainter::DrawIcon(std::uintptr_t hdc, std::int32_t left, std::int32_t top, std::uintptr_t icon,
                                std::int32_t width, std::int32_t height) {
  DrawIconEx(reinterpret_cast<HDC>(hdc), left, top, reinterpret_cast<HICON>(icon), width, height, 0, nullptr,
             DI_NORMAL);
}

void Win32IconPainter::DestroyIcon(std::uintptr_t icon) { ::DestroyIcon(reinterpret_cast<HICON>(icon)); }

}  // namespace fonklav
