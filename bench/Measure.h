#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace fonklav::bench {

/// Calls of operator new in this process so far.
[[nodiscard]] std::size_t Allocations() noexcept;

/// Runs the body over and over and counts what it allocates.
template <typename Body>
void Measure(benchmark::State& state, Body&& body) {
  const std::size_t before = Allocations();
  for (auto _ : state) body();
  state.counters["allocations"] =
      benchmark::Counter(static_cast<double>(Allocations() - before), benchmark::Counter::kAvgIterations);
}

/// The same for a body that has to be undone, outside of what is measured. Each run is `works` pieces of work, and the
/// result is a piece's share of the median run: what else the machine does in between moves the mean, but not that.
template <typename Body, typename Undo>
void MeasureSingly(benchmark::State& state, std::size_t works, Body&& body, Undo&& undo) {
  using Clock = std::chrono::steady_clock;
  std::vector<double> samples;
  std::size_t allocations = 0;
  for (auto _ : state) {
    const std::size_t before = Allocations();
    const auto start = Clock::now();
    body();
    const std::chrono::duration<double> time = Clock::now() - start;
    allocations += Allocations() - before;
    state.SetIterationTime(time.count());
    samples.push_back(time.count() * 1e9 / static_cast<double>(works));
    undo();
  }
  const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
  std::nth_element(samples.begin(), middle, samples.end());
  state.counters["ns"] = *middle;
  state.counters["allocations"] = benchmark::Counter(static_cast<double>(allocations) / static_cast<double>(works),
                                                     benchmark::Counter::kAvgIterations);
}

}  // namespace fonklav::bench
