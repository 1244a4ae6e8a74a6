#include "sim/LineSimulator.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "sim/TapiCodes.h"

// What the simulated line does beyond what the tests of the dialer see of it anyway.
namespace fonklav {
namespace {

using namespace sim;
using std::chrono::milliseconds;

const std::string kTalk =
    "device\nlocation\ncall reply after=20\ncall state dialing after=40\ncall state connected after=60\n";

/// A bare program on the simulated telephony: registered with the first device open, if it may, and notes what it hears
/// as "reply 1=0x0 state 0x10 …".
class TestLine : public LineSimulator, LineMessageSink {
 public:
  explicit TestLine(const std::string& scenario, std::uint32_t version = TAPI_VERSION3_0)
      : LineSimulator(Scenario::Parse(scenario)) {
    LINEINITIALIZEEXPARAMS params{};
    params.dwTotalSize = sizeof params;
    params.dwOptions = LINEINITIALIZEEXOPTION_USEHIDDENWINDOW;
    std::uint32_t devices = 0;
    std::uint32_t highest = TAPI_VERSION3_0;
    EXPECT_EQ(lineInitializeEx(app, *this, "test", devices, highest, params), 0);
    EXPECT_EQ(lineOpen(app, 0, line, version, 0, 77, LINECALLPRIVILEGE_NONE, 4), 0);
  }
  std::int32_t Dial() { return lineMakeCall(line, call, "0301234567", 0); }

  HLINEAPP app{0};
  HLINE line{0};
  HCALL call{0};
  std::string heard;
  std::function<void(std::uintptr_t)> onState;

 private:
  void LineCallBackProc(std::uint32_t /*device*/, std::uint32_t message, std::uintptr_t instance, std::uintptr_t p1,
                        std::uintptr_t p2, std::uintptr_t /*p3*/) noexcept override {
    EXPECT_EQ(instance, 77U);
    const bool reply = message == LINE_REPLY;
    heard += reply ? "reply " + std::to_string(p1) + "=" + HexText(p2) + " " : "state " + HexText(p1) + " ";
    if (!reply && onState) onState(p1);
  }
};

/// What a program hears of its one call, to which this happens after a while, and what telephony answers meanwhile: the
/// program drops what the far end has left, and gives back what is idle.
std::string CourseOf(const std::string& scenario, int after, void (*happens)(TestLine&)) {
  TestLine line(scenario);
  std::string answers;
  line.onState = [&](std::uintptr_t state) {
    if (state == LINECALLSTATE_DISCONNECTED) answers += " drop=" + std::to_string(line.lineDrop(line.call));
    if (state == LINECALLSTATE_IDLE) answers += " back=" + std::to_string(line.lineDeallocateCall(line.call));
  };
  EXPECT_EQ(line.Dial(), 1);
  line.Advance(milliseconds(after));
  const std::string heard = line.heard;
  happens(line);
  EXPECT_EQ(line.heard, heard) << "it arrives with the next pumping";
  line.Advance(std::chrono::seconds(1));
  EXPECT_EQ(line.call != 0, line.heard.find("reply 1=0x0") != std::string::npos) << "written with the good reply";
  return line.heard + "|" + answers;
}

TEST(Call, TakesItsCourse) {
  const auto drop = [](TestLine& line) { EXPECT_EQ(line.lineDrop(line.call), 2); };
  EXPECT_EQ(CourseOf(kTalk, 100, [](TestLine& line) { line.RemoteHangUp(); }),
            "reply 1=0x0 state 0x10 state 0x100 state 0x4000 reply 2=0x0 state 0x1 | drop=2 back=0");
  EXPECT_EQ(CourseOf(kTalk, 0, [](TestLine& line) { line.lineClose(line.line); }), "|") << "no reply any more";
  EXPECT_EQ(CourseOf(kTalk, 20, drop), "reply 1=0x0 reply 2=0x0 state 0x1 | back=0") << "no state that was to come";
  EXPECT_EQ(CourseOf(kTalk + "drop state idle after=10\ndrop reply after=50", 100, drop),
            "reply 1=0x0 state 0x10 state 0x100 state 0x1 | back=0")
      << "a call that is given back takes its replies along";
  constexpr auto refusing = "device\ncall reply result=0x80000048 after=10\ncall state dialing after=20";
  EXPECT_EQ(CourseOf(refusing, 0, [](TestLine&) {}), "reply 1=0x80000048 |") << "which ends the call";
  EXPECT_EQ(CourseOf(kTalk, 50, [](TestLine& line) { line.onState = [&](auto) { line.lineShutdown(line.app); }; }),
            "reply 1=0x0 state 0x10 state 0x100 |")
      << "the receiver may shut down in the middle of a message";
}

TEST(Handles, AreCheckedAndCallStatesLimitWhatMayBeAsked) {
  TestLine line(kTalk, TAPI_VERSION1_4);
  EXPECT_EQ(line.lineShutdown(5), LINEERR_INVALAPPHANDLE);
  EXPECT_EQ(line.lineMakeCall(5, line.call, "1", 0), LINEERR_INVALLINEHANDLE);
  EXPECT_EQ(line.lineConfigDialog(1, 0, nullptr), LINEERR_BADDEVICEID);
  EXPECT_EQ(line.lineConfigDialog(0, 0, "comm"), LINEERR_INVALDEVICECLASS);
  line.Dial();
  line.Advance(milliseconds(100));
  EXPECT_EQ(line.Dial(), LINEERR_CALLUNAVAIL) << "the line has its call";
  EXPECT_EQ(line.lineDeallocateCall(line.call), LINEERR_INVALCALLSTATE) << "before 2.0 only when idle";
  line.InjectState(LINECALLSTATE_IDLE);
  line.Advance(milliseconds(0));
  EXPECT_EQ(line.lineDrop(line.call), LINEERR_INVALCALLSTATE);
  EXPECT_EQ(line.lineDeallocateCall(line.call), 0);
  EXPECT_EQ(line.lineDeallocateCall(line.call), LINEERR_INVALCALLHANDLE);
}

/// What parsing `text` complains of.
std::string ErrorOf(const std::string& text) {
  try {
    static_cast<void>(Scenario::Parse(text));
  } catch (const ScenarioError& error) {
    return error.what();
  }
  return "none";
}

TEST(Scenario, EveryOneThatIsShippedIsUnderstood) {
  const auto folder = std::filesystem::path(FONKLAV_ROOT) / "sim/scenarios";
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    EXPECT_NO_THROW(static_cast<void>(Scenario::Load(entry.path().string()))) << entry.path();
    ++count;
  }
  EXPECT_GT(count, 15U);
}

TEST(Scenario, LineIsNamedWithWhatIsWrongInIt) {
  const std::pair<const char*, const char*> rows[] = {
      {"device nmae=x", "line 1: 'nmae' is not understood here"},
      {"device\nfrob", "line 2: unknown directive 'frob'"},
      {"device name=\"x", "line 1: a quote is not closed"},
      {"device media=0xG", "line 1: '0xG' is no number"},
      {"call", "line 1: reply, state, message or nothing is missing"},
      {"refuse lineOpen", "line 1: a code is missing"},
      {"patch caps", "line 1: 'caps' is none of devcaps, translatecaps, translateoutput"},
      {"repeat 2 device {n}", "line 1: '1' is not understood here"},
  };
  for (const auto& [text, error] : rows) EXPECT_EQ(ErrorOf(text), error) << text;
  EXPECT_THROW(static_cast<void>(Scenario::Load("no such file")), ScenarioError);
}

}  // namespace
}  // namespace fonklav
