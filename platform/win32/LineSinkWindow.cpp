#include "platform/win32/LineSinkWindow.h"

#include <array>
#include <cstring>

namespace fonklav {
namespace {

constexpr const char* kClassName = "FonklavTAPI.Lines";

BOOL CALLBACK FindOurs(HWND window, LPARAM found) {
  std::array<char, 64> name{};
  GetClassNameA(window, name.data(), static_cast<int>(name.size()));
  if (std::strcmp(name.data(), kClassName) != 0) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

}  // namespace

void LineSinkWindow::Remember(LineMessageSink& sink, HINSTANCE instance) {
  if (!window_) {
    WNDCLASSEXA windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = &DefWindowProcA;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = kClassName;
    RegisterClassExA(&windowClass);  // a second registration of the same class is refused, and not needed
    window_.Reset(CreateWindowExA(0, kClassName, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance, nullptr));
  }
  SetWindowLongPtrA(window_.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&sink));
}

void LineSinkWindow::Forget() noexcept {
  if (!window_) return;
  SetWindowLongPtrA(window_.Get(), GWLP_USERDATA, 0);
  window_.Reset();
}

LineMessageSink* LineSinkWindow::OfThisThread() noexcept {
  HWND window = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), &FindOurs, reinterpret_cast<LPARAM>(&window));
  return window == nullptr ? nullptr : reinterpret_cast<LineMessageSink*>(GetWindowLongPtrA(window, GWLP_USERDATA));
}

}  // namespace fonklav
