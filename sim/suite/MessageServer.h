#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "sim/suite/Server.h"

namespace fonklav::suite {

/// The same server on the published DDE messages themselves, as programs that are older than the system's DDE library
/// speak them: it can be as slow, as wrong and as rude as a message can be.
class MessageServer final : public Server {
 public:
  explicit MessageServer(Listener listener);
  ~MessageServer() override;

  void Publish(std::string value) override;
  bool Terminate() override;
  void Withdraw() override { withdrawn_ = true; }
  /// "busy-at-link": takes that many milliseconds for each question. "busy-at-advise": gives that many busy answers
  /// first. "bystander": a window of another thread takes that many milliseconds for a question that is not for it.
  bool Misbehave(std::string_view how, unsigned amount) override;

 private:
  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void OnInitiate(HWND client, LPARAM atoms);
  void OnAdvise(LPARAM lParam);
  void OnExecute(LPARAM lParam);
  void OnTerminate(HWND client);
  void Post(UINT message, LPARAM lParam) const;

  HWND window_{};
  HWND client_{};  ///< null without a conversation
  bool linked_{false};
  bool withdrawn_{false};
  unsigned busyAtLink_{0};
  unsigned busyAtAdvise_{0};
  std::vector<std::jthread> bystanders_;
};

}  // namespace fonklav::suite
