#include <gtest/gtest.h>

#include "sim/TapiCodes.h"
#include "tests/sim/TestLine.h"

namespace fonklav {
namespace {

using namespace sim;
using std::chrono::milliseconds;

const std::string kTalk =
    "device\nlocation\ncall reply after=20\ncall state dialing after=40\ncall state connected after=60\n";

/// What a program hears of its one call, to which this happens after a while, and what telephony answers meanwhile: the
/// program drops what the far end has left, and gives back what is idle.
std::string CourseOf(const std::string& scenario, int after, void (*happens)(TestLine&)) {
  TestLine line(scenario);
  std::string answers;
  line.onMessage = [&](const LineMessage& message) {
    if (message.message != LINE_CALLSTATE) return;
    if (message.p1 == LINECALLSTATE_DISCONNECTED) answers += " drop=" + std::to_string(line.sim.lineDrop(line.call));
    if (message.p1 == LINECALLSTATE_IDLE) answers += " back=" + std::to_string(line.sim.lineDeallocateCall(line.call));
  };
  EXPECT_EQ(line.RegisterOpenAndDial(), 1);
  line.sim.Advance(milliseconds(after));
  const std::size_t heard = line.heard.size();
  happens(line);
  EXPECT_EQ(line.heard.size(), heard) << "it arrives with the next pumping";
  line.sim.Advance(std::chrono::seconds(1));
  EXPECT_EQ(line.call != 0, line.Heard().find("reply 1=0x0") != std::string::npos) << "written with the good reply";
  return line.Heard() + "|" + answers;
}

TEST(Call, TakesItsCourse) {
  const auto drop = [](TestLine& line) { EXPECT_EQ(line.sim.lineDrop(line.call), 2); };
  EXPECT_EQ(CourseOf(kTalk, 100, [](TestLine& line) { line.sim.RemoteHangUp(); }),
            "reply 1=0x0 state 0x10 state 0x100 state 0x4000 reply 2=0x0 state 0x1 | drop=2 back=0");
  EXPECT_EQ(CourseOf(kTalk, 0, [](TestLine& line) { line.sim.lineClose(line.line); }), "|") << "no reply any more";
  EXPECT_EQ(CourseOf(kTalk, 20, drop), "reply 1=0x0 reply 2=0x0 state 0x1 | back=0") << "no state that was to come";
  EXPECT_EQ(CourseOf(kTalk + "drop state idle after=10\ndrop reply after=50", 100, drop),
            "reply 1=0x0 state 0x10 state 0x100 state 0x1 | back=0")
      << "a call that is given back takes its replies along";
  constexpr auto refusing = "device\ncall reply result=0x80000048 after=10\ncall state dialing after=20";
  EXPECT_EQ(CourseOf(refusing, 0, [](TestLine&) {}), "reply 1=0x80000048 |") << "which ends the call";
}

TEST(Call, ReceiverMayShutDownInTheMiddleOfAMessage) {
  TestLine line(kTalk);
  line.onMessage = [&](const LineMessage&) { line.sim.lineShutdown(line.app); };
  line.RegisterOpenAndDial();
  line.sim.Advance(milliseconds(1000));
  EXPECT_EQ(line.heard.size(), 1U);
  EXPECT_EQ(line.sim.Registrations() + line.sim.OpenLines() + line.sim.LiveCalls(), 0U);
}

TEST(Handles, EachFunctionChecksItsOwn) {
  TestLine line(kTalk);
  line.Register();
  const HLINEAPP app = line.app;
  line.app = 5;
  EXPECT_EQ(line.Open(), LINEERR_INVALAPPHANDLE);
  EXPECT_EQ(line.sim.lineShutdown(5), LINEERR_INVALAPPHANDLE);
  line.app = app;
  EXPECT_EQ(line.Dial(), LINEERR_INVALLINEHANDLE);
  line.openVersion = TAPI_VERSION1_4;
  EXPECT_EQ(line.Open(), 0);
  EXPECT_EQ(line.sim.lineConfigDialog(1, 0, nullptr), LINEERR_BADDEVICEID);
  EXPECT_EQ(line.sim.lineConfigDialog(0, 0, "comm"), LINEERR_INVALDEVICECLASS);
}

TEST(Handles, CallStatesLimitWhatMayBeAsked) {
  TestLine line(kTalk);
  line.openVersion = TAPI_VERSION1_4;
  line.RegisterOpenAndDial();
  line.sim.Advance(milliseconds(100));
  EXPECT_EQ(line.Dial(), LINEERR_CALLUNAVAIL) << "the line has its call";
  EXPECT_EQ(line.sim.lineDeallocateCall(line.call), LINEERR_INVALCALLSTATE) << "before 2.0 only when idle";
  line.sim.InjectState(LINECALLSTATE_IDLE);
  line.sim.Advance(milliseconds(0));
  EXPECT_EQ(line.sim.lineDrop(line.call), LINEERR_INVALCALLSTATE);
  EXPECT_EQ(line.sim.lineDeallocateCall(line.call), 0);
  EXPECT_EQ(line.sim.lineDeallocateCall(line.call), LINEERR_INVALCALLHANDLE);
}

}  // namespace
}  // namespace fonklav
