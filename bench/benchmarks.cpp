#include <deque>
#include <unordered_map>

#include "app/Protocol.h"
#include "bench/CheapPorts.h"
#include "bench/Measure.h"
#include "config/Configuration.h"
#include "diag/clsErrorHandling.h"
#include "tapi/StructReader.h"
#include "tapi/mTAPIFunctions.h"
#include "tests/app/CountedMemory.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/tapi/TapiSystem.h"
#include "util/Procedure.h"
#include "util/cStringBuilder.h"
#include "util/clsCollection.h"

// The dial, the logs, what grows with the number of lines; and single parts beside the least that does the same.
namespace fonklav::bench {

long Allocations() noexcept { return test::memory.allocations; }

namespace {

/// From the command's arrival until the call is asked for and the handler has returned. The status box is emptied after
/// each call, or gathers these and 1000 calls before them.
void Dial(benchmark::State& state, const char* switches, bool gather) {
  CheapDialer dialer(switches);
  const auto end = [&] {
    dialer.HangUp();
    if (!gather) dialer.Input().Click(ControlId::cmdLogClear);
  };
  for (int call = 0; call < (gather ? 1000 : 1); ++call) {
    dialer.Dial();
    end();
  }
  Measure(
      state, 1, [&] { dialer.Dial(); }, end);
}

/// What the simulator does in a dial.
void SimulatorsPart(benchmark::State& state) {
  CheapDialer dialer("");
  CheapTelephony& sim = dialer.driver;
  std::array<std::byte, 1064> output{};
  HLINE line = 0;
  HCALL call = 0;
  const auto part = [&] {
    sim.LineSimulator::lineOpen(sim.registration, 0, line, 0x00020000, 0, 1, LINECALLPRIVILEGE_NONE, 4);
    SetTotalSize(output);
    sim.LineSimulator::lineTranslateAddress(sim.registration, 0, 0x00020000, "00301234567", 0, 0, output);
    Check(sim.LineSimulator::lineMakeCall(line, call, "00301234567", 0) > 0);
  };
  Measure(state, 1, part, [&] {
    sim.LineSimulator::lineClose(line);
    sim.ForgetCalls();
  });
}

/// The logs as a program has them, on no disk or on a real file.
struct Logs : CheapSystem {
  explicit Logs(const std::string& switches, FileSystem* disk = nullptr) : CheapSystem(switches, 1, disk) {
    Check(config.declareAll.Init("FVT", false));
  }
  ~Logs() { diagnostics.log.reset(); }
  void Steps(int count) {
    for (int step = 0; step < count; ++step) TraceEntry(diagnostics, "fMain.cmdWahl_Click", {"0301234567", step, true});
  }
  void Flush() { static_cast<clsErrorHandling&>(*diagnostics.log).oTraceQueue_QueueAdded(); }

