#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/DdeTransport.h"

namespace fonklav::test {

/// A main program at the other end of the conversation, as far as its messages go. A test reads what was posted to it
/// and answers by hand or by itself.
class FakeDdeTransport : public DdeTransport {
 public:
  bool Initiate(std::string_view application, std::string_view topic, DdeSink& sink) override {
    initiated.push_back(std::string(application) + "|" + std::string(topic));
    if (!serverRunning) return false;
    sink_ = &sink;
    alive = true;
    return true;
  }
  bool PostAdvise(std::string_view item) override {
    advised.emplace_back(item);
    return postSucceeds;
  }
  Block PostExecute(std::string_view bytes) override {
    if (!postSucceeds) return 0;
    executed.emplace_back(bytes);
    posted.push_back(++last_);
    held.insert(last_);
    if (answersAtOnce) pendingAcks_.push_back(last_);
    return last_;
  }
  void Free(Block block) noexcept override { doubleFree = held.erase(block) == 0 || doubleFree; }
  void PostTerminate() noexcept override { ++terminates; }
  [[nodiscard]] bool PartnerAlive() const override { return alive; }

  /// The server's answers arrive, as they do when the message loop runs.
  void DeliverAcks() {
    for (const Block block : std::exchange(pendingAcks_, {})) sink_->OnAck(kDdeAckPositive, block);
  }
  DdeSink& Sink() { return *sink_; }
  [[nodiscard]] bool Connected() const { return sink_ != nullptr; }

  /// What the dialer has reported since the last call of this.
  std::vector<std::string> TakeReports() { return std::exchange(executed, {}); }

  bool serverRunning{true};
  bool postSucceeds{true};
  bool answersAtOnce{true};
  bool alive{false};
  bool doubleFree{false};
  int terminates{0};
  std::vector<std::string> initiated;
  std::vector<std::string> advised;
  std::vector<std::string> executed;
  std::vector<Block> posted;
  std::set<Block> held;  ///< memory that nobody has freed yet

 private:
  DdeSink* sink_{nullptr};
  Block last_{100};
  std::vector<Block> pendingAcks_;
};

}  // namespace fonklav::test
