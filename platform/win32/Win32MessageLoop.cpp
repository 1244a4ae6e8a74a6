#include "platform/win32/Win32MessageLoop.h"

#include <utility>

namespace fonklav {

void Win32MessageLoop::Post(std::function<void()> work) {
  work_.push_back(std::move(work));
  // GetMessage does not return for a sent message, in which the work may have been posted; this wakes it. A message to
  // a thread has no window, so the loop of a message box loses it. That does no harm: this loop looks at its work after
  // every message, whichever it is.
  PostThreadMessageW(thread_, WM_NULL, 0, 0);
}

void Win32MessageLoop::Run(const std::function<bool(MSG&)>& takes) {
  DoPostedWork();
  for (MSG message{}; NextMessage(message); DoPostedWork()) {
    if (takes(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

bool Win32MessageLoop::NextMessage(MSG& message) {
  waiting_ = true;
  const BOOL result = GetMessageW(&message, nullptr, 0, 0);
  waiting_ = false;
  return result > 0;  // 0 is WM_QUIT, -1 a failure, which ends the loop as well
}

void Win32MessageLoop::DoPostedWork() {
  while (!work_.empty()) {
    const std::function<void()> work = std::move(work_.front());
    work_.pop_front();
    work();
  }
}

}  // namespace fonklav
