#include "window/MainWindow.h"

#include <array>
#include <stdexcept>
#include <vector>

#include "app/Layout.h"
#include "platform/win32/WideText.h"
#include "util/Scope.h"
#include "window/ControlWindows.h"
#include "window/Dpi.h"
#include "window/WindowText.h"
#include "window/resources/ResourceIds.h"

// What the program shows: its controls are read and the dialog is changed to match.
namespace fonklav {
namespace {

/// A dialog without controls. Behind the head of a template stand its menu, its window class and its title; a zero word
/// each says that there is none, and must be there.
struct EmptyTemplate {
  DLGTEMPLATE head;
  std::array<WORD, 3> menuClassTitle;
};

constexpr DWORD kStyle = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_THICKFRAME | WS_CLIPCHILDREN;

/// For EnumDisplayMonitors. The work area, because a title bar under the task bar cannot be grasped.
BOOL CALLBACK AddScreen(HMONITOR monitor, HDC /*context*/, RECT* /*area*/, LPARAM screens) {
  MONITORINFO info{};
  info.cbSize = sizeof info;
  if (GetMonitorInfoW(monitor, &info) != FALSE) {
    const RECT& work = info.rcWork;
    reinterpret_cast<std::vector<PixelRect>*>(screens)->push_back({work.left, work.top, work.right, work.bottom});
  }
  return TRUE;
}

std::vector<PixelRect> Screens() {
  std::vector<PixelRect> screens;
  EnumDisplayMonitors(nullptr, nullptr, &AddScreen, reinterpret_cast<LPARAM>(&screens));
  return screens;
}

UniqueIcon LoadOwnIcon(HINSTANCE instance, int width, int height) {
  return UniqueIcon{static_cast<HICON>(
      LoadImageW(instance, MAKEINTRESOURCEW(IDI_FONKLAV), IMAGE_ICON, width, height, LR_DEFAULTCOLOR))};
}

}  // namespace

void MainWindow::Create(FormControls& controls, FormInput& input, std::function<void()> sessionEnded) {
  controls_ = &controls;
  input_ = &input;
  sessionEnded_ = std::move(sessionEnded);
  const EmptyTemplate empty{{kStyle, WS_EX_CONTROLPARENT, 0, 0, 0, 0, 0}, {}};
  const Scope scope(showing_);
  window_.Reset(CreateDialogIndirectParamW(instance_, &empty.head, nullptr, &DialogProc, 0));
  if (!window_) throw std::runtime_error("the window could not be made");
  // Only now: what CreateDialogIndirectParam itself sends finds nobody, and is the system's to handle.
  SetWindowLongPtrW(window_.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  dpi_ = DpiOf(window_.Get());
  KeepFromScaling(window_.Get());
  FormChanged();
}

void MainWindow::MakeControls() {
  // The list view's class, and the tooltip's, which comes with ICC_TAB_CLASSES.
  INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES};
  InitCommonControlsEx(&classes);
  accessibleNames_.emplace();
  for (const LayoutRow& row : Layout()) MakeControl(window_.Get(), row.id, *input_);
  list_.Attach(ControlOf(ControlId::lstTAPI));
  toolTip_.Attach(window_.Get(), instance_);
  MakeDefault(ControlId::cmdSave);
  Scale();
  for (const LayoutRow& row : Layout()) ControlChanged(row.id);
}

void MainWindow::Destroy() noexcept {
  controls_ = nullptr;
  input_ = nullptr;
  if (!window_) return;
  // What still arrives from here on finds nobody.
  SetWindowLongPtrW(window_.Get(), GWLP_USERDATA, 0);
  window_.Reset();
}

void MainWindow::SetIcons() {
  // WM_SETICON copies nothing, so the old icons go when the window shows the new ones.
  UniqueIcon big = LoadOwnIcon(instance_, SystemLength(SM_CXICON, dpi_), SystemLength(SM_CYICON, dpi_));
  UniqueIcon small = LoadOwnIcon(instance_, SystemLength(SM_CXSMICON, dpi_), SystemLength(SM_CYSMICON, dpi_));
  SendMessageW(window_.Get(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(big.Get()));
  SendMessageW(window_.Get(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(small.Get()));
  bigIcon_ = std::move(big);
  smallIcon_ = std::move(small);
}

void MainWindow::Scale() {
  SetIcons();
  const LOGFONTW description = MessageFont(dpi_);
  UniqueFont font{CreateFontIndirectW(&description)};
  SetFonts(window_.Get(), font.Get());
  font_ = std::move(font);  // WM_SETFONT copies nothing: the old one goes when no control uses it any more
  PlaceControls();
  list_.Rescaled(dpi_);
  toolTip_.Rescaled(dpi_);
}

void MainWindow::PlaceControls() {
  surplus_ = SurplusNow();
  PlaceAll(window_.Get(), dpi_, surplus_);
  list_.Resized();
  RedrawWindow(window_.Get(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void MainWindow::ControlChanged(ControlId id) {
  if (!HasControls()) return;
  const Scope scope(showing_);
  if (id == ControlId::lstTAPI) list_.Show(controls_->lstTAPI.Entries());
  // What stands in a frame is no child of it, so Windows does not hide or show it with the frame.
  for (const LayoutRow& row : Layout()) {
    if (row.id == id) {
      ShowControl(row);
    } else if (row.frame == id) {
      ShowState(row);
    }
  }
}

void MainWindow::ShowControl(const LayoutRow& row) {
  if (row.kind != ControlKind::CheckList) ShowContent(row, (*controls_)[row.id]);
  ShowState(row);
}

void MainWindow::ShowContent(const LayoutRow& row, const Control& control) {
  const HWND window = ControlOf(row.id);
  const std::wstring text = Wide(control.Text());
  if (row.kind == ControlKind::TextBox) {
    ShowOneLine(window, text);
  } else {
    ShowText(window, text);
  }
  if (row.id == ControlId::txtSettVW) toolTip_.Show(window, Wide(controls_->ToolTip()));
  NameBoxes(row.id, text);
}

void MainWindow::TextAppended(ControlId id, const std::string& added) {
  if (!HasControls()) return;
  const Scope scope(showing_);
  AppendText(ControlOf(id), Wide(added));
}

void MainWindow::NameBoxes(ControlId label, const std::wstring& caption) const {
  std::wstring name = caption;
  std::erase(name, L'&');  // the mark of the access key
  for (const LayoutRow& row : Layout()) {
    if (LabelOf(row.id) == label) accessibleNames_->Set(ControlOf(row.id), name);
  }
}

void MainWindow::ShowState(const LayoutRow& row) {
  const HWND control = ControlOf(row.id);
  const bool enabled = (*controls_)[row.id].Enabled();
  const bool shown = IsShown(*controls_, row.id);
  const bool hadFocus = GetFocus() == control;
  if ((IsWindowEnabled(control) != FALSE) != enabled) EnableWindow(control, enabled ? TRUE : FALSE);
  ShowWindow(control, shown ? SW_SHOWNA : SW_HIDE);
  // Where the control with the focus is disabled, no other gets it, and the keyboard is dead until somebody moves it.
  // That is done by a posted message, and not here, because the program may enable the control again at once.
  if (hadFocus && !(enabled && shown)) {
    PostMessageW(window_.Get(), kLostFocusMessage, 0, reinterpret_cast<LPARAM>(control));
  }
}

void MainWindow::FormChanged() {
  if (controls_ == nullptr) return;
  const Scope scope(showing_);
  ShowText(window_.Get(), Wide(controls_->form.Caption()));
  if (controls_->form.Visible()) Place();  // screens are asked for when there is something to see on them
  for (const ControlId frame : {ControlId::frmInfo0, ControlId::frmInfo1}) ControlChanged(frame);
  ShowForm(controls_->form.Visible());
}

PixelRect MainWindow::WantedPlace() const {
  const FormWindow& form = controls_->form;
  const int left = PositionToPixels(form.Left(), SystemDpi());
  const int top = PositionToPixels(form.Top(), SystemDpi());
  return {left, top, left + LengthToPixels(form.Width(), dpi_), top + LengthToPixels(form.Height(), dpi_)};
}

Surplus MainWindow::SurplusNow() const {
  RECT place{};
  GetWindowRect(window_.Get(), &place);
  return SurplusOf(place.right - place.left, place.bottom - place.top, dpi_);
}

void MainWindow::Place() {
  // A minimised window is kept off the screen; ComeToFront places it when it is restored.
  if (IsIconic(window_.Get()) != FALSE) return;
  const int titleHeight = SystemLength(SM_CYCAPTION, dpi_) + SystemLength(SM_CYSIZEFRAME, dpi_);
  const PixelRect place = Reachable(WantedPlace(), titleHeight, Screens());
  SetWindowPos(window_.Get(), nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void MainWindow::ShowForm(bool visible) {
  if ((IsWindowVisible(window_.Get()) != FALSE) == visible) return;
  if (!visible) {
    ShowWindow(window_.Get(), SW_HIDE);
    return;
  }
  if (!HasControls()) MakeControls();
  // Not by ShowWindow: the first call of it in a process does what the starter has put into STARTUPINFO (wShowWindow),
  // which may be to hide.
  SetWindowPos(window_.Get(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
  ComeToFront();
}

void MainWindow::ComeToFront() {
  if (controls_ == nullptr || !controls_->form.Visible()) return;
  const Scope scope(showing_);
  if (IsIconic(window_.Get()) != FALSE) {
    ShowWindow(window_.Get(), SW_RESTORE);
    Place();  // the form may have changed while there was nothing to place
  }
  Raise();
  const bool usable = IsWindowEnabled(window_.Get()) != FALSE;  // not while a message box waits for its answer
  if (usable && IsChild(window_.Get(), GetFocus()) == FALSE) FocusTo(ControlId::lstTAPI);
}

void MainWindow::Raise() const {
  const HWND front = GetLastActivePopup(window_.Get());  // the window, or its message box
  SetForegroundWindow(front);
  if (GetForegroundWindow() == front) return;
  // SetForegroundWindow is refused to a program that neither has the foreground nor was given it by the one that has.
  // The keyboard stays there; but as a topmost window, and then as a normal one again, the window comes on top.
  for (const HWND place : {HWND_TOPMOST, HWND_NOTOPMOST}) {
    SetWindowPos(window_.Get(), place, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  }
}

void MainWindow::TimerChanged(TimerId id) {
  if (controls_ == nullptr) return;
  const Timer& timer = controls_->tmStart.at(static_cast<std::size_t>(id));
  // SetTimer with the number of a running timer starts that one anew.
  if (timer.Enabled()) {
    SetTimer(window_.Get(), TimerNumberOf(id), timer.Interval(), nullptr);
  } else {
    KillTimer(window_.Get(), TimerNumberOf(id));
  }
}

void MainWindow::FocusTo(ControlId id) {
  // SetFocus would go past the dialog, which moves the default button's border along and selects what a box holds.
  SendMessageW(window_.Get(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(ControlOf(id)), TRUE);
}

void MainWindow::Unloaded() {
  // The form may unload from inside a message of one of the controls, and the system's code goes on with that control
  // afterwards. So the window only hides here, deaf from now on; it goes when the message loop has ended.
  for (std::size_t timer = 0; timer < kTimerCount; ++timer) {
    KillTimer(window_.Get(), TimerNumberOf(static_cast<TimerId>(timer)));
  }
  SetWindowLongPtrW(window_.Get(), GWLP_USERDATA, 0);
  controls_ = nullptr;
  input_ = nullptr;
  ShowWindow(window_.Get(), SW_HIDE);
  PostQuitMessage(0);
}

HWND MainWindow::ControlOf(ControlId id) const { return GetDlgItem(window_.Get(), DialogIdOf(id)); }

bool MainWindow::Takes(MSG& message) const { return window_ && IsDialogMessageW(window_.Get(), &message) != FALSE; }

HWND MainWindow::BoxOwner() const {
  const bool seen = window_ && IsWindowVisible(window_.Get()) != FALSE && IsIconic(window_.Get()) == FALSE;
  return seen ? window_.Get() : nullptr;
}

}  // namespace fonklav
