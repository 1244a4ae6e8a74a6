#pragma once

#include <malloc.h>

#include <cstdlib>
#include <new>

// For one source of a program: replaces operator new, to count what is asked for and held, and to run out of memory on
// demand.
namespace fonklav::test {

struct Memory {
  long blocks{0};
  long bytes{0};
  long allocations{0};
  long failing{-1};  ///< the one of these that fails
};
inline Memory memory;  // NOLINT: operator new has no other way to it

}  // namespace fonklav::test

// NOLINTBEGIN(misc-definitions-in-headers). Not inlined, or the compiler takes them for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size) {
  auto& memory = fonklav::test::memory;
  if (memory.allocations++ == memory.failing) throw std::bad_alloc();
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  ++memory.blocks;
  memory.bytes += static_cast<long>(malloc_usable_size(block));
  return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
  if (block == nullptr) return;
  --fonklav::test::memory.blocks;
  fonklav::test::memory.bytes -= static_cast<long>(malloc_usable_size(block));
  std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t /*size*/) noexcept { operator delete(block); }
// NOLINTEND(misc-definitions-in-headers)
