#include <deque>
#include <unordered_map>

#include "app/Protocol.h"
#include "bench/CheapPorts.h"
#include "bench/Measure.h"
#include "tapi/StructReader.h"
#include "tapi/mTAPIFunctions.h"
#include "tests/tapi/TapiSystem.h"
#include "util/Procedure.h"
#include "util/cStringBuilder.h"
#include "util/clsCollection.h"

// Single parts, and the least that does the same.
namespace fonklav::bench {
namespace {

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
