#pragma once

#include <optional>

#include "platform/win32/Handles.h"

namespace fonklav {

/// Whoever has a hidden window gets its messages here.
class WindowMessages {
 public:
  WindowMessages() = default;
  WindowMessages(const WindowMessages&) = delete;
  WindowMessages& operator=(const WindowMessages&) = delete;
  virtual ~WindowMessages() = default;

  /// The message's result, or nothing for a message that the system is to handle.
  virtual std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
};

/// A top-level window that is never shown, registered with the 8-bit functions, so that the texts of its messages are
/// bytes of the code page whatever the other side is.
class HiddenWindow {
 public:
  HiddenWindow() = default;
  HiddenWindow(const HiddenWindow&) = delete;
  HiddenWindow& operator=(const HiddenWindow&) = delete;
  ~HiddenWindow() { Destroy(); }

  /// Makes the window unless it is there already; false when the system refuses. `messages` must outlive it.
  bool Create(const char* className, HINSTANCE instance, WindowMessages& messages);
  void Destroy() noexcept;

  [[nodiscard]] HWND Get() const { return window_.Get(); }

 private:
  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

  UniqueWindow window_;
};

}  // namespace fonklav
