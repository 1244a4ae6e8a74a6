#include <benchmark/benchmark.h>

#include <chrono>
#include <stdexcept>

#include "tests/app/BareDialer.h"

// How long the program itself takes between a command's arrival and the call: the time until the whole handler has
// returned, which includes lineMakeCall on the simulator and the reports around it. Logs are in memory here.
namespace fonklav::test {
namespace {

constexpr const char* kScenario =
    "device name=ISDN-Line1 version=0x00020000\nlocation country=49 city=30 local=0\n"
    "call reply after=1\ncall state CONNECTED after=2\ndrop reply after=1\ndrop state IDLE after=2\n";

void CommandToMakeCall(benchmark::State& state, const char* switches) {
  BareDialer dialer(kScenario);
  dialer.File(BareDialer::kSwitches) = switches;
  dialer.StoreLine("ISDN-Line1");
  if (!dialer.Start("/run")) throw std::runtime_error("the dialer did not start");
  std::size_t calls = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    dialer.Command("cmd|call|0301234567");
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    if (dialer.sim.CountOf("lineMakeCall") != 1) throw std::runtime_error("nothing was dialed");
    ++calls;
    dialer.Pump(10);
    dialer.Command("cmd|hangup");
    dialer.Pump(10);
    dialer.Command("");
    // What a long session would gather is not what is measured here.
    dialer.Input().Click(ControlId::cmdLogClear);
    dialer.sim.ForgetCalls();
    dialer.TakeReports();
    dialer.dde.posted.clear();
  }
  state.counters["calls"] = static_cast<double>(calls);
}

BENCHMARK_CAPTURE(CommandToMakeCall, TracingOff, "[Debug]\r\n")->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(CommandToMakeCall, TelephonyLogOn, "[Debug]\r\nLogTAPI=1\r\n")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace fonklav::test
