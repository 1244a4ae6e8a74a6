#pragma once

#include <functional>
#include <vector>

#include "platform/MessageBoxes.h"

namespace fonklav::test {

/// Remembers what was shown and answers at once.
class FakeMessageBoxes : public MessageBoxes {
 public:
  struct Shown {
    std::string prompt;
    std::uint32_t style;
    std::string title;
  };
  std::int32_t Show(const std::string& prompt, std::uint32_t style, const std::string& title) override {
    shown.push_back({prompt, style, title});
    if (whileShown) whileShown();
    return answer;
  }
  std::vector<Shown> shown;
  std::int32_t answer{1};
  std::function<void()> whileShown;
};

}  // namespace fonklav::test