  Diagnostics diagnostics;
  Configuration config{diagnostics, ports, [this]() -> std::unique_ptr<ProcedureLog> {
                         return std::make_unique<clsErrorHandling>(diagnostics, config, ports);
                       }};
};

constexpr std::string_view kLine = "2026/03/07  09:05:31  TAPI FVT DDE Execute - cmd|call|0301234567\r\n";

void LogLine(benchmark::State& state, std::int32_t limitKB) {
  OneFile disk;
  Logs logs("", &disk);
  clsFiles files(logs.diagnostics, logs.config.files, disk, logs.bytes, logs.clock);
  const std::string path = "C:\\ProgramData\\Rufmon\\log\\debug.log";
  std::string line;
  Measure(state, 200, [&] { files.FileWrite_Log(path, line = "TAPI FVT DDE Execute - cmd|call|0301234567", limitKB); });
}

/// Open, look at the size, write, close; above a limit read, write what stays and put it in the place of the old file.
void RawLine(benchmark::State& state, std::int64_t limitKB) {
  OneFile disk;
  Measure(state, 200, [&] {
    if (OneFile::Put(OneFile::kPath, O_APPEND, kLine, true) / 1024 <= limitKB) return;
    disk.Replace({}, std::string_view(disk.Read({})).substr(static_cast<std::size_t>(limitKB) * 256));
  });
}

/// Fifty steps wait; the one behind them would write.
void TracedStep(benchmark::State& state) {
  Logs logs("TraceMode=1\r\n");
  logs.Flush();
  Measure(
      state, 50, [&] { logs.Steps(1); }, [&] { logs.Flush(); });
}

/// The lines wait because the disk is full, and then it is not.
void TraceBatch(benchmark::State& state) {
  OneFile disk;
  Logs logs("TraceMode=1\r\n", &disk);
  const auto wait = [&] {
    disk.full = true;
    logs.Steps(51);
    disk.full = false;
  };
  logs.Flush();
  wait();
  Measure(
      state, 1, [&] { logs.Flush(); }, wait);
}

void RawBatch(benchmark::State& state) {
  OneFile disk;
  const std::string lines(51 * 81, 'x');
  Measure(state, 1, [&] { disk.Append({}, lines); });
}

void DebugLineOff(benchmark::State& state) {
  Logs logs("");
  const std::string text = "cmd|call|0301234567";
  Measure(state, 1000, [&] { DebugTapi(logs.diagnostics, "DDE Execute - ", text); });
}

void EmptyCall(benchmark::State& state) {
  struct Silent : test::RecordingLog {
    using RecordingLog::RecordingLog;
    void LogDebug_TAPI(std::string_view, LogArgs) noexcept override {}
  };
  Diagnostics diagnostics;
  std::unique_ptr<ProcedureLog> log = std::make_unique<Silent>(diagnostics);
  benchmark::DoNotOptimize(log);
  Measure(state, 1000, [&] { log->LogDebug_TAPI("cmd|call|0301234567", {}); });
}

/// SetLine and, in it, RefreshTAPIList: the user ticks the first line and the last in turn.
void SetLine(benchmark::State& state) {
  CheapDialer dialer("", state.range(0));
  std::size_t entry = 0;
  const auto tick = [&] { dialer.Input().TickEntry(entry, true); };
  Measure(state, 1, tick, [&] {
    dialer.driver.ForgetCalls();
    entry = dialer.Controls().lstTAPI.Count() - 1 - entry;
  });
}

/// Items in the order in which they came, and a way to them by folded key. Nothing can be taken out of the middle.
struct DequeAndMap {
  void Add(const std::string& key, std::string value) {
    if (numbers.emplace(FoldCase(key), first + items.size()).second) items.emplace_back(key, std::move(value));
  }
  const KeyedItems::Item* Find(const std::string& key) const {
    return &items[numbers.find(FoldCase(key))->second - first];
  }
  const KeyedItems::Item* At(std::int64_t position) const { return &items.at(static_cast<std::size_t>(position) - 1); }
  void RemoveFirst() {
    numbers.erase(FoldCase(items.front().first));
    items.pop_front();
    ++first;
  }

