#include "window/ToolTip.h"

#include <commctrl.h>

#include "app/Layout.h"

namespace fonklav {

void ToolTip::Attach(HWND dialog, HINSTANCE instance) {
  window_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0,
                            0, dialog, nullptr, instance, nullptr);
}

void ToolTip::Rescaled(unsigned dpi) const {
  constexpr float widest = 6000;  // twips; longer texts take several lines
  SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, LengthToPixels(widest, dpi));
}

void ToolTip::Show(HWND control, const std::wstring& text) {
  std::wstring& shown = shown_[control];
  if (shown == text) return;
  shown = text;
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = GetParent(control);
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = shown.data();
  SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  if (!shown.empty()) SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace fonklav
