#include "platform/win32/HiddenWindow.h"

namespace fonklav {

bool HiddenWindow::Create(const char* className, HINSTANCE instance, WindowMessages& messages) {
  if (window_) return true;
  WNDCLASSEXA windowClass{};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = &WindowProc;
  windowClass.hInstance = instance;
  windowClass.lpszClassName = className;
  RegisterClassExA(&windowClass);  // a second registration of the same class is refused, and not needed
  window_.Reset(CreateWindowExA(0, className, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr));
  if (!window_) return false;
  SetWindowLongPtrA(window_.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&messages));
  return true;
}

void HiddenWindow::Destroy() noexcept {
  // What still arrives from here on finds nobody.
  if (window_) SetWindowLongPtrA(window_.Get(), GWLP_USERDATA, 0);
  window_.Reset();
}

LRESULT CALLBACK HiddenWindow::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  try {
    auto* const messages = reinterpret_cast<WindowMessages*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (messages != nullptr) {
      if (const auto result = messages->OnMessage(message, wParam, lParam)) return *result;
    }
  } catch (...) {
    // Nothing may be thrown through the system's code. What throws here is want of memory; the message counts as lost.
    return 0;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace fonklav
