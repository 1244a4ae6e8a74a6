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

TEST(Call, NothingArrivesBeforeSomebodyPumpsAndTimeHasCome) {
  TestLine line(kTalk);
  const auto request = line.RegisterOpenAndDial();
  EXPECT_GT(request, 0);
  EXPECT_EQ(line.call, 0U);
  line.sim.Advance(milliseconds(19));
  EXPECT_EQ(line.Heard(), "");
  EXPECT_EQ(line.call, 0U) << "the cell is written when the reply is processed";
  line.sim.Advance(milliseconds(1));
  EXPECT_EQ(line.Heard(), "reply 1=0x0 ");
  EXPECT_NE(line.call, 0U);
  line.sim.Advance(milliseconds(100));
  EXPECT_EQ(line.Heard(), "reply 1=0x0 state 0x10 state 0x100 ");
  EXPECT_EQ(line.heard.back().hDevice, line.call);
  EXPECT_EQ(line.heard.back().instance, TestLine::kInstance);
}

TEST(Call, FarEndHangsUpTheProgramDropsAndGivesTheCallBack) {
  TestLine line(kTalk);
  line.onMessage = [&](const LineMessage& message) {
    if (message.message != LINE_CALLSTATE) return;
    if (message.p1 == LINECALLSTATE_DISCONNECTED) {
      EXPECT_EQ(line.sim.lineDrop(line.call), 2) << "requests rise";
    }
    if (message.p1 == LINECALLSTATE_IDLE) {
      EXPECT_EQ(line.sim.lineDeallocateCall(line.call), 0);
    }
  };
  line.RegisterOpenAndDial();
  line.sim.Advance(milliseconds(100));
  EXPECT_TRUE(line.sim.RemoteHangUp());
  EXPECT_EQ(line.heard.size(), 3U) << "it arrives with the next pumping";
  line.sim.Advance(milliseconds(100));
  EXPECT_EQ(line.Heard(), "reply 1=0x0 state 0x10 state 0x100 state 0x4000 reply 2=0x0 state 0x1 ");
  EXPECT_EQ(line.sim.LiveCalls(), 0U);
  EXPECT_FALSE(line.sim.RemoteHangUp());
}

TEST(Call, GivingTheCallBackDeletesTheRepliesThatAreStillOut) {
  TestLine line(std::string(kTalk) + "drop state idle after=10\ndrop reply after=500");
  line.onMessage = [&](const LineMessage& message) {
    if (message.p1 == LINECALLSTATE_IDLE && message.message == LINE_CALLSTATE) line.sim.lineDeallocateCall(line.call);
  };
  line.RegisterOpenAndDial();
  line.sim.Advance(milliseconds(100));
  line.sim.lineDrop(line.call);
  line.sim.Advance(milliseconds(1000));
  EXPECT_EQ(line.Heard(), "reply 1=0x0 state 0x10 state 0x100 state 0x1 ");
}

TEST(Call, ClosingTheLineEndsItsCallAndSuppressesEveryReply) {
  TestLine line(kTalk);
  line.RegisterOpenAndDial();
  EXPECT_EQ(line.sim.lineClose(line.line), 0);
  line.sim.Advance(milliseconds(1000));
  EXPECT_EQ(line.Heard(), "");
  EXPECT_EQ(line.sim.WaitingMessages(), 0U);
  EXPECT_EQ(line.sim.LiveCalls(), 0U);
}

TEST(Call, RefusedByItsReplyIsNoCallAnyMore) {
  TestLine line("device\ncall reply result=0x80000048 after=10\ncall state dialing after=20");
  line.RegisterOpenAndDial();
  line.sim.Advance(milliseconds(100));
  EXPECT_EQ(line.Heard(), "reply 1=0x80000048 ");
  EXPECT_EQ(line.call, 0U);
  EXPECT_EQ(line.Dial(), 2) << "the line takes the next call";
}

TEST(Call, DropTakesBackTheStatesThatWereToCome) {
  TestLine line(kTalk);
  line.RegisterOpenAndDial();
  line.sim.Advance(milliseconds(20));
  line.sim.lineDrop(line.call);
  line.sim.Advance(milliseconds(1000));
  EXPECT_EQ(line.Heard(), "reply 1=0x0 reply 2=0x0 state 0x1 ");
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

TEST(Call, DriverThatKeepsNoOrder) {
  TestLine line(
      "device\ncall state connected after=10\ncall reply after=20\ncall reply after=30\n"
      "call message msg=2 p1=0x40 instance=0x5 after=40");
  line.RegisterOpenAndDial();
  line.sim.Advance(milliseconds(100));
  EXPECT_EQ(line.Heard(), "state 0x100 reply 1=0x0 reply 1=0x0 state 0x40 ");
  EXPECT_EQ(line.heard.back().instance, 5U);
}

TEST(Call, StrayMessagesComeAlsoToAProgramWithoutALine) {
  TestLine line(kDevice);
  line.Register();
  line.sim.Command("message msg=2 p1=0x100 instance=0x1234");
  line.sim.Advance(milliseconds(0));
  ASSERT_EQ(line.heard.size(), 1U);
  EXPECT_EQ(line.heard[0].instance, 0x1234U);
}

TEST(Call, TelephonyTakesTheLineAway) {
  TestLine line(kTalk);
  line.RegisterOpenAndDial();
  line.sim.Command("close");
  line.sim.Advance(milliseconds(1000));
  ASSERT_EQ(line.heard.size(), 1U);
  EXPECT_EQ(line.heard[0].message, LINE_CLOSE);
  EXPECT_EQ(line.sim.lineClose(line.line), LINEERR_INVALLINEHANDLE);
  EXPECT_THROW(line.sim.Command("hangup"), std::exception);
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
