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

#include "bench/Measure.h"

// What one would use instead, on the same work. Where a library does less than that, it is said.
namespace fonklav::bench {
namespace {

void FmtTracedStep(benchmark::State& state) {
  std::deque<std::string> queue;
  const std::string number = "0301234567";
  const auto step = [&] {
    queue.push_back(fmt::format("{:04}/{:02}/{:02}  {:02}:{:02}:{:02}  {} v{}  {} {:02}(S:{}, N:{}, B:{:d})", 2015, 3,
                                7, 9, 5, 31, "FVT", "1.0", "fMain.cmdWahl_Click", queue.size() + 1, number, 0, true));
  };
  Measure(state, 50, step, [&] { queue.clear(); });
}

/// The file stays open, which ours must not; a line that is switched off is told apart by its level.
void Spdlog(benchmark::State& state, spdlog::level::level_enum level) {
  spdlog::logger logger("bench", std::make_shared<spdlog::sinks::basic_file_sink_st>("bench.spdlog", true));
  logger.set_pattern("%Y/%m/%d  %H:%M:%S  %v");
  logger.flush_on(spdlog::level::info);
  const std::string text = "cmd|call|0301234567";
  Measure(state, 200, [&] { logger.log(level, "TAPI FVT DDE Execute - {}", text); });
}

void AbslDispatch(benchmark::State& state) {
  const std::string value = "cmd|call|0301234567";
  std::size_t dialed = 0;
  Measure(state, 1000, [&] {
    const std::vector<absl::string_view> fields = absl::StrSplit(value, '|');
    if (fields.size() > 2 && fields[0] == "cmd" && fields[1] == "call") dialed += fields[2].size();
    benchmark::DoNotOptimize(dialed);
  });
}

void Libphonenumber(benchmark::State& state) {
  const auto& library = *i18n::phonenumbers::PhoneNumberUtil::GetInstance();
  std::string number;
  Measure(state, 1000, [&] { library.NormalizeDiallableCharsOnly(&(number = "+49 30 1234567")); });
}

/// Keys are compared as they stand, and there are no positions.
struct Boost {
  using Item = std::pair<std::string, std::string>;
  using Key = boost::multi_index::hashed_unique<boost::multi_index::member<Item, std::string, &Item::first>>;
  void Add(const std::string& key, std::string value) { items.push_back({key, std::move(value)}); }
  const Item* Find(const std::string& key) const { return &*items.get<1>().find(key); }
  void RemoveFirst() { items.pop_front(); }
  boost::multi_index_container<Item, boost::multi_index::indexed_by<boost::multi_index::sequenced<>, Key>> items;
};

BENCHMARK(FmtTracedStep)->Name("{fmt}");
BENCHMARK_CAPTURE(Spdlog, line, spdlog::level::info)->Name("spdlog/line");
BENCHMARK_CAPTURE(Spdlog, off, spdlog::level::debug)->Name("spdlog/off");
BENCHMARK(AbslDispatch)->Name("Abseil");
BENCHMARK(Libphonenumber)->Name("libphonenumber");
BENCHMARK_TEMPLATE(Add, Boost)->Name("Boost/Add")->Arg(10000);
BENCHMARK_TEMPLATE(Find, Boost)->Name("Boost/Find")->Arg(10000);
BENCHMARK_TEMPLATE(RemoveOldest, Boost)->Name("Boost/RemoveOldest")->Arg(10000);

}  // namespace
}  // namespace fonklav::bench
