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
  /// `instance` is the module that holds the icons.
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
  // The messages that the window deals with, a handler each; TRUE ends a message here, FALSE leaves it to the system.
  static INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR OnCommand(int dialogId, UINT code);
  INT_PTR OnNotify(const NMHDR& header);
  INT_PTR OnTimer(WPARAM number);
  INT_PTR OnMoved();
  INT_PTR OnResized(WPARAM how);
  /// WM_GETMINMAXINFO: the window gets no smaller than its layout.
  INT_PTR OnLimits(MINMAXINFO& limits) const;
  INT_PTR OnDpiChanged(unsigned dpi, const RECT* suggested);
  INT_PTR OnSettingChanged(WPARAM which);
  INT_PTR OnColorsChanged();
  /// WM_CTLCOLORSTATIC: read-only boxes look like boxes, not like labels.
  INT_PTR OnBoxColors(HDC context, HWND box) const;
  /// Moves the keyboard on where the control that had it can no longer use it.
  INT_PTR OnLostFocus(HWND control) const;
  INT_PTR OnSessionEnd(bool ends);

  [[nodiscard]] bool HasControls() const { return controls_ != nullptr && accessibleNames_.has_value(); }
  void MakeControls();
  /// The button that Enter presses.
  void MakeDefault(ControlId button) const;
  /// Font, icons and places anew for the dpi of the screen.
  void Scale();
  void PlaceControls();
  void SetIcons();
  void ShowControl(const LayoutRow& row);
  void ShowContent(const LayoutRow& row, const Control& control);
  /// Gives a label's caption, as their name, to the boxes that have none of their own: screen readers read it.
  void NameBoxes(ControlId label, const std::wstring& caption) const;
  void ShowState(const LayoutRow& row);
  /// Moves the window to where the form wants it.
  void Place();
  void Raise() const;
  void ShowForm(bool visible);
  [[nodiscard]] HWND ControlOf(ControlId id) const;
  [[nodiscard]] PixelRect WantedPlace() const;
  [[nodiscard]] Surplus SurplusNow() const;

  HINSTANCE instance_;
  FormControls* controls_{nullptr};  ///< not owned; null before Create and once the form has unloaded
  FormInput* input_{nullptr};
  std::function<void()> sessionEnded_;
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
