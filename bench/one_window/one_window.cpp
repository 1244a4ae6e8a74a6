#include <windows.h>

#include <cwchar>

/// Makes one window, hidden as the dialer's is, and handles the messages that come of it. With the argument "stay" it
/// waits for more; otherwise it ends, and in the shortest way, so that the start is what a clock sees.
int WINAPI wWinMain(HINSTANCE instance, HINSTANCE /*previous*/, PWSTR arguments, int /*show*/) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = &DefWindowProcW;
  windowClass.hInstance = instance;
  windowClass.lpszClassName = L"OneWindow";
  RegisterClassW(&windowClass);
  const HWND window = CreateWindowExW(0, windowClass.lpszClassName, L"One window", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                                      CW_USEDEFAULT, 400, 300, nullptr, nullptr, instance, nullptr);
  if (window == nullptr) return 1;
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageW(&message);
  if (std::wcscmp(arguments, L"stay") != 0) TerminateProcess(GetCurrentProcess(), 0);
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  return 0;
}
