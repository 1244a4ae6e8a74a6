#include "platform/win32/Dpi.h"

#include "platform/win32/SystemFunction.h"

namespace fonklav {
namespace {

constexpr const wchar_t* kUser = L"user32.dll";

}  // namespace

unsigned DpiOf(HWND window) noexcept {
  const auto query = SystemFunction<UINT(WINAPI*)(HWND)>(kUser, "GetDpiForWindow");
  const UINT dpi = query == nullptr ? 0 : query(window);
  return dpi == 0 ? SystemDpi() : dpi;
}

unsigned SystemDpi() noexcept {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dpi > 0 ? static_cast<unsigned>(dpi) : USER_DEFAULT_SCREEN_DPI;
}

LOGFONTW MessageFont(unsigned dpi) noexcept {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  const auto query = SystemFunction<BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT)>(kUser, "SystemParametersInfoForDpi");
  if (query != nullptr && query(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0, dpi) != FALSE) {
    return metrics.lfMessageFont;
  }
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  metrics.lfMessageFont.lfHeight =
      MulDiv(metrics.lfMessageFont.lfHeight, static_cast<int>(dpi), static_cast<int>(SystemDpi()));
  return metrics.lfMessageFont;
}

void KeepFromScaling(HWND dialog) noexcept {
  constexpr int disableAll = 1;  // DDC_DISABLE_ALL, which the headers of older systems lack
  const auto set = SystemFunction<BOOL(WINAPI*)(HWND, int, int)>(kUser, "SetDialogDpiChangeBehavior");
  if (set != nullptr) set(dialog, disableAll, disableAll);
}

}  // namespace fonklav
