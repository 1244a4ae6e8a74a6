#include "platform/win32/MainWindow.h"

#include <array>
#include <stdexcept>
#include <vector>

#include "platform/win32/ControlLabels.h"
#include "platform/win32/ControlWindows.h"
#include "platform/win32/Dpi.h"
#include "platform/win32/Scope.h"
#include "platform/win32/WideText.h"
#include "platform/win32/WindowMessageNumbers.h"
#include "platform/win32/WindowText.h"
#include "platform/win32/resources/ResourceIds.h"

// What the program shows: its controls are read and the dialog is changed to match.
namespace fonklav {
namespace {

/// A dialog without controls, menu or title; the zeros behind the head are those three's and must be there.
struct EmptyTemplate {
  DLGTEMPLATE head;
  std::array<WORD, 3> menuClassTitle;
};

constexpr DWORD kStyle = WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_THICKFRAME | WS_CLIPCHILDREN;

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

MainWindow::MainWindow(HINSTANCE instance) : instance_(instance) {
  INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES};
  InitCommonControlsEx(&classes);
}

void MainWindow::Create(FormControls& controls, FormInput& input, std::function<void()> sessionEnded) {
  controls_ = &controls;
  input_ = &input;
  sessionEnded_ = std::move(sessionEnded);
  const EmptyTemplate empty{{kStyle, WS_EX_CONTROLPARENT, 0, 0, 0, 0, 0}, {}};
  const Scope scope(showing_);
  window_.Reset(CreateDialogIndirectParamW(instance_, &empty.head, nullptr, &DialogProc, 0));
  if (!window_) throw std::runtime_error("the window could not be made");
  SetWindowLongPtrW(window_.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  dpi_ = DpiOf(window_.Get());
  KeepFromScaling(window_.Get());
  SetIcons();
  MakeControls();
  Scale();
  for (const LayoutRow& row : Layout()) ControlChanged(row.id);
  FormChanged();
}

void MainWindow::MakeControls() {
  for (const LayoutRow& row : Layout()) MakeControl(window_.Get(), row.id, *input_);
  list_.Attach(ControlOf(ControlId::lstTAPI));
  toolTip_.Attach(window_.Get(), instance_);
  MakeOkTheDefault();
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
  bigIcon_ = LoadOwnIcon(instance_, GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON));
  smallIcon_ = LoadOwnIcon(instance_, GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON));
  SendMessageW(window_.Get(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(bigIcon_.Get()));
  SendMessageW(window_.Get(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(smallIcon_.Get()));
}

void MainWindow::Scale() {
  const LOGFONTW description = MessageFont(dpi_);
  UniqueFont font{CreateFontIndirectW(&description)};
  PlaceAll(window_.Get(), dpi_, font.Get());
  font_ = std::move(font);  // the old one goes when no control uses it any more
  list_.Rescaled();
  RedrawWindow(window_.Get(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void MainWindow::ControlChanged(ControlId id) {
  if (controls_ == nullptr) return;
  const Scope scope(showing_);
  if (id == ControlId::lstTAPI) list_.Show(controls_->lstTAPI.Entries());
  // A frame takes what stands in it along.
  for (const LayoutRow& row : Layout()) {
    if (row.id == id || row.frame == id) ShowControl(row);
  }
}

void MainWindow::ShowControl(const LayoutRow& row) {
  const HWND window = ControlOf(row.id);
  const Control* const control = controls_->Find(row.id);
  if (control != nullptr) {
    const std::wstring text = Wide(control->Text());
    if (row.id == ControlId::txtTestStatus) {
      ShowGrowingText(window, text);
    } else {
      ShowText(window, row.kind == ControlKind::TextBox ? OneLine(text) : text);
    }
    toolTip_.Show(window, Wide(control->ToolTip()));
    NameBoxes(row.id, text);
  }
  ShowState(window, control == nullptr || control->Enabled(), IsShown(*controls_, row.id));
}

void MainWindow::NameBoxes(ControlId label, const std::wstring& caption) const {
  std::wstring name = caption;
  std::erase(name, L'&');
  for (const LayoutRow& row : Layout()) {
    if (LabelOf(row.id) == label) accessibleNames_.Set(ControlOf(row.id), name);
  }
}

void MainWindow::ShowState(HWND control, bool enabled, bool shown) {
  const bool hadFocus = GetFocus() == control;
  if ((IsWindowEnabled(control) != FALSE) != enabled) EnableWindow(control, enabled ? TRUE : FALSE);
  ShowWindow(control, shown ? SW_SHOWNA : SW_HIDE);
  // The keyboard must not stay with a control that takes no keys. Later: the program may enable it again at once.
  if (hadFocus && !(enabled && shown)) {
    PostMessageW(window_.Get(), kLostFocusMessage, 0, reinterpret_cast<LPARAM>(control));
  }
}

void MainWindow::FormChanged() {
  if (controls_ == nullptr) return;
  const Scope scope(showing_);
  ShowText(window_.Get(), Wide(controls_->form.Caption()));
  Place();
  for (const ControlId frame : {ControlId::frmInfo0, ControlId::frmInfo1}) ControlChanged(frame);
  ShowForm(controls_->form.Visible());
}

PixelRect MainWindow::WantedPlace() const {
  const FormWindow& form = controls_->form;
  const int left = PositionToPixels(form.Left(), SystemDpi());
  const int top = PositionToPixels(form.Top(), SystemDpi());
  return {left, top, left + LengthToPixels(form.Width(), dpi_), top + LengthToPixels(form.Height(), dpi_)};
}

void MainWindow::Place() {
  if (IsIconic(window_.Get()) != FALSE) return;
  const int titleHeight = GetSystemMetrics(SM_CYCAPTION) + GetSystemMetrics(SM_CYSIZEFRAME);
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
  // Not by ShowWindow: its first call does what the program's starter has asked for, which may be to hide.
  SetWindowPos(window_.Get(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
  if (IsIconic(window_.Get()) != FALSE) ShowWindow(window_.Get(), SW_RESTORE);
  SetForegroundWindow(window_.Get());
  if (IsChild(window_.Get(), GetFocus()) == FALSE) FocusTo(ControlId::lstTAPI);
}

void MainWindow::TimerChanged(TimerId id) {
  if (controls_ == nullptr) return;
  const Timer& timer = controls_->Find(id);
  if (timer.Enabled()) {
    SetTimer(window_.Get(), TimerNumberOf(id), timer.Interval(), nullptr);
  } else {
    KillTimer(window_.Get(), TimerNumberOf(id));
  }
}

void MainWindow::FocusTo(ControlId id) {
  SendMessageW(window_.Get(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(ControlOf(id)), TRUE);
}

void MainWindow::Unloaded() {
  // The form may unload from inside a message of one of the controls: the window only hides here, deaf from now on, and
  // goes when the message loop has ended.
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
  return window_ && IsWindowVisible(window_.Get()) != FALSE ? window_.Get() : nullptr;
}

}  // namespace fonklav
