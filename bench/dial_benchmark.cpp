#include <stdexcept>

#include "bench/CheapPorts.h"
#include "bench/Measure.h"
#include "tapi/StructReader.h"

// From the command's arrival until the call is asked for and the handler has returned.
namespace fonklav::bench {
namespace {

/// The status box is emptied after each call, or gathers these and 1000 calls before them.
void Dial(benchmark::State& state, const char* switches, bool gather) {
  CheapDialer dialer(Devices(1), switches);
  const auto end = [&] {
    dialer.HangUp();
    if (!gather) dialer.program.Input().Click(ControlId::cmdLogClear);
  };
  for (int call = 0; call < (gather ? 1000 : 1); ++call) {
    dialer.Dial();
    end();
  }
  MeasureSingly(
      state, 1, [&] { dialer.Dial(); }, end);
}

/// What the simulator does of a dial that is not ours.
void SimulatorsPart(benchmark::State& state) {
  CheapSystem system(Devices(1));
  LineSimulator sim(Scenario::Parse(Devices(1)));
  HLINEAPP app = 0;
  HLINE line = 0;
  HCALL call = 0;
  std::uint32_t count = 0;
  std::uint32_t version = 0x00020000;
  LINEINITIALIZEEXPARAMS params{sizeof params, 0, 0, LINEINITIALIZEEXOPTION_USEHIDDENWINDOW, 0, 0};
  struct Nobody : LineMessageSink {
    void LineCallBackProc(std::uint32_t, std::uint32_t, std::uintptr_t, std::uintptr_t, std::uintptr_t,
                          std::uintptr_t) noexcept override {}
  } sink;
  sim.lineInitializeEx(app, sink, "bench", count, version, params);
  std::array<std::byte, 1064> output{};
  const auto part = [&] {
    sim.lineOpen(app, 0, line, 0x00020000, 0, 1, LINECALLPRIVILEGE_NONE, LINEMEDIAMODE_INTERACTIVEVOICE);
    SetTotalSize(output);
    sim.lineTranslateAddress(app, 0, 0x00020000, "00301234567", 0, 0, output);
    if (sim.lineMakeCall(line, call, kNumber, 0) <= 0) throw std::runtime_error("nothing was dialed");
  };
  MeasureSingly(state, 1, part, [&] {
    sim.lineClose(line);
    sim.ForgetCalls();
  });
}

BENCHMARK_CAPTURE(Dial, first, "", false)->UseManualTime();
BENCHMARK_CAPTURE(Dial, after1000, "", true)->UseManualTime();
BENCHMARK_CAPTURE(Dial, logged, "TraceMode=1\r\nLogTAPI=1\r\n", false)->UseManualTime();
BENCHMARK(SimulatorsPart)->UseManualTime();

}  // namespace
}  // namespace fonklav::bench
