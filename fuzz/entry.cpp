#include "fuzz/Bytes.h"

// Where libFuzzer comes in.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fonklav::test::Fuzz(fonklav::test::Bytes({data, size}));
  return 0;
}
