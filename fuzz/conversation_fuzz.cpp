#include <algorithm>
#include <cstdint>
#include <string>

#include "tests/app/BareDialer.h"

// A main program that says whatever it likes: the input is cut at NULs into the item's successive values.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using fonklav::test::BareDialer;
  BareDialer dialer("device name=L\nlocation local=0\ncall reply after=1\ncall state CONNECTED after=2\n");
  dialer.StoreLine("L");
  if (!dialer.Start("/run")) return 0;
  const std::string input(reinterpret_cast<const char*>(data), size);
  int commands = 0;
  for (std::size_t start = 0; start < input.size() && commands < 32; ++commands) {
    const std::size_t end = std::min(input.find('\0', start), input.size());
    dialer.Command(input.substr(start, end - start));
    dialer.Pump(3);
    start = end + 1;
  }
  return 0;
}
