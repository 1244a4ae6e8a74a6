#include "platform/win32/ToolTip.h"

#include <commctrl.h>

namespace fonklav {

void ToolTip::Attach(HWND dialog, HINSTANCE instance) {
  constexpr LPARAM widest = 400;  // longer texts take several lines
  window_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0,
                            0, dialog, nullptr, instance, nullptr);
  SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, widest);
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
