#pragma once

#include <windows.h>

#include <deque>
#include <functional>

#include "platform/Ports.h"

namespace fonklav {

/// The message loop of the thread that makes this object. Posted work is done between two messages of this loop alone,
/// never in the loop of a message box or a driver's dialog: there the handler that posted it may still be running.
class Win32MessageLoop final : public MessageLoop {
 public:
  void Post(std::function<void()> work) override;

  /// Handles messages until the thread is told to quit. `takes` sees each message first and says whether it has dealt
  /// with it.
  void Run(const std::function<bool(MSG&)>& takes);

  /// Whether the loop is waiting for its next message, so that no handler of the program is running beneath a message
  /// that another program has sent.
  [[nodiscard]] bool Waiting() const { return waiting_; }

 private:
  bool NextMessage(MSG& message);
  void DoPostedWork();

  DWORD thread_{GetCurrentThreadId()};
  std::deque<std::function<void()>> work_;
  bool waiting_{false};
};

}  // namespace fonklav
