#include "window/ToolTip.h"

#include <commctrl.h>

#include <utility>

#include "app/Layout.h"

namespace fonklav {

void ToolTip::Attach(HWND dialog, HINSTANCE instance) {
  // TTS_NOPREFIX: a tooltip would strip each "&". TTS_ALWAYSTIP: also while another window is active.
  window_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0,
                            0, dialog, nullptr, instance, nullptr);
}

void ToolTip::Rescaled(unsigned dpi) const {
  // With a greatest width a tooltip breaks its text into lines; without one it is a single line, however long.
  constexpr float widest = 6000;  // twips
  SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, LengthToPixels(widest, dpi));
}

void ToolTip::Show(HWND control, std::wstring text) {
  if (shown_ == text) return;
  shown_ = std::move(text);
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  // The control itself is the tool (TTF_IDISHWND), and the tooltip watches the mouse over it by itself (TTF_SUBCLASS).
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = GetParent(control);
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = shown_.data();
  SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  if (!shown_.empty()) SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace fonklav
