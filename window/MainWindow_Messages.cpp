#include "platform/win32/WideText.h"
#include "util/Scope.h"
#include "window/ControlWindows.h"
#include "window/Dpi.h"
#include "window/MainWindow.h"
#include "window/WindowText.h"

// What the user and the system do to the window: each message goes to the program under its own name. The program may
// have unloaded, and may be gone, when a call of it returns.
namespace fonklav {

// A dialog procedure says whether it has handled a message: FALSE leaves it to the system. The answer to the message
// itself would go into DWLP_MSGRESULT, but for a few messages, WM_CTLCOLORSTATIC among them, whose answer is returned
// as it is.
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
    case WM_CLOSE:  // left to the system it would become a click on IDCANCEL, which gives up the user's edits
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
  // EN_CHANGE follows every change of a one-line box, the program's as well.
  if (kind == ControlKind::TextBox && code == EN_CHANGE) ShowsAll(ControlOf(*id));
  if (kind != ControlKind::Button && code == EN_SETFOCUS) {
    // Who types a number and presses Enter means to dial it; while it cannot be dialed, nothing is meant.
    MakeDefault(*id == ControlId::txtNumber ? ControlId::cmdWahl : ControlId::cmdSave);
  }
  if (showing_) return FALSE;
  if (kind == ControlKind::Button && code == BN_CLICKED) {
    // IsDialogMessage sends what Enter and Esc stand for whether or not that button is enabled.
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
  // A push button is the default while it has the focus. A click of the mouse on a box or the list is no move of the
  // dialog's, and leaves the default with the button.
  SendMessageW(window_.Get(), DM_SETDEFID, static_cast<WPARAM>(DialogIdOf(button)), 0);
}

INT_PTR MainWindow::OnTimer(WPARAM number) {
  if (number >= TimerNumberOf(TimerId::Start0) && number <= TimerNumberOf(TimerId::Start2)) {
    input_->TimerTick(static_cast<TimerId>(number - TimerNumberOf(TimerId::Start0)));
  }
  return TRUE;
}

INT_PTR MainWindow::OnMoved() {
  // WM_MOVE tells where the inner area is, and the form keeps the place of the whole window. A minimised window is
  // moved off the screen, which is no place to store.
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
  // Below these sizes something would be cut. Windows keeps to them also when the program itself sets a size.
  limits.ptMinTrackSize = {LengthToPixels(kFormWidth, dpi_), LengthToPixels(kFormHeightCollapsed, dpi_)};
  return TRUE;
}

INT_PTR MainWindow::OnDpiChanged(unsigned dpi, const RECT* suggested) {
  const Scope scope(showing_);
  dpi_ = dpi;
  RECT place{};
  GetWindowRect(window_.Get(), &place);
  // The suggested place keeps the window under the mouse that drags it. Its size is a rounded product of the old
  // pixels; ours comes from the twips each time, so that nothing adds up on the way from screen to screen and back.
  if (suggested != nullptr) place = *suggested;
  const FormWindow& form = controls_->form;
  SetWindowPos(window_.Get(), nullptr, place.left, place.top, LengthToPixels(form.Width(), dpi_),
               LengthToPixels(form.Height(), dpi_), SWP_NOZORDER | SWP_NOACTIVATE);
  Scale();
  return TRUE;
}

INT_PTR MainWindow::OnSettingChanged(WPARAM which) {
  // The message font is part of these metrics.
  if (which == SPI_SETNONCLIENTMETRICS) Scale();
  return FALSE;
}

INT_PTR MainWindow::OnColorsChanged() {
  list_.Recolored();
  return FALSE;
}

INT_PTR MainWindow::OnBoxColors(HDC context, HWND box) const {
  // A read-only edit control asks for its colours by WM_CTLCOLORSTATIC, as a label does, and would be grey like one.
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
  // FALSE in wParam: another program has refused the end. Once this has returned for an end, the process may be ended
  // at any moment, so everything has to be done before.
  if (!ends) return FALSE;
  input_->CloseRequested(UnloadMode::SessionEnds);
  sessionEnded_();
  return TRUE;
}

}  // namespace fonklav
