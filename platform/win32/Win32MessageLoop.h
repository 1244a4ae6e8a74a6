#pragma once

#include <windows.h>

#include <deque>
#include <functional>

#include "platform/Ports.h"

namespace fonklav {

/// The message loop of the thread that makes this object. Message boxes and drivers' dialogs run message loops of their
/// own, inside the call that shows them. Posted work must not be done there, where the handler that posted it may still
/// be running; so it is no message but a queue, which this loop alone looks at, between two messages.
class Win32MessageLoop final : public MessageLoop {
 public:
  void Post(std::function<void()> work) override;

  /// Handles messages until the thread is told to quit. `takes` sees each message first and says whether it has dealt
  /// with it: it is the place for IsDialogMessage, whose messages must not be translated or dispatched once more.
  void Run(const std::function<bool(MSG&)>& takes);

  /// Whether the loop is inside GetMessage. A message that the system or another program sends, not posts, is handled
  /// there too: while this is true, no handler of the program is interrupted by it.
  [[nodiscard]] bool Waiting() const { return waiting_; }

 private:
  bool NextMessage(MSG& message);
  void DoPostedWork();

  DWORD thread_{GetCurrentThreadId()};
  std::deque<std::function<void()>> work_;
  bool waiting_{false};
};

}  // namespace fonklav
