#include "tests/app/Dialer.h"

// Telephony that dispatches messages in the middle of its own functions, so that anything may arrive inside each of
// them.
namespace fonklav::test {
namespace {

using namespace testing;

/// Whatever is out is answered, and the call ends.
void AnswerAll(Dialer& dialer) {
  for (std::uintptr_t instance = 1; instance < 8; ++instance) {
    for (std::uintptr_t request = 1; request < 8; ++request) {
      dialer.sim.InjectMessage({0, LINE_REPLY, instance, request, 0, 0});
    }
    dialer.sim.InjectMessage({0, LINE_CALLSTATE, instance, LINECALLSTATE_IDLE, 0, 0});
  }
  dialer.sim.Advance({});
}

struct ArrivalRow {
  const char* name;
  void (*arrive)(Dialer&);
  bool ends;  ///< the program is over afterwards
};

const std::vector<ArrivalRow> kArrivals{
    {"terminate", [](Dialer& dialer) { dialer.dde.Sink().OnTerminate(); }, true},
    {"sessionEnd", [](Dialer& dialer) { dialer.Input().CloseRequested(UnloadMode::SessionEnds); }, true},
    {"unload", [](Dialer& dialer) { dialer.dde.Sink().OnData("unload"); }, false},
    {"lineMessages", AnswerAll, false}};

class Inside : public TestWithParam<std::tuple<std::string, ArrivalRow>> {};

/// A call by command, the end of it, a report on the line, and the settings given up.
void Work(Dialer& dialer) {
  const auto command = [&](const char* text) {
    if (dialer.view.unloads == 0) dialer.Command(text);
    dialer.Pump(100);
  };
  command("cmd|call|0301234567");
  command("cmd|hangup");
  dialer.Input().ClickEntry(0);
  command("");
  command("cmd|call|0301234567");
  dialer.sim.RemoteHangUp();
  dialer.Pump(100);
  command("unload");
}

TEST_P(Inside, NothingDeadIsTouchedAndNothingIsLost) {
  const std::string_view function = std::get<0>(GetParam());
  const ArrivalRow& arrival = std::get<1>(GetParam());
  Dialer dialer(kTwoLinesAndACall);
  dialer.StoreLine("A");
  dialer.Start("/run");
  int arrivals = 0;
  dialer.sim.inside = [&](std::string_view entered) {
    if (entered == function && arrivals++ == 0) arrival.arrive(dialer);
    EXPECT_LE(dialer.sim.OpenLines(), 1U);
  };
  Work(dialer);
  EXPECT_GE(arrivals, 1) << "the function was never called: the test has seen nothing";
  EXPECT_EQ(dialer.view.unloads, arrival.ends ? 1 : 0);
  if (!arrival.ends) {
    dialer.Command("cmd|hangup", 100);
    dialer.TakeReports();
    dialer.Command("cmd|call|0307654321", 100);
    EXPECT_THAT(dialer.TakeReports(), Contains("anzlog|Verbunden")) << "the next call works";
    dialer.dde.Sink().OnTerminate();
  }
  dialer.loop.Run();
  EXPECT_EQ(dialer.sim.LiveCalls() + dialer.sim.OpenLines() + dialer.sim.Registrations(), 0U);
}

TEST(Inside, ALineObjectThatWasLetGoOfIsSilent) {
  const auto dialer = Ready(kTwoLinesAndACall, "A");
  dialer->Command("cmd|call|0301234567", 100);
  bool arrived = false;
  dialer->sim.inside = [&](std::string_view entered) {
    if (entered == "lineDeallocateCall" && !std::exchange(arrived, true)) dialer->dde.Sink().OnData("unload");
  };
  dialer->TakeReports();
  dialer->sim.InjectState(LINECALLSTATE_IDLE);
  dialer->Pump(100);
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("cmd|quitt", "Init2LastOK|1", "line|A", "Init2LastOK|1", "line|A"));
}

INSTANTIATE_TEST_SUITE_P(Rows, Inside, Combine(ValuesIn(kTelephony), ValuesIn(kArrivals)),
                         [](const auto& row) { return std::get<0>(row.param) + "_" + std::get<1>(row.param).name; });

}  // namespace
}  // namespace fonklav::test
