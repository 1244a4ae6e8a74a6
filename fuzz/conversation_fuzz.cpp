#include <utility>

#include "app/DdeConversation.h"
#include "fuzz/Bytes.h"
#include "tests/fakes/FakeDdeTransport.h"
#include "tests/fakes/FakePorts.h"

// The conversation under any message of its transport, in any order and twice over, with time passing and an owner who
// sends and closes, also from inside an event.
namespace fonklav::test {
namespace {

constexpr std::array kStatuses{kDdeAckPositive, kDdeAckBusy, std::uint16_t{0}, std::uint16_t{0xFFFF}};

class Talk : private LinkEvents, private FakeDdeTransport {
 public:
  explicit Talk(Bytes bytes) : bytes_(bytes) {}

  void Run() {
    askSucceeds = bytes_.Flag();
    link_.Connect(*this, "A", "T", "item");
    while (!bytes_.Empty()) Step(bytes_.Below(13));
    link_.Close();
    Require(ends == 1, "the transport is told once of the end");
  }

 private:
  void Step(std::size_t what) {
    const bool wasOpen = open_;
    const bool ticks = what == 9 || what == 10;
    DdeSink& sink = link_;
    if (what == 0) sink.OnAnswer();
    if (what == 1) sink.OnNobody();
    if (what == 2) sink.OnAdviseAck(bytes_.OneOf(kStatuses));
    if (what == 3) sink.OnExecuteAck(100 + bytes_.Below(16), bytes_.OneOf(kStatuses));
    if (what == 4) sink.OnData("x");
    if (what == 5) sink.OnTerminate();
    if (what == 6) alive = bytes_.Flag();
    if (what == 7) postSucceeds = bytes_.Flag();
    if (what == 8) clock_.Advance(std::chrono::milliseconds(bytes_.Below(256) * 50));
    if (ticks) sink.OnTick();
    if (what == 11) Send();
    if (what == 12) Close();
    const bool lost = what == 5 || (ticks && !alive);
    Require(!wasOpen || !lost || !open_, "a lost partner closes the link");
  }
  void Send() {
    const bool sent = link_.Send("report");
    Require(!sent || (open_ && postSucceeds), "nothing is sent without a partner");
    if (sent) ++unanswered_;
  }
  void Close() {
    link_.Close();
    open_ = false;
    over_ = true;
  }

  // What an owner does in its handlers.
  void Handle() {
    Require(!over_, "no event after the end");
    const std::size_t what = bytes_.Below(8);
    if (what == 0) Close();
    if (what == 1 && depth_ < 4) {
      ++depth_;
      Send();
      --depth_;
    }
  }
  void txtDDE_LinkLate() noexcept override {
    Require(!open_ && !std::exchange(late_, true), "late once, and before the outcome");
    Handle();
  }
  void txtDDE_LinkFailed() noexcept override {
    Require(!opened_, "one outcome");
    Handle();
    over_ = true;
  }
  void txtDDE_LinkOpen() noexcept override {
    Require(!std::exchange(opened_, true), "one outcome");
    open_ = true;
    Handle();
  }
  void txtDDE_LinkError() noexcept override { Handle(); }
  void txtDDE_LinkClose() noexcept override {
    Require(std::exchange(open_, false), "closed once, after it was open");
    Handle();
    over_ = true;
  }
  void txtDDE_LinkData(const std::string& /*bytes*/) noexcept override {
    Require(open_, "data of a partner only");
    Handle();
  }
  void txtDDE_SendFailed() noexcept override {
    Require(unanswered_-- > 0, "only what was sent can fail");
    Handle();
  }

  bool PostAdvise(std::string_view item) override {
    Require(open_ && item == "item", "advise goes to a partner");
    return FakeDdeTransport::PostAdvise(item);
  }
  DdeExecute PostExecute(std::string_view bytes) override {
    Require(open_, "execute goes to a partner");
    return FakeDdeTransport::PostExecute(bytes);
  }

  Bytes bytes_;
  FakeClock clock_;
  DdeConversation link_{*this, clock_};
  long unanswered_{0};
  int depth_{0};
  bool late_{false};
  bool opened_{false};
  bool open_{false};
  bool over_{false};
};

}  // namespace

void Fuzz(Bytes bytes) { Talk(bytes).Run(); }

}  // namespace fonklav::test
