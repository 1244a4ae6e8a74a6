#include <gtest/gtest.h>

#include "sim/TapiCodes.h"
#include "tests/sim/TestLine.h"

namespace fonklav {
namespace {

using namespace sim;
using std::chrono::milliseconds;

constexpr auto kDevice = "device\nlocation\n";
constexpr auto kTalk =
    "device\nlocation\ncall reply after=20\ncall state dialing after=40\ncall state connected after=60\n";

/// What a program does on its one call after a while; it drops what the far end has left, and gives back what is idle.
struct Act {
  int after;  ///< milliseconds
  const char* what;
};

struct CallRow {
  const char* name;
  std::string scenario;
  std::vector<Act> acts;
  const char* heard;
  std::vector<std::int32_t> answers{};  ///< that the program gets while it hears
};

TEST(Call, TakesItsCourse) {
  const CallRow rows[] = {
      {"nothing arrives before its time", kTalk, {{19, ""}}, ""},
      {"the reply is the first", kTalk, {{19, ""}, {1, ""}}, "reply 1=0x0 "},
      {"all that there is", kTalk, {{100, ""}}, "reply 1=0x0 state 0x10 state 0x100 "},
      {"the far end hangs up",
       kTalk,
       {{100, "hangup"}, {100, ""}},
       "reply 1=0x0 state 0x10 state 0x100 state 0x4000 reply 2=0x0 state 0x1 ",
       {2, 0}},
      {"giving the call back deletes the replies that are out",
       std::string(kTalk) + "drop state idle after=10\ndrop reply after=500",
       {{100, "drop"}, {1000, ""}},
       "reply 1=0x0 state 0x10 state 0x100 state 0x1 ",
       {0}},
      {"closing the line suppresses every reply", kTalk, {{0, "lineClose"}, {1000, ""}}, ""},
      {"a refusing reply ends the call",
       "device\ncall reply result=0x80000048 after=10\ncall state dialing after=20",
       {{100, ""}},
       "reply 1=0x80000048 "},
      {"a drop takes back the states that were to come",
       kTalk,
       {{20, "drop"}, {1000, ""}},
       "reply 1=0x0 reply 2=0x0 state 0x1 ",
       {0}},
      {"a driver that keeps no order",
       "device\ncall state connected after=10\ncall reply after=20\ncall reply after=30\n"
       "call message msg=2 p1=0x40 instance=0x5 after=40",
       {{100, ""}},
       "state 0x100 reply 1=0x0 reply 1=0x0 state 0x40 "},
      {"telephony takes the line away", kTalk, {{0, "close"}, {1000, ""}}, "close "},
  };
  for (const CallRow& row : rows) {
    SCOPED_TRACE(row.name);
    TestLine line(row.scenario);
    std::vector<std::int32_t> answers;
    line.onMessage = [&](const LineMessage& message) {
      if (message.message != LINE_CALLSTATE) return;
      if (message.p1 == LINECALLSTATE_DISCONNECTED) answers.push_back(line.sim.lineDrop(line.call));
      if (message.p1 == LINECALLSTATE_IDLE) answers.push_back(line.sim.lineDeallocateCall(line.call));
    };
    EXPECT_EQ(line.RegisterOpenAndDial(), 1);
    for (const auto& [after, what] : row.acts) {
      line.sim.Advance(milliseconds(after));
      const std::size_t heard = line.heard.size();
      if (what == std::string_view("drop")) {
        EXPECT_EQ(line.sim.lineDrop(line.call), 2);
      } else if (what == std::string_view("lineClose")) {
        EXPECT_EQ(line.sim.lineClose(line.line), 0);
      } else {
        line.sim.Command(what);
      }
      EXPECT_EQ(line.heard.size(), heard) << "it arrives with the next pumping";
    }
    EXPECT_EQ(line.Heard(), row.heard);
    EXPECT_EQ(answers, row.answers);
    EXPECT_EQ(line.call != 0, line.Heard().find("reply 1=0x0") != std::string::npos) << "written with the good reply";
  }
}

TEST(Call, ReceiverMayShutDownInTheMiddleOfAMessage) {
  TestLine line(kTalk);
  line.onMessage = [&](const LineMessage&) { line.sim.lineShutdown(line.app); };
  line.RegisterOpenAndDial();
  line.sim.Advance(milliseconds(1000));
  EXPECT_EQ(line.heard.size(), 1U);
  EXPECT_EQ(line.sim.Registrations() + line.sim.OpenLines() + line.sim.LiveCalls(), 0U);
}

TEST(Call, ReceiverMayPumpInTheMiddleOfAMessage) {
  TestLine line(kTalk);
  line.onMessage = [&](const LineMessage& message) {
    if (message.message == LINE_REPLY) line.sim.Advance(milliseconds(1000));
  };
  line.RegisterOpenAndDial();
  line.sim.Advance(milliseconds(20));
  EXPECT_EQ(line.Heard(), "reply 1=0x0 state 0x10 state 0x100 ");
}

TEST(Call, StrayMessagesComeAlsoToAProgramWithoutALine) {
  TestLine line(kDevice);
  line.Register();
  line.sim.Command("message msg=2 p1=0x100 instance=0x1234");
  line.sim.Advance(milliseconds(0));
  ASSERT_EQ(line.heard.size(), 1U);
  EXPECT_EQ(line.heard[0].instance, 0x1234U);
}

TEST(Handles, EachFunctionChecksItsOwn) {
  TestLine line(kTalk);
  EXPECT_EQ(line.Open(), LINEERR_UNINITIALIZED);
  line.Register();
  const HLINEAPP app = line.app;
  line.app = 5;
  EXPECT_EQ(line.Open(), LINEERR_INVALAPPHANDLE);
  EXPECT_EQ(line.sim.lineShutdown(5), LINEERR_INVALAPPHANDLE);
  line.app = app;
  EXPECT_EQ(line.Dial(), LINEERR_INVALLINEHANDLE);
  line.openVersion = 0;
  EXPECT_EQ(line.Open(), LINEERR_INCOMPATIBLEAPIVERSION);
  line.openVersion = TAPI_VERSION1_4;
  EXPECT_EQ(line.Open(), 0);
  EXPECT_EQ(line.sim.lineDrop(0), LINEERR_INVALCALLHANDLE);
  EXPECT_EQ(line.sim.lineDeallocateCall(0), LINEERR_INVALCALLHANDLE);
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
  EXPECT_EQ(line.sim.lineDrop(line.call), LINEERR_INVALCALLHANDLE);
}

TEST(Refusal, OnceFromTheSecondCallOn) {
  TestLine line("device\nrefuse lineOpen 0x8000000F nth=2 times=1");
  line.Register();
  EXPECT_EQ(line.Open(), 0);
  EXPECT_EQ(line.Open(), Code(0x8000000F));
  EXPECT_EQ(line.Open(), 0);
  EXPECT_EQ(line.sim.OpenLines(), 2U);
}

TEST(Record, CallsAreReadableAndBytesOutsideAsciiTold) {
  TestLine line(kDevice);
  line.Register();
  line.Open();
  line.Dial("M\xFCller \"1\"");
  line.sim.lineClose(line.line);
  line.Dial(nullptr);
  const auto& calls = line.sim.Calls();
  EXPECT_EQ(calls[2].LogLine(), R"(call lineMakeCall(line=0x20001 address="M\xfcller "1"" country=0x0) = 1)");
  EXPECT_EQ(calls[4].LogLine(), "call lineMakeCall(line=0x20001 address=null country=0x0) = 0x8000002b");
}

TEST(Library, MissingOrTooOld) {
  TestLine line(kDevice);
  line.sim.SetFunctionMissing("lineOpen");
  EXPECT_EQ(line.Register(), 0);
  EXPECT_THROW(line.Open(), RunTimeError);
  line.sim.SetLibraryMissing();
  EXPECT_THROW(line.sim.lineShutdown(line.app), RunTimeError);
}

}  // namespace
}  // namespace fonklav
