#pragma once

#include <windows.h>

#include <string>

namespace fonklav {

/// The tooltip of one of a dialog's controls.
class ToolTip {
 public:
  /// Makes the tooltip window, which goes with the dialog.
  void Attach(HWND dialog, HINSTANCE instance);
  /// The screen has this resolution now.
  void Rescaled(unsigned dpi) const;
  /// Gives the control this tooltip; none when the text is empty.
  void Show(HWND control, std::wstring text);

 private:
  HWND window_{nullptr};  ///< not owned: the dialog's
  std::wstring shown_;
};

}  // namespace fonklav
