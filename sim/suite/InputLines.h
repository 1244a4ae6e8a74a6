#pragma once

#include <deque>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace fonklav::suite {

/// Lines of standard input without blocking: a pipe offers no wait that goes together with a message queue, so a
/// thread reads ahead. It shares the state, not the object, because nothing can interrupt its last read.
class InputLines {
 public:
  InputLines() {
    std::thread([shared = state_] {
      for (std::string line; std::getline(std::cin, line);) shared->Push(std::move(line));
      shared->End();
    }).detach();
  }

  /// The next line, if one is there.
  [[nodiscard]] std::optional<std::string> Take() {
    const std::scoped_lock lock(state_->mutex);
    if (state_->lines.empty()) return std::nullopt;
    std::string line = std::move(state_->lines.front());
    state_->lines.pop_front();
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
  }

  /// Whether the input has ended and every line of it was taken.
  [[nodiscard]] bool AtEnd() const {
    const std::scoped_lock lock(state_->mutex);
    return state_->ended && state_->lines.empty();
  }

 private:
  struct State {
    void Push(std::string line) {
      const std::scoped_lock lock(mutex);
      lines.push_back(std::move(line));
    }
    void End() {
      const std::scoped_lock lock(mutex);
      ended = true;
    }
    std::mutex mutex;
    std::deque<std::string> lines;
    bool ended{false};
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace fonklav::suite
