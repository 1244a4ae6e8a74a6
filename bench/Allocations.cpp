#include <atomic>
#include <cstdlib>
#include <new>

#include "bench/Measure.h"

// Every allocation of this program is counted: the one place where a benchmark needs what a whole program shares.
namespace {

std::atomic<std::size_t> allocations{0};

}  // namespace

void* operator new(std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

std::size_t fonklav::bench::Allocations() noexcept { return allocations.load(std::memory_order_relaxed); }
