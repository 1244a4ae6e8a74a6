#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/DdeTransport.h"
#include "tests/fakes/Faults.h"

namespace fonklav::test {

/// A main program at the other end of the conversation, as far as its messages go. A test reads what was posted to it
/// and answers by hand or by itself.
class FakeDdeTransport : public DdeTransport, public CanFail {
 public:
  bool Ask(std::string_view application, std::string_view topic, DdeSink& sink) override {
    asked.push_back(std::string(application) + "|" + std::string(topic));
    sink_ = &sink;
    ticking = true;
    return askSucceeds && !Due();
  }
  bool PostAdvise(std::string_view item) override {
    advised.emplace_back(item);
    return postSucceeds && !Due();
  }
  DdeExecute PostExecute(std::string_view bytes) override {
    if (onReport) onReport(bytes);
    if (!postSucceeds || Due()) return 0;
    ++last_;
    if (answersAtOnce) pendingAcks_.push_back(last_);
    if (!remembers) return last_;
    executed.emplace_back(bytes);
    posted.push_back(last_);
    return last_;
  }
  void End() noexcept override {
    ++ends;
    ticking = false;
  }
  [[nodiscard]] bool PartnerAlive() const override { return alive; }

  /// The question's outcome arrives, as it does when the message loop runs.
  void DeliverOutcome() {
    if (sink_ == nullptr) return;
    alive = serverRunning;
    if (serverRunning) {
      sink_->OnAnswer();
    } else {
      sink_->OnNobody();
    }
  }
  /// The server's answers arrive.
  void DeliverAcks() {
    const std::vector<DdeExecute> due = pendingAcks_;
    pendingAcks_.clear();
    for (const DdeExecute execute : due) sink_->OnExecuteAck(execute, kDdeAckPositive);
  }
  DdeSink& Sink() { return *sink_; }

  /// What the dialer has reported since the last call of this.
  std::vector<std::string> TakeReports() { return std::exchange(executed, {}); }

  std::function<void(std::string_view)> onReport;  ///< sees each report before it is posted
  bool askSucceeds{true};
  bool serverRunning{true};
  bool postSucceeds{true};
  bool answersAtOnce{true};
  bool remembers{true};  ///< reports; not where a great many come
  bool alive{false};
  bool ticking{false};
  int ends{0};
  std::vector<std::string> asked;
  std::vector<std::string> advised;
  std::vector<std::string> executed;
  std::vector<DdeExecute> posted;

 private:
  DdeSink* sink_{nullptr};
  DdeExecute last_{100};
  std::vector<DdeExecute> pendingAcks_;
};

}  // namespace fonklav::test
