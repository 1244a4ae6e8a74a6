#include <absl/strings/str_split.h>
#include <fmt/format.h>
#include <phonenumbers/phonenumberutil.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/sequenced_index.hpp>
#include <boost/multi_index_container.hpp>
#include <deque>
#include <string>

#include "bench/Measure.h"

// What one would use instead, on the same work. Where a library does less than that work, it is said.
namespace fonklav::bench {
namespace {

/// A line of text for the queue, by {fmt}.
void FmtTracedStep(benchmark::State& state) {
  std::deque<std::string> queue;
  const std::string number = "0301234567";
  const auto step = [&](int one) {
    return fmt::format("{:04}/{:02}/{:02}  {:02}:{:02}:{:02}  {} v{}.{}  {} {:02}(S:{}, N:{}, B:{:d})", 2026, 3, 7, 9,
                       5, 31, "FVT", 1, 0, "fMain.cmdWahl_Click", one + 1, number, one, true);
  };
  MeasureSingly(
      state, 50,
      [&] {
    for (int one = 0; one < 50; ++one) queue.push_back(step(one));
      },
      [&] { queue.clear(); });
}

/// Stamp, append and flush. The file stays open, which ours must not.
void SpdlogLine(benchmark::State& state) {
  spdlog::logger logger("bench", std::make_shared<spdlog::sinks::basic_file_sink_st>("bench.spdlog", true));
  logger.set_pattern("%Y/%m/%d  %H:%M:%S  %v");
  logger.flush_on(spdlog::level::info);
  Measure(state, [&] { logger.info("TAPI FVT DDE Execute - cmd|call|0301234567"); });
}

void SpdlogDebugOff(benchmark::State& state) {
  spdlog::logger logger("bench", std::make_shared<spdlog::sinks::basic_file_sink_st>("bench.spdlog", true));
  const std::string text = "cmd|call|0301234567";
  Measure(state, [&] { logger.debug("TAPI FVT DDE Execute - {}", text); });
}

void AbslDispatch(benchmark::State& state) {
  const std::string value = "cmd|call|0301234567";
  std::size_t dialed = 0;
  Measure(state, [&] {
    const std::vector<absl::string_view> fields = absl::StrSplit(value, '|');
    if (fields.size() > 2 && fields[0] == "cmd" && fields[1] == "call") dialed += fields[2].size();
    benchmark::DoNotOptimize(dialed);
  });
}

void LibphonenumberNormalize(benchmark::State& state) {
  const auto& library = *i18n::phonenumbers::PhoneNumberUtil::GetInstance();
  Measure(state, [&] {
    std::string number = "+49 (30) 1234567";
    library.NormalizeDiallableCharsOnly(&number);
    benchmark::DoNotOptimize(number);
  });
}

/// Keys are compared as they stand, and a position is a walk: its other indexes make the oldest item's removal slow.
struct Item {
  std::string key;
  std::string value;
};
using Items = boost::multi_index_container<
    Item, boost::multi_index::indexed_by<
              boost::multi_index::sequenced<>,
              boost::multi_index::hashed_unique<boost::multi_index::member<Item, std::string, &Item::key>>>>;

Items BoostFilled(std::int64_t count) {
  Items items;
  for (std::int64_t item = 0; item < count; ++item) {
    items.push_back({"Key" + std::to_string(item), "2026/03/07  a traced line"});
  }
  return items;
}

void BoostAdd(benchmark::State& state) {
  Items items;
  MeasureSingly(
      state, 10000, [&] { items = BoostFilled(10000); }, [&] { items.clear(); });
}

void BoostFind(benchmark::State& state) {
  const Items items = BoostFilled(10000);
  std::vector<std::string> keys;
  for (std::size_t one = 0; one < 1000; ++one) keys.push_back("Key" + std::to_string(one * 7919 % 10000));
  std::size_t next = 0;
  Measure(state, [&] { benchmark::DoNotOptimize(items.get<1>().find(keys[next++ % keys.size()])); });
}

void BoostRemoveOldest(benchmark::State& state) {
  Items items = BoostFilled(10000);
  const auto all = [&] {
    while (!items.empty()) items.pop_front();
  };
  MeasureSingly(state, 10000, all, [&] { items = BoostFilled(10000); });
}

BENCHMARK(FmtTracedStep)->UseManualTime();
BENCHMARK(SpdlogLine);
BENCHMARK(SpdlogDebugOff);
BENCHMARK(AbslDispatch);
BENCHMARK(LibphonenumberNormalize);
BENCHMARK(BoostAdd)->UseManualTime();
BENCHMARK(BoostFind);
BENCHMARK(BoostRemoveOldest)->UseManualTime();

}  // namespace
}  // namespace fonklav::bench
