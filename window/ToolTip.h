#pragma once

#include <windows.h>

#include <map>
#include <string>

namespace fonklav {

/// The tooltips of a dialog's controls.
class ToolTip {
 public:
  /// Makes the tooltip window, which goes with the dialog.
  void Attach(HWND dialog, HINSTANCE instance);
  /// The screen has this resolution now.
  void Rescaled(unsigned dpi) const;
  /// Gives the control this tooltip; none when the text is empty.
  void Show(HWND control, const std::wstring& text);

 private:
  HWND window_{nullptr};  ///< not owned: the dialog's
  std::map<HWND, std::wstring> shown_;
};

}  // namespace fonklav
