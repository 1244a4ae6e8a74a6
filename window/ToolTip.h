#pragma once

#include <windows.h>

#include <string>

namespace fonklav {

/// The tooltip of one of a dialog's controls. Without a window of the system's class nothing fails: there is no
/// tooltip.
class ToolTip {
 public:
  /// Makes the tooltip window. The dialog owns it, so Windows destroys it with the dialog.
  void Attach(HWND dialog, HINSTANCE instance);
  /// The screen has `dpi` dots per inch now.
  void Rescaled(unsigned dpi) const;
  /// Gives the control this tooltip; none when the text is empty.
  void Show(HWND control, std::wstring text);

 private:
  HWND window_{nullptr};  ///< not owned: the dialog's
  std::wstring shown_;    ///< the text that the tooltip has now
};

}  // namespace fonklav
