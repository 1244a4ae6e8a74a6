#pragma once

#include <windows.h>

#include <functional>

#include "platform/MessageBoxes.h"

namespace fonklav {

/// The system's message box, in front of the form where that is shown.
class Win32MessageBoxes final : public MessageBoxes {
 public:
  /// `owner` is asked each time for the window that the box belongs to; null is none.
  explicit Win32MessageBoxes(std::function<HWND()> owner) : owner_(std::move(owner)) {}

  std::int32_t Show(const std::string& prompt, std::uint32_t style, const std::string& title) override;

 private:
  std::function<HWND()> owner_;
};

}  // namespace fonklav
