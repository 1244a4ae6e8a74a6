#include <deque>
#include <random>
#include <stdexcept>
#include <unordered_map>

#include "app/Protocol.h"
#include "bench/CheapPorts.h"
#include "bench/Measure.h"
#include "tapi/PhoneNumber.h"
#include "tapi/StructReader.h"
#include "tapi/mTAPIFunctions.h"
#include "tests/tapi/TapiSystem.h"
#include "util/CaseFold.h"
#include "util/cStringBuilder.h"
#include "util/clsCollection.h"

namespace fonklav::bench {
namespace {

/// The least that does what the collection is for: items in the order in which they came, and a way to them by folded
/// key. It cannot take an item out of the middle.
struct DequeAndMap {
  void Add(const std::string& key, std::string value) {
    if (numbers.emplace(FoldCase(key), first + items.size()).second) items.push_back({key, std::move(value)});
  }
  const KeyedItems::Item* Find(const std::string& key) const {
    const auto found = numbers.find(FoldCase(key));
    return found == numbers.end() ? nullptr : &items[found->second - first];
  }
  const KeyedItems::Item* At(std::int32_t position) const { return &items[static_cast<std::size_t>(position) - 1]; }
  void RemoveFirst() {
    numbers.erase(FoldCase(items.front().key));
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
  [[nodiscard]] const KeyedItems::Item* At(std::int32_t position) const { return GetCollection().At(position); }
};

std::string Key(std::int64_t number) { return "Key" + std::to_string(number); }

template <typename Collection>
std::unique_ptr<Collection> Filled(std::int64_t count) {
  auto collection = std::make_unique<Collection>();
  for (std::int64_t item = 0; item < count; ++item) collection->Add(Key(item), "2026/03/07  a traced line");
  return collection;
}

template <typename Collection>
void Add(benchmark::State& state) {
  std::unique_ptr<Collection> collection;
  MeasureSingly(
      state, static_cast<std::size_t>(state.range(0)), [&] { collection = Filled<Collection>(state.range(0)); },
      [&] { collection.reset(); });
}

template <typename Collection>
void RemoveOldest(benchmark::State& state) {
  auto collection = Filled<Collection>(state.range(0));
  const auto all = [&] {
    for (std::int64_t item = 0; item < state.range(0); ++item) collection->RemoveFirst();
  };
  MeasureSingly(state, static_cast<std::size_t>(state.range(0)), all,
                [&] { collection = Filled<Collection>(state.range(0)); });
}

/// A thousand items that are neither beside each other nor always the same.
std::vector<std::int32_t> Picked(std::int64_t count) {
  std::mt19937 random(2015);
  std::vector<std::int32_t> picked(1000);
  for (std::int32_t& one : picked) one = static_cast<std::int32_t>(random() % static_cast<std::uint64_t>(count));
  return picked;
}

template <typename Collection>
void Find(benchmark::State& state) {
  const auto collection = Filled<Collection>(state.range(0));
  std::vector<std::string> keys;
  for (const std::int32_t one : Picked(state.range(0))) keys.push_back(Key(one));
  std::size_t next = 0;
  Measure(state, [&] { benchmark::DoNotOptimize(collection->Find(keys[next++ % keys.size()])); });
}

template <typename Collection>
void At(benchmark::State& state) {
  const auto collection = Filled<Collection>(state.range(0));
  const std::vector<std::int32_t> picked = Picked(state.range(0));
  std::size_t next = 0;
  Measure(state, [&] { benchmark::DoNotOptimize(collection->At(picked[next++ % picked.size()] + 1)); });
}

void RemoveFromTheMiddle(benchmark::State& state) {
  const auto collection = Filled<Ours>(10000);
  std::int64_t next = 10000;
  const auto remove = [&] { benchmark::DoNotOptimize(collection->RemoveByIndex(5000)); };
  MeasureSingly(state, 1, remove, [&] { collection->Add(Key(next++), "2026/03/07  a traced line"); });
}

void CommandDispatched(benchmark::State& state) {
  const std::string value = std::string("cmd|call|") + kNumber;
  std::size_t dialed = 0;
  Measure(state, [&] {
    const CommandMessage message = ParseCommand(value);
    if (message.command == Command::Call) dialed += message.argument.size();
    benchmark::DoNotOptimize(dialed);
  });
}

/// A line object on cheap telephony.
struct CheapLine : test::TapiSystem {
  explicit CheapLine(std::int64_t devices) : TapiSystem(""), telephony(Scenario::Parse(Devices(devices))) {
    line = CvbTAPILine::Make({diagnostics, telephony, icons, codePage, callback, "bench"}, events);
    if (!line->Create()) throw std::runtime_error("no line");
  }
  ~CheapLine() { line.reset(); }
  CheapTelephony telephony;
  CheapCodePage codePage;
};

void Capabilities(benchmark::State& state) {
  const CheapLine system(1);
  Measure(state, [&] { system.line->CurrentLineID(0); });
}

/// The same by a reader that believes the driver.
void UncheckedCapabilities(benchmark::State& state) {
  CheapLine system(1);
  Telephony& telephony = system.telephony;
  std::array<std::string, 3> texts;
  std::array<std::uint32_t, 10> numbers{};
  Measure(state, [&] {
    std::array<std::byte, 2301> buffer{};
    SetTotalSize(buffer);
    if (telephony.lineGetDevCaps(0x10001, 0, 0x00020000, 0, buffer) != 0) throw std::runtime_error("no capabilities");
    LINEDEVCAPS caps;
    std::memcpy(&caps, buffer.data(), sizeof caps);
    const auto text = [&](std::uint32_t offset) {
      return system.codePage.ToText(reinterpret_cast<const char*>(buffer.data()) + offset);
    };
    texts = {text(caps.dwLineNameOffset), text(caps.dwProviderInfoOffset), text(caps.dwSwitchInfoOffset)};
    numbers = {caps.dwPermanentLineID,   caps.dwStringFormat, caps.dwNumAddresses, caps.dwMaxRate,
               caps.dwBearerModes,       caps.dwAddressModes, caps.dwMediaModes,   caps.dwGenerateToneMaxNumFreq,
               caps.dwGenerateToneModes, caps.dwNumTerminals};
    benchmark::DoNotOptimize(texts);
    benchmark::DoNotOptimize(numbers);
  });
}

void NumberPrepared(benchmark::State& state) {
  const std::string number = "+49 (30) 1234567";
  Measure(state, [&] { benchmark::DoNotOptimize(BracketAreaCode(FoldBlanks(number).substr(1))); });
}

constexpr std::size_t kAppends = 256;

void BuilderAppend(benchmark::State& state) {
  Diagnostics diagnostics;
  cStringBuilder builder(diagnostics);
  const auto append = [&] {
    for (std::size_t piece = 0; piece < kAppends; ++piece) builder.Append(u"0301234567, busy");
  };
  append();
  builder.Clear();
  MeasureSingly(state, kAppends, append, [&] { builder.Clear(); });
}

void StringAppend(benchmark::State& state) {
  std::u16string text;
  const auto append = [&] {
    for (std::size_t piece = 0; piece < kAppends; ++piece) text.append(u"0301234567, busy");
    benchmark::DoNotOptimize(text);
  };
  append();
  text.clear();
  MeasureSingly(state, kAppends, append, [&] { text.clear(); });
}

/// What the start does with every device.
void Enumerate(benchmark::State& state) {
  CheapLine system(state.range(0));
  LineState lines;
  mTAPIFunctions functions(system.diagnostics, lines);
  MeasureSingly(
      state, 1, [&] { functions.GetTAPIInterfaces(*system.line); }, [] {});
  if (std::cmp_not_equal(lines.table.size(), state.range(0))) throw std::runtime_error("lines are missing");
}

/// SetLine and, in it, RefreshTAPIList: the user ticks one entry and then another.
void SetLine(benchmark::State& state) {
  CheapDialer dialer(Devices(state.range(0)), "");
  std::size_t ticked = 0;
  const auto tick = [&] { dialer.program.Input().TickEntry(ticked, true); };
  MeasureSingly(state, 1, tick, [&] {
    dialer.telephony.ForgetCalls();
    ticked = dialer.program.Controls().lstTAPI.Count() - 1 - ticked;
  });
}

BENCHMARK(Add<Ours>)->Arg(1000)->Arg(10000)->UseManualTime();
BENCHMARK(Add<DequeAndMap>)->Arg(10000)->UseManualTime();
BENCHMARK(Find<Ours>)->Arg(1000)->Arg(10000);
BENCHMARK(Find<DequeAndMap>)->Arg(10000);
BENCHMARK(At<Ours>)->Arg(1000)->Arg(10000);
BENCHMARK(At<DequeAndMap>)->Arg(10000);
BENCHMARK(RemoveOldest<Ours>)->Arg(1000)->Arg(10000)->UseManualTime();
BENCHMARK(RemoveOldest<DequeAndMap>)->Arg(10000)->UseManualTime();
BENCHMARK(RemoveFromTheMiddle)->UseManualTime();
BENCHMARK(CommandDispatched);
BENCHMARK(Capabilities);
BENCHMARK(UncheckedCapabilities);
BENCHMARK(NumberPrepared);
BENCHMARK(BuilderAppend)->UseManualTime();
BENCHMARK(StringAppend)->UseManualTime();
BENCHMARK(Enumerate)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime();
BENCHMARK(SetLine)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime();

}  // namespace
}  // namespace fonklav::bench
