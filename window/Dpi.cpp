#include "window/Dpi.h"

#include "app/Layout.h"
#include "platform/win32/Handles.h"
#include "platform/win32/SystemFunction.h"

namespace fonklav {
namespace {

constexpr const wchar_t* kUser = L"user32.dll";

/// The height of a line of such a font, in pixels; 0 when the system has none.
int LineHeight(const LOGFONTW& description) noexcept {
  const UniqueFont font{CreateFontIndirectW(&description)};
  const HDC screen = GetDC(nullptr);
  const HGDIOBJ before = SelectObject(screen, font.Get());
  TEXTMETRICW metrics{};
  GetTextMetricsW(screen, &metrics);
  SelectObject(screen, before);  // a font that is still selected cannot be deleted
  ReleaseDC(nullptr, screen);
  return static_cast<int>(metrics.tmHeight);
}

LOGFONTW WantedFont(unsigned dpi) noexcept {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  const auto query = SystemFunction<BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT)>(kUser, "SystemParametersInfoForDpi");
  if (query != nullptr && query(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0, dpi) != FALSE) {
    return metrics.lfMessageFont;
  }
  // The older function knows the system's DPI alone.
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  metrics.lfMessageFont.lfHeight =
      MulDiv(metrics.lfMessageFont.lfHeight, static_cast<int>(dpi), static_cast<int>(SystemDpi()));
  return metrics.lfMessageFont;
}

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

int SystemLength(int metric, unsigned dpi) noexcept {
  const auto query = SystemFunction<int(WINAPI*)(int, UINT)>(kUser, "GetSystemMetricsForDpi");
  if (query != nullptr) return query(metric, dpi);
  return MulDiv(GetSystemMetrics(metric), static_cast<int>(dpi), static_cast<int>(SystemDpi()));
}

LOGFONTW MessageFont(unsigned dpi) noexcept {
  LOGFONTW description = WantedFont(dpi);
  description.lfHeight = FittingFontHeight(static_cast<int>(description.lfHeight), LineHeight(description), dpi);
  return description;
}

void KeepFromScaling(HWND dialog) noexcept {
  constexpr int disableAll = 1;  // DDC_DISABLE_ALL, which the headers of older systems lack
  const auto set = SystemFunction<BOOL(WINAPI*)(HWND, int, int)>(kUser, "SetDialogDpiChangeBehavior");
  if (set != nullptr) set(dialog, disableAll, disableAll);
}

}  // namespace fonklav
