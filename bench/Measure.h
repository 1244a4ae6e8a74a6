#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <vector>

namespace fonklav::bench {

/// Calls of operator new in this process so far.
[[nodiscard]] long Allocations() noexcept;

/// Nanoseconds: of this thread's processor time, which other programs leave alone, where a stretch is long, and by the
/// wall clock, which is asked in no time, where it is short.
inline double Now(std::int64_t works) {
  timespec now{};
  clock_gettime(works < 50 ? CLOCK_MONOTONIC : CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

/// Runs the body `works` times at a stretch and undoes it, which is not measured, over and over. The result is one
/// work's share of the median stretch: what else the machine does in between moves the mean, but not that.
template <typename Body, typename Undo = void (*)()>
void Measure(
    benchmark::State& state, std::int64_t works, Body&& body, Undo&& undo = [] {}) {
  std::vector<double> stretches;
  long allocations = 0;
  for (auto _ : state) {
    const long before = Allocations();
    const double start = Now(works);
    for (std::int64_t work = 0; work < works; ++work) body();
    stretches.push_back((Now(works) - start) / static_cast<double>(works));
    allocations += Allocations() - before;
    undo();
  }
  const auto middle = stretches.begin() + static_cast<std::ptrdiff_t>(stretches.size() / 2);
  std::nth_element(stretches.begin(), middle, stretches.end());
  state.counters["ns"] = *middle;
  const double all = static_cast<double>(stretches.size()) * static_cast<double>(works);
  state.counters["allocations"] = static_cast<double>(allocations) / all;
}

/// A collection of `count` items under distinct keys, and a work on each of them.
inline std::string Key(std::int64_t number) { return "Key" + std::to_string(number); }
template <typename Collection>
void Fill(Collection& collection, std::int64_t count) {
  for (std::int64_t item = 0; item < count; ++item) collection.Add(Key(item), "2026/03/07  a traced line");
}
template <typename Collection>
void Add(benchmark::State& state) {
  Collection collection;
  std::int64_t next = 0;
  const auto add = [&] { collection.Add(Key(next++), "2026/03/07  a traced line"); };
  Measure(state, state.range(0), add, [&] { collection = Collection(), next = 0; });
}
template <typename Collection>
void Find(benchmark::State& state) {
  Collection collection;
  Fill(collection, state.range(0));
  std::vector<std::string> keys;
  for (std::int64_t key = 0; key < 1000; ++key) keys.push_back(Key(key * 7919 % state.range(0)));
  std::size_t next = 0;
  Measure(state, 1000, [&] { benchmark::DoNotOptimize(collection.Find(keys[next++ % 1000])); });
}
template <typename Collection>
void At(benchmark::State& state) {
  Collection collection;
  Fill(collection, state.range(0));
  std::int64_t next = 0;
  Measure(state, 1000, [&] { benchmark::DoNotOptimize(collection.At(++next * 7919 % state.range(0) + 1)); });
}
template <typename Collection>
void RemoveOldest(benchmark::State& state) {
  Collection collection;
  Fill(collection, state.range(0));
  const auto remove = [&] { collection.RemoveFirst(); };
  Measure(state, state.range(0), remove, [&] { Fill(collection, state.range(0)); });
}

}  // namespace fonklav::bench
