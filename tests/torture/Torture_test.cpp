#include <gmock/gmock.h>

#include "tests/app/BareDialer.h"
#include "tests/app/CountedMemory.h"
#include "util/KeyedItems.h"

// Every story once for each thing in it that can fail: each call of a port, once and from then on, and each allocation
// of memory. What may come of it is little: no crash, no leak, nothing said that is not so, one line and one call at
// most, every line asked to close before telephony is shut down. And where the fault has passed, the next dial works.
namespace fonklav::test {
namespace {

// AddressSanitizer takes up to eighty times as long for a story as a plain build, where each one has its turn.
#ifdef FONKLAV_SANITIZED
constexpr long kStep = 37;
#else
constexpr long kStep = 1;
#endif

void FarEndHangsUp(BareDialer& dialer) {
  dialer.sim.RemoteHangUp();
  dialer.Pump(100);
}
void Save(BareDialer& dialer) {
  dialer.Input().TickEntry(1, true);
  dialer.Input().Edit(ControlId::txtSettVW, "0");
  dialer.Input().Click(ControlId::cmdSave);
}
void LosePartner(BareDialer& dialer) {
  dialer.dde.alive = false;
  dialer.Pump(250);
}

struct Story {
  const char* name;
  bool started;  ///< begins with a dialer that is linked and bound
  bool calling;  ///< and whose call is up
  void (*happens)(BareDialer& dialer);
};

const std::vector<Story> kStories{
    {"start", false, false, [](BareDialer& dialer) { dialer.Start("/sett"); }},
    {"dial", true, false, [](BareDialer& dialer) { dialer.Command("cmd|call|0301234567", 100); }},
    {"hangUp", true, true, [](BareDialer& dialer) { dialer.Command("cmd|hangup", 100); }},
    {"remoteEnd", true, true, FarEndHangsUp},
    {"save", true, false, Save},
    {"cancel", true, true, [](BareDialer& dialer) { dialer.Input().Click(ControlId::cmdExit); }},
    {"deviceReport", true, false, [](BareDialer& dialer) { dialer.Input().ClickEntry(1); }},
    {"settings", true, false, [](BareDialer& dialer) { dialer.Command("settings"); }},
    {"linkLoss", true, true, LosePartner},
    {"exit", true, true, [](BareDialer& dialer) { dialer.Input().CloseRequested(UnloadMode::SessionEnds); }}};

/// A dialer whose ports fail when they are told to.
class TorturedDialer : public BareDialer {
 public:
  explicit TorturedDialer(const Story& story) : BareDialer(kTwoLinesAndACall), story_(story) {
    Switch("LogTAPI=1\r\nTraceMode=1\r\n");
    StoreLine("A");
    FailBy(faults);
    sim.inside = [this](std::string_view function) {
      Watch(function);
      if (faults.Due()) throw RunTimeError(ErrorNumber::FileNotFound);
    };
    dde.onReport = [this](std::string_view report) { Watch(report); };
    if (story.started) Start("/run");
    if (story.calling) {
      Command("cmd|call|0301234567", 100);
      EXPECT_EQ(sim.LiveCalls(), 1U);
    }
  }

  void Happen() {
    try {
      story_.happens(*this);
    } catch (const RunTimeError&) {
      // Start-up has no log yet: what happens then goes to main, which tells it and ends.
      EXPECT_FALSE(story_.started);
      refused = true;
    } catch (const std::bad_alloc&) {
      // The same, or what happens could not even be put into words. The program's own entries let nothing out.
      refused = !story_.started;
    }
    loop.Run();
  }

  /// What a user does after something went wrong, and whether the dialer is as good as new then.
  void ExpectTheNextDialToWork() {
    if (refused || view.unloads != 0 || !dde.ticking) return;
    Command("cmd|hangup", 100);
    dde.alive = true;
    Command("unload", 100);
    if (view.unloads != 0) return;  // the link had been lost: Cancel ends the program
    Command("");
    TakeReports();
    Command("cmd|call|0307654321", 100);
    EXPECT_THAT(TakeReports(), testing::Contains("cmd|autohide")) << "the call was not connected";
  }

  void End() {
    program.reset();
    loop.Run();
    EXPECT_LE(sim.Registrations(), lostShutdowns);
    EXPECT_LE(sim.OpenLines(), lostCloses);
  }

  Faults faults;
  bool refused{false};
  std::size_t lostShutdowns{0};  ///< that were asked for and failed
  std::size_t lostCloses{0};

 private:
  void Watch(std::string_view what) {
    EXPECT_LE(sim.OpenLines(), 1 + lostCloses);
    EXPECT_LE(sim.LiveCalls(), 1 + lostCloses);
    EXPECT_TRUE(what != "lineMakeCall" || sim.OpenLines() >= 1U);
    EXPECT_TRUE(what != "lineShutdown" || sim.OpenLines() <= lostCloses);
    EXPECT_TRUE(!program || IsAsShown(what)) << what;
  }

  const Story& story_;
};

class Torture : public testing::TestWithParam<Story> {};

/// Lets the story happen while this call of a port fails, or each from it on, or this allocation; none below 0. How
/// many there were of what fails.
long Happen(const Story& story, long failing, bool allocation, bool forever) {
  TorturedDialer dialer(story);
  dialer.lostCloses = dialer.lostShutdowns = failing < 0 ? 0 : 1;  // the failing call may be the one that gives back
  dialer.faults.Arm(allocation ? -1 : failing, forever);
  memory.allocations = 0;
  memory.failing = allocation ? failing : -1;
  dialer.Happen();
  memory.failing = -1;
  const long count = allocation ? memory.allocations : dialer.faults.Calls();
  dialer.faults.Disarm();
  dialer.ExpectTheNextDialToWork();
  dialer.End();
  return count;
}

void Torment(const Story& story, bool allocation, bool forever) {
  const long count = Happen(story, -1, allocation, forever);
  ASSERT_GT(count, 5);
  for (long failing = 0; failing < count && !testing::Test::HasFailure(); failing += kStep) {
    SCOPED_TRACE(story.name + std::string(" ") + std::to_string(failing));
    Happen(story, failing, allocation, forever);
  }
}

TEST_P(Torture, ACallOfAPortFails) { Torment(GetParam(), false, false); }

TEST_P(Torture, EachCallOfAPortFromOneOnFails) { Torment(GetParam(), false, true); }

TEST_P(Torture, AnAllocationFails) { Torment(GetParam(), true, false); }

TEST(Memory, AnItemThatFindsNoneIsNotKeptAndMayComeAgain) {
  KeyedItems items;
  for (int item = 0; item < 200; ++item) {
    const std::string key = "Key" + std::to_string(item);
    bool added = false;
    // An item asks for memory a few times. Each time fails once before it comes through.
    for (long failing = 0; failing < 10 && !added; ++failing) {
      memory.allocations = 0;
      memory.failing = failing;
      try {
        added = items.Add(key, {});
      } catch (const std::bad_alloc&) {
      }
      memory.failing = -1;
      EXPECT_EQ(items.Find(key) != nullptr, added);
      EXPECT_EQ(items.Count(), static_cast<std::size_t>(item + (added ? 1 : 0)));
    }
    ASSERT_TRUE(added);
  }
}

INSTANTIATE_TEST_SUITE_P(Stories, Torture, testing::ValuesIn(kStories), [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace fonklav::test
