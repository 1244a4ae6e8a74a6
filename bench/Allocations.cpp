#include <cstdlib>
#include <new>

#include "bench/Measure.h"

// Every allocation of this program counts: the one thing that a whole program has to share. One thread only.
static std::size_t count = 0;

void* operator new(std::size_t size) {
  ++count;
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

std::size_t fonklav::bench::Allocations() noexcept { return count; }
