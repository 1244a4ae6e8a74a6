#pragma once

#include <deque>
#include <functional>
#include <utility>

#include "platform/MessageLoop.h"

namespace fonklav::test {

/// A message loop that runs when the test says so.
class FakeMessageLoop : public MessageLoop {
 public:
  void Post(std::function<void()> work) override { posted.push_back(std::move(work)); }

  void Run() {
    while (!posted.empty()) {
      const auto work = std::move(posted.front());
      posted.pop_front();
      work();
    }
  }

  std::deque<std::function<void()>> posted;
};

}  // namespace fonklav::test
