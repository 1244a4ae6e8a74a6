#pragma once

#include <windows.h>

#include <functional>
#include <optional>

#include "app/FormView.h"
#include "app/Layout.h"
#include "platform/win32/Handles.h"
#include "window/AccessibleNames.h"
#include "window/CheckListWindow.h"
#include "window/ToolTip.h"

namespace fonklav {

/// Posted to the dialog when the control in lParam had the keyboard while it was disabled or hidden.
inline constexpr UINT kLostFocusMessage = WM_APP;

/// The number of a timer for SetTimer, which wants one other than 0.
[[nodiscard]] constexpr UINT_PTR TimerNumberOf(TimerId id) { return static_cast<UINT_PTR>(id) + 1; }

/// The dialer's window: a dialog with the controls of the layout. It shows what the program's controls hold and tells
/// the program what the user does. What the program changes is never told back to it.
///
/// It is a dialog, and not a window of a class of its own, for the sake of IsDialogMessage: Tab, Enter, Esc, access
/// keys and the default button come with it. It is made from an empty template, because a template's lengths are dialog
/// units of one font, and those of this window are twips. Messages for the user's eyes go by the W functions
/// throughout.
class MainWindow final : public FormView {
 public:
  explicit MainWindow(HINSTANCE instance) : instance_(instance) {}
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;
  ~MainWindow() override { Destroy(); }

  /// Makes the window, hidden and empty: its controls are made when it is shown first, which in the service of the main
  /// program may be never. `controls` and `input` must live until Destroy or until the form has unloaded.
  /// `sessionEnded` is called when Windows ends the session, after the form has unloaded; the process may end as soon
  /// as it returns. Throws std::runtime_error when the system refuses.
  void Create(FormControls& controls, FormInput& input, std::function<void()> sessionEnded);
  /// Takes the window away; the program hears no more of it. May be called again.
  void Destroy() noexcept;

  /// Gives the message to the dialog and says whether it was the dialog's: Tab, Enter, Esc, access keys, and any other
  /// message for the window or its controls. IsDialogMessage has translated and dispatched it then.
  [[nodiscard]] bool Takes(MSG& message) const;
  /// The window where a message box is to appear: this one when the user sees it, null otherwise.
  [[nodiscard]] HWND BoxOwner() const;

  void ControlChanged(ControlId id) override;
  void TextAppended(ControlId id, const std::string& added) override;
  void FormChanged() override;
  void TimerChanged(TimerId id) override;
  void FocusTo(ControlId id) override;
  void ComeToFront() override;
  void Unloaded() override;

 private:
  static INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR OnCommand(int dialogId, UINT code);
  INT_PTR OnNotify(const NMHDR& header);
  INT_PTR OnTimer(WPARAM number);
  INT_PTR OnMoved();
  INT_PTR OnResized(WPARAM how);
  INT_PTR OnLimits(MINMAXINFO& limits) const;
  INT_PTR OnDpiChanged(unsigned dpi, const RECT* suggested);
  INT_PTR OnSettingChanged(WPARAM which);
  INT_PTR OnColorsChanged();
  INT_PTR OnBoxColors(HDC context, HWND box) const;
  INT_PTR OnLostFocus(HWND control) const;
  INT_PTR OnSessionEnd(bool ends);

  [[nodiscard]] bool HasControls() const { return controls_ != nullptr && accessibleNames_.has_value(); }
  void MakeControls();
  void MakeDefault(ControlId button) const;
  void Scale();
  void PlaceControls();
  void SetIcons();
  void ShowControl(const LayoutRow& row);
  void ShowContent(const LayoutRow& row, const Control& control);
  void NameBoxes(ControlId label, const std::wstring& caption) const;
  void ShowState(const LayoutRow& row);
  void Place();
  void Raise() const;
  void ShowForm(bool visible);
  [[nodiscard]] HWND ControlOf(ControlId id) const;
  [[nodiscard]] PixelRect WantedPlace() const;
  [[nodiscard]] Surplus SurplusNow() const;

  HINSTANCE instance_;
  FormControls* controls_{nullptr};  ///< not owned; null before Create and once the form has unloaded
  FormInput* input_{nullptr};
  std::function<void()> sessionEnded_;  ///< called when Windows ends the session
  UniqueFont font_;
  UniqueIcon bigIcon_;
  UniqueIcon smallIcon_;
  UniqueWindow window_;  ///< goes before the font and the icons that it shows
  CheckListWindow list_;
  ToolTip toolTip_;
  std::optional<AccessibleNames> accessibleNames_;  ///< from the first showing on, as the controls are
  Surplus surplus_;                                 ///< by which the controls are placed
  unsigned dpi_{kNormalDpi};                        ///< of the screen that shows the window
  bool showing_{false};  ///< the program's changes are being shown: what the controls say meanwhile is no user's doing
};

}  // namespace fonklav
