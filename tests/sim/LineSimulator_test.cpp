#include "sim/LineSimulator.h"

#include <gtest/gtest.h>

#include <cstring>
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

/// A caller's buffer that says how long it is.
struct Buffer {
  explicit Buffer(std::uint32_t total) : bytes(std::max<std::size_t>(total, 4), std::byte{0xEE}) { Claim(total); }
  operator std::span<std::byte>() { return bytes; }
  void Claim(std::uint32_t total) { std::memcpy(bytes.data(), &total, sizeof total); }
  [[nodiscard]] std::uint32_t Number(std::size_t offset) const {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
  }
  /// A text without the NUL that it ends with.
  [[nodiscard]] std::string Text(std::size_t field) const {
    const std::string text(reinterpret_cast<const char*>(bytes.data()) + Number(field + 4), Number(field));
    EXPECT_EQ(text.find('\0'), text.size() - 1);
    return text.c_str();
  }
  std::vector<std::byte> bytes;
};

TEST(Structures, StringsThatDoNotFitAreLeftOutWhole) {
  TestLine line("device name=Line provider=Provider switch=S\nlocation");
  constexpr std::uint32_t needed = 292 + 9 + 2 + 5;
  Buffer tight(needed - 1);
  ASSERT_EQ(line.lineGetDevCaps(line.app, 0, TAPI_VERSION3_0, 0, tight), 0);
  EXPECT_EQ(tight.Number(4), needed);
  EXPECT_EQ(tight.Text(offsetof(LINEDEVCAPS, dwProviderInfoSize)), "Provider");
  EXPECT_EQ(tight.Number(offsetof(LINEDEVCAPS, dwLineNameSize)), 0U);
  EXPECT_EQ(tight.Number(offsetof(LINEDEVCAPS, dwLineNameOffset)), 0U);
  for (const auto& [size, claimed] : {std::pair{291U, 291U}, {100U, 5000U}, {0U, 0U}}) {
    Buffer small(size);
    small.Claim(claimed);
    EXPECT_EQ(line.lineGetDevCaps(line.app, 0, TAPI_VERSION3_0, 0, small), LINEERR_STRUCTURETOOSMALL) << size;
  }
  Buffer caps(6189);
  Buffer small(60);
  ASSERT_EQ(line.lineGetTranslateCaps(line.app, TAPI_VERSION1_4, caps), 0);
  ASSERT_EQ(line.lineGetTranslateCaps(line.app, TAPI_VERSION1_4, small), 0);
  EXPECT_EQ(small.Number(offsetof(LINETRANSLATECAPS, dwNumLocations)), 0U);
  EXPECT_EQ(small.Number(4), caps.Number(4));
}

TEST(Translation, CanonicalNumbersGetPrefixesOthersPass) {
  TestLine line("device\nlocation country=49 city=30 local=8 long=9");
  const char* const no = "refused";
  // Where a canonical number has its blanks, or is refused, and where it need not have them.
  const std::tuple<const char*, const char*, const char*> rows[] = {{"030 12/34", "030 12/34", "030 12/34"},
                                                                    {"", "", ""},
                                                                    {"+49 (30) 1234", "81234", "81234"},
                                                                    {"+49 (89) 1234", "90891234", "90891234"},
                                                                    {"+1 (425) 555", "9001425555", "9001425555"},
                                                                    {"+1 555", "9001555", "9001555"},
                                                                    {"+49(30)1234", no, "81234"},
                                                                    {"+49(", no, no},
                                                                    {"+", no, no},
                                                                    {"+49()30  1234", no, no},
                                                                    {"+49 (30) ", no, no}};
  const auto translated = [&](const char* given, std::uint32_t blanks) {
    line.Rules().blanks = blanks;
    Buffer output(200);
    const auto result = line.lineTranslateAddress(line.app, 0, TAPI_VERSION3_0, given, 0, 0, output);
    return result == 0 ? output.Text(offsetof(LINETRANSLATEOUTPUT, dwDialableStringSize)) : no;
  };
  for (const auto& [given, strict, kind] : rows) {
    EXPECT_EQ(translated(given, 1), strict) << given;
    EXPECT_EQ(translated(given, 0), kind) << given;
  }
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
