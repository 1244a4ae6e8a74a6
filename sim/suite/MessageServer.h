#pragma once

#include <windows.h>

#include <future>
#include <stop_token>
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
  /// See the table of commands in docs/building.md.
  bool Misbehave(std::string_view how, const std::string& detail) override;

 private:
  /// How often and how late something is answered.
  struct Habit {
    unsigned copies{1};
    unsigned delay{0};  ///< milliseconds, in which nothing else is done
  };
  /// A value of the item, and all that can be wrong with it.
  struct Value {
    std::string bytes;  ///< with the terminating zero
    WORD format{CF_TEXT};
    bool asking{false};  ///< wants to be answered
    const char* item{kItem};
  };

  static HWND MakeWindow(const char* className, WNDPROC procedure);
  static void StandBy(const std::stop_token& stop, unsigned milliseconds, std::promise<void> ready);
  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void OnInitiate(HWND client, LPARAM atoms);
  void OnAdvise(LPARAM lParam);
  void OnExecute(LPARAM lParam);
  void OnAck(LPARAM lParam);
  void OnTerminate(HWND client);
  unsigned* NumberOf(std::string_view how);
  bool PostOddValue(std::string_view how, const std::string& text);
  bool ActOddly(std::string_view how, unsigned amount);
  void StrangerSpeaks() const;
  void AnswerAs(const Habit& habit, Answer answer, UINT_PTR what) const;
  void PostValue(const Value& value, HWND sender) const;
  void Post(UINT message, LPARAM lParam) const;

  HWND window_{};
  HWND stranger_{};  ///< a second window, which the client has not linked to
  HWND client_{};    ///< null without a conversation
  bool linked_{false};
  bool withdrawn_{false};
  unsigned busyAtLink_{0};
  unsigned busyAtAdvise_{0};
  unsigned endAtAdvise_{0};
  unsigned secondAnswer_{0};
  Habit advise_;
  Habit execute_;
  std::vector<std::jthread> bystanders_;
};

}  // namespace fonklav::suite
