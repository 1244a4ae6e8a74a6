#include "bench/CheapPorts.h"
#include "bench/Measure.h"
#include "config/Configuration.h"
#include "diag/clsErrorHandling.h"
#include "util/Procedure.h"

namespace fonklav::bench {
namespace {

constexpr const char* kLine = "TAPI FVT DDE Execute - cmd|call|0301234567";
constexpr const char* kStamped = "2026/03/07  09:05:31  TAPI FVT DDE Execute - cmd|call|0301234567\r\n";

/// The files' helper on one real file.
void LogLine(benchmark::State& state, std::int32_t limitKB) {
  CheapSystem system("");
  OneFile disk;
  Diagnostics diagnostics;
  diagnostics.tag = "FVT";
  const ConfigState config;
  const modAPI_Files tests(diagnostics, config, disk, system.codePage);
  clsFiles files(diagnostics, tests, disk, system.codePage, system.clock);
  for (int line = 0; line < (limitKB == 0 ? 1 : 1000); ++line) disk.Append("", kStamped);
  Measure(state, [&] {
    std::string line = kLine;
    files.FileWrite_Log("C:\\ProgramData\\Rufmon\\log\\debug.log", line, limitKB);
  });
}

void RawLine(benchmark::State& state) {
  const OneFile disk;
  Measure(state, [] {
    const int file = open(OneFile::kPath, O_WRONLY | O_CREAT | O_CLOEXEC | O_APPEND, 0644);
    struct stat status {};
    OneFile::Check(fstat(file, &status) == 0 && write(file, kStamped, std::strlen(kStamped)) > 0);
    close(file);
  });
}

/// The logs as a program has them, on no disk or a real file.
template <typename Disk = NoDisk>
struct Logs : CheapSystem {
  explicit Logs(const std::string& switches) : CheapSystem("", switches) {
    if (!config.declareAll.Init("FVT", false)) throw std::runtime_error("no logs");
  }
  ~Logs() { diagnostics.log.reset(); }
  Ports Own() {
    Ports ports = CheapPorts();
    ports.files = own;
    return ports;
  }
  clsErrorHandling& Log() { return static_cast<clsErrorHandling&>(*diagnostics.log); }
  void Steps(int count) {
    for (int step = 0; step < count; ++step) TraceEntry(diagnostics, "fMain.cmdWahl_Click", {kNumber, step, true});
  }

  Disk own;
  Diagnostics diagnostics;
  Configuration config{diagnostics, Own(), [this]() -> std::unique_ptr<ProcedureLog> {
                         return std::make_unique<clsErrorHandling>(diagnostics, config, Own());
                       }};
};

/// Fifty steps wait; the one behind them would write.
void TracedStep(benchmark::State& state) {
  Logs<> logs("TraceMode=1\r\n");
  logs.Log().oTraceQueue_QueueAdded();
  MeasureSingly(
      state, 50, [&] { logs.Steps(50); }, [&] { logs.Log().oTraceQueue_QueueAdded(); });
}

/// The lines wait because the disk is full, and then it is not.
void TraceBatch(benchmark::State& state) {
  Logs<OneFile> logs("TraceMode=1\r\n");
  const auto queue = [&] {
    logs.own.full = true;
    logs.Steps(51);
    logs.own.full = false;
  };
  logs.Log().oTraceQueue_QueueAdded();
  queue();
  MeasureSingly(
      state, 1, [&] { logs.Log().oTraceQueue_QueueAdded(); }, queue);
}

void RawBatch(benchmark::State& state) {
  Logs<OneFile> logs("TraceMode=1\r\n");
  logs.Steps(51);
  logs.Log().oTraceQueue_QueueAdded();
  const std::string bytes = logs.own.Read("");
  MeasureSingly(
      state, 1, [&] { OneFile::Put(OneFile::kPath, O_APPEND, bytes); }, [] {});
}

void DebugLineOff(benchmark::State& state) {
  Logs<> logs("");
  const std::string text = "cmd|call|0301234567";
  Measure(state, [&] { DebugTapi(logs.diagnostics, "DDE Execute - " + text); });
}

void EmptyCall(benchmark::State& state) {
  struct Silent : ProcedureLog {
    void LogDebug_Trace(std::string_view, LogArgs) noexcept override {}
    void LogDebug_TAPI(std::string_view, LogArgs) noexcept override {}
    void ErrorLogNew(std::string_view, LogArgs) noexcept override {}
    void WriteLine(std::string_view, std::string_view) noexcept override {}
  };
  std::unique_ptr<ProcedureLog> log = std::make_unique<Silent>();
  benchmark::DoNotOptimize(log);
  Measure(state, [&] { log->LogDebug_TAPI("cmd|call|0301234567", {}); });
}

int Half(int number) {
  benchmark::DoNotOptimize(number);
  return number / 2;
}

void Guard(benchmark::State& state) {
  Diagnostics diagnostics;
  diagnostics.handlersArmed = true;
  int number = 1;
  Measure(state, [&] {
    benchmark::DoNotOptimize(
        Procedure(diagnostics, "bench.Half", {number}, 0, [&](int& result) { result = Half(number); }));
  });
}

void BareBody(benchmark::State& state) {
  int number = 1;
  Measure(state, [&] { benchmark::DoNotOptimize(Half(number)); });
}

BENCHMARK_CAPTURE(LogLine, unlimited, 0);
BENCHMARK_CAPTURE(LogLine, limited, 50);
BENCHMARK(RawLine);
BENCHMARK(TracedStep)->UseManualTime();
BENCHMARK(TraceBatch)->UseManualTime();
BENCHMARK(RawBatch)->UseManualTime();
BENCHMARK(DebugLineOff);
BENCHMARK(EmptyCall);
BENCHMARK(Guard);
BENCHMARK(BareBody);

}  // namespace
}  // namespace fonklav::bench