  std::deque<KeyedItems::Item> items;
  std::unordered_map<std::string, std::size_t> numbers;
  std::size_t first{0};
};

struct Ours : clsCollection {
  void Add(const std::string& key, std::string value) { AddByKeyValue(key, std::move(value)); }
  [[nodiscard]] const KeyedItems::Item* Find(const std::string& key) const { return GetCollection().Find(key); }
  [[nodiscard]] const KeyedItems::Item* At(std::int64_t position) const { return GetCollection().At(position); }
};

void RemoveFromTheMiddle(benchmark::State& state) {
  Ours collection;
  Fill(collection, 10000);
  std::int64_t next = 10000;
  Measure(
      state, 1, [&] { collection.RemoveByIndex(5000); }, [&] { collection.Add(Key(next++), "a traced line"); });
}

void CommandDispatched(benchmark::State& state) {
  const std::string value = "cmd|call|0301234567";
  std::size_t dialed = 0;
  Measure(state, 1000, [&] {
    const CommandMessage message = ParseCommand(value);
    if (message.command == Command::Call) dialed += message.argument.size();
    benchmark::DoNotOptimize(dialed);
  });
}

/// A line object on cheap telephony.
struct CheapLine : test::TapiSystem {
  explicit CheapLine(std::int64_t devices) : TapiSystem(""), driver(devices) {
    line = CvbTAPILine::Make({diagnostics, driver, icons, bytes, callback, "bench"}, events);
    Check(line->Create());
  }
  ~CheapLine() { line.reset(); }
  CheapTelephony driver;
  CheapCodePage bytes;
};

void Capabilities(benchmark::State& state) {
  const CheapLine system(1);
  Measure(state, 1000, [&] { system.line->CurrentLineID(0); });
}

/// The same by a reader that believes the driver.
void UncheckedCapabilities(benchmark::State& state) {
  CheapLine system(1);
  Telephony& telephony = system.driver;
  system.line->CurrentLineID(0);
  std::array<std::string, 3> texts;
  std::array<std::uint32_t, 10> numbers{};
  Measure(state, 1000, [&] {
    std::array<std::byte, 2301> buffer{};
    SetTotalSize(buffer);
    telephony.lineGetDevCaps(system.driver.registration, 0, 0x00020000, 0, buffer);
    LINEDEVCAPS caps;
    std::memcpy(&caps, buffer.data(), sizeof caps);
    const auto text = [&](std::uint32_t offset) {
      return system.bytes.ToText(reinterpret_cast<const char*>(buffer.data()) + offset);
    };
    texts = {text(caps.dwLineNameOffset), text(caps.dwProviderInfoOffset), text(caps.dwSwitchInfoOffset)};
    std::memcpy(numbers.data(), &caps.dwPermanentLineID, sizeof numbers);
    benchmark::DoNotOptimize(texts);
    benchmark::DoNotOptimize(numbers);
  });
}

void Enumerate(benchmark::State& state) {
  CheapLine system(state.range(0));
  LineState lines;
  mTAPIFunctions functions(system.diagnostics, lines);
  Measure(state, 1, [&] { functions.GetTAPIInterfaces(*system.line); });
  Check(std::cmp_equal(lines.table.size(), state.range(0)));
}

void NumberPrepared(benchmark::State& state) {
  const std::string number = "+49 30 1234567";
  Measure(state, 1000, [&] {
    const std::string folded = CvbTAPILine::FoldBlanks(number);
    benchmark::DoNotOptimize(CvbTAPILine::BracketAreaCode(std::string_view(folded).substr(1)));
  });
}

void BuilderAppend(benchmark::State& state) {
  Diagnostics diagnostics;
  cStringBuilder text(diagnostics);
  Measure(
      state, 256, [&] { text.Append(u"0301234567, busy"); }, [&] { text.Clear(); });
}

void StringAppend(benchmark::State& state) {
  std::u16string text;
  Measure(
      state, 256, [&] { text.append(u"0301234567, busy"); }, [&] { text.clear(); });
  benchmark::DoNotOptimize(text);
}

void Guard(benchmark::State& state) {
  Diagnostics diagnostics;
  const std::string number = "0301234567";
  const auto count = [&](std::size_t& characters) { characters = CharacterCount(number); };
  Measure(state, 1000, [&] {
    benchmark::DoNotOptimize(Procedure(diagnostics, "bench.CharacterCount", {number}, std::size_t{0}, count));
  });
}

void BareBody(benchmark::State& state) {
  const std::string number = "0301234567";
  Measure(state, 1000, [&] { benchmark::DoNotOptimize(CharacterCount(number)); });
}

BENCHMARK_CAPTURE(Dial, first, "", false);
BENCHMARK_CAPTURE(Dial, after1000, "", true);
BENCHMARK_CAPTURE(Dial, logged, "TraceMode=1\r\nLogTAPI=1\r\n", false);
BENCHMARK_CAPTURE(LogLine, unlimited, 0);
BENCHMARK_CAPTURE(LogLine, limited, 50);
BENCHMARK_CAPTURE(RawLine, unlimited, INT32_MAX);
BENCHMARK_CAPTURE(RawLine, limited, 50);
BENCHMARK(SimulatorsPart);
BENCHMARK(TracedStep);
BENCHMARK(TraceBatch);
BENCHMARK(RawBatch);
BENCHMARK(DebugLineOff);
BENCHMARK(EmptyCall);
BENCHMARK(SetLine)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK_TEMPLATE(Add, Ours)->Arg(1000)->Arg(10000);
BENCHMARK_TEMPLATE(Find, Ours)->Arg(1000)->Arg(10000);
BENCHMARK_TEMPLATE(At, Ours)->Arg(1000)->Arg(10000);
BENCHMARK_TEMPLATE(RemoveOldest, Ours)->Arg(1000)->Arg(10000);
BENCHMARK_TEMPLATE(Add, DequeAndMap)->Arg(10000);
BENCHMARK_TEMPLATE(Find, DequeAndMap)->Arg(10000);
BENCHMARK_TEMPLATE(At, DequeAndMap)->Arg(10000);
BENCHMARK_TEMPLATE(RemoveOldest, DequeAndMap)->Arg(10000);
BENCHMARK(RemoveFromTheMiddle);
BENCHMARK(CommandDispatched);
BENCHMARK(Capabilities);
BENCHMARK(UncheckedCapabilities);
BENCHMARK(Enumerate)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(NumberPrepared);
BENCHMARK(BuilderAppend);
BENCHMARK(StringAppend);
BENCHMARK(Guard);
BENCHMARK(BareBody);

}  // namespace
}  // namespace fonklav::bench
