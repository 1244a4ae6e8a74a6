#pragma once

#include <functional>

namespace fonklav {

/// The thread's message loop.
class MessageLoop {
 public:
  MessageLoop() = default;
  MessageLoop(const MessageLoop&) = delete;
  MessageLoop& operator=(const MessageLoop&) = delete;
  virtual ~MessageLoop() = default;

  /// Runs `work` from the loop, after everything that is running now has returned. Work that is still waiting when the
  /// loop ends is destroyed without being run.
  virtual void Post(std::function<void()> work) = 0;
};

}  // namespace fonklav
