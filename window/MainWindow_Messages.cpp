#include "platform/win32/WideText.h"
#include "util/Scope.h"
#include "window/ControlWindows.h"
#include "window/Dpi.h"
#include "window/MainWindow.h"
#include "window/WindowText.h"

// What the user and the system do to the window: each message goes to the program under its own name. The program may
// have unloaded, and may be gone, when a call of it returns.
namespace fonklav {

INT_PTR CALLBACK MainWindow::DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  try {
    auto* const window = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(dialog, GWLP_USERDATA));
    return window == nullptr ? FALSE : window->OnMessage(message, wParam, lParam);
  } catch (...) {
    // Nothing may be thrown through the system's code. What throws here is want of memory; the message counts as lost.
    return FALSE;
  }
}

INT_PTR MainWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      return OnCommand(LOWORD(wParam), HIWORD(wParam));
    case WM_NOTIFY:
      return OnNotify(*reinterpret_cast<const NMHDR*>(lParam));
    case WM_TIMER:
      return OnTimer(wParam);
    case WM_MOVE:
      return OnMoved();
    case WM_SIZE:
      return OnResized(wParam);
    case WM_GETMINMAXINFO:
      return OnLimits(*reinterpret_cast<MINMAXINFO*>(lParam));
    case WM_DPICHANGED:
      return OnDpiChanged(LOWORD(wParam), reinterpret_cast<const RECT*>(lParam));
    case WM_SETTINGCHANGE:
      return OnSettingChanged(wParam);
    case WM_SYSCOLORCHANGE:
      return OnColorsChanged();
    case WM_CTLCOLORSTATIC:
      return OnBoxColors(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
    case kLostFocusMessage:
      return OnLostFocus(reinterpret_cast<HWND>(lParam));
    case WM_CLOSE:
      return input_->CloseRequested(UnloadMode::UserClosed), TRUE;
    case WM_ENDSESSION:
      return OnSessionEnd(wParam != FALSE);
    default:
      return FALSE;
  }
}

INT_PTR MainWindow::OnCommand(int dialogId, UINT code) {
  const auto id = ControlOfDialogId(dialogId);
  if (!id) return FALSE;
  const ControlKind kind = LayoutOf(*id).kind;
  if (kind == ControlKind::TextBox && code == EN_CHANGE) ShowsAll(ControlOf(*id));
  if (kind != ControlKind::Button && code == EN_SETFOCUS) {
    // Who types a number and presses Enter means to dial it; while it cannot be dialed, nothing is meant.
    MakeDefault(*id == ControlId::txtNumber ? ControlId::cmdWahl : ControlId::cmdSave);
  }
  if (showing_) return FALSE;
  if (kind == ControlKind::Button && code == BN_CLICKED) {
    // Enter and Esc come here even when the button that they stand for is disabled.
    if (IsWindowEnabled(ControlOf(*id)) != FALSE) input_->Click(*id);
  } else if (kind == ControlKind::TextBox && code == EN_CHANGE) {
    input_->Edit(*id, Utf8(TextOf(ControlOf(*id))));
  }
  return TRUE;
}

INT_PTR MainWindow::OnNotify(const NMHDR& header) {
  if (header.hwndFrom != ControlOf(ControlId::lstTAPI)) return FALSE;
  if (header.code == static_cast<UINT>(NM_SETFOCUS)) MakeDefault(ControlId::cmdSave);
  list_.OnNotify(header, *input_);
  return FALSE;
}

void MainWindow::MakeDefault(ControlId button) const {
  // A button that had the keyboard keeps Enter to itself when the mouse moves the keyboard elsewhere.
  SendMessageW(window_.Get(), DM_SETDEFID, static_cast<WPARAM>(DialogIdOf(button)), 0);
}

INT_PTR MainWindow::OnTimer(WPARAM number) {
  if (number >= TimerNumberOf(TimerId::Start0) && number <= TimerNumberOf(TimerId::Start2)) {
    input_->TimerTick(static_cast<TimerId>(number - TimerNumberOf(TimerId::Start0)));
  }
  return TRUE;
}

INT_PTR MainWindow::OnMoved() {
  if (showing_ || IsIconic(window_.Get()) != FALSE) return FALSE;
  RECT place{};
  GetWindowRect(window_.Get(), &place);
  input_->Moved(ToTwips(place.top, SystemDpi()), ToTwips(place.left, SystemDpi()));
  return FALSE;
}

INT_PTR MainWindow::OnResized(WPARAM how) {
  if (how == SIZE_MINIMIZED) return FALSE;
  if (SurplusNow() != surplus_) PlaceControls();
  if (showing_) return FALSE;
  RECT place{};
  GetWindowRect(window_.Get(), &place);
  input_->Resized(ToTwips(place.right - place.left, dpi_), ToTwips(place.bottom - place.top, dpi_));
  // The lower panels are there only while the window is higher than collapsed.
  for (const ControlId frame : {ControlId::frmInfo0, ControlId::frmInfo1}) ControlChanged(frame);
  return FALSE;
}

INT_PTR MainWindow::OnLimits(MINMAXINFO& limits) const {
  // Below these sizes something would be cut.
  limits.ptMinTrackSize = {LengthToPixels(kFormWidth, dpi_), LengthToPixels(kFormHeightCollapsed, dpi_)};
  return TRUE;
}

INT_PTR MainWindow::OnDpiChanged(unsigned dpi, const RECT* suggested) {
  const Scope scope(showing_);
  dpi_ = dpi;
  RECT place{};
  GetWindowRect(window_.Get(), &place);
  if (suggested != nullptr) place = *suggested;  // where the window stays under the mouse that drags it
  const FormWindow& form = controls_->form;
  SetWindowPos(window_.Get(), nullptr, place.left, place.top, LengthToPixels(form.Width(), dpi_),
               LengthToPixels(form.Height(), dpi_), SWP_NOZORDER | SWP_NOACTIVATE);
  Scale();
  return TRUE;
}

INT_PTR MainWindow::OnSettingChanged(WPARAM which) {
  if (which == SPI_SETNONCLIENTMETRICS) Scale();
  return FALSE;
}

INT_PTR MainWindow::OnColorsChanged() {
  list_.Recolored();
  return FALSE;
}

INT_PTR MainWindow::OnBoxColors(HDC context, HWND box) const {
  // Read-only boxes ask as labels do; they are to look like the text boxes that they are.
  if (box != ControlOf(ControlId::txtTestStatus) && box != ControlOf(ControlId::txtLineInfo)) return FALSE;
  SetTextColor(context, GetSysColor(COLOR_WINDOWTEXT));
  SetBkColor(context, GetSysColor(COLOR_WINDOW));
  return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
}

INT_PTR MainWindow::OnLostFocus(HWND control) const {
  if (IsChild(window_.Get(), control) == FALSE) return TRUE;
  const HWND focus = GetFocus();
  const bool elsewhere = focus != nullptr && focus != control && IsChild(window_.Get(), focus) != FALSE;
  if (elsewhere || IsWindowVisible(window_.Get()) == FALSE) return TRUE;
  const bool usable = IsWindowEnabled(control) != FALSE && IsWindowVisible(control) != FALSE;
  const HWND next = usable ? control : GetNextDlgTabItem(window_.Get(), control, FALSE);
  SendMessageW(window_.Get(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
  return TRUE;
}

INT_PTR MainWindow::OnSessionEnd(bool ends) {
  if (!ends) return FALSE;
  input_->CloseRequested(UnloadMode::SessionEnds);
  sessionEnded_();
  return TRUE;
}

}  // namespace fonklav
