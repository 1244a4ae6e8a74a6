#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "fuzz/Bytes.h"

// Runs the kept inputs through a fuzz target, where there is no fuzzer to do it. An empty folder fails.
int main(int argc, char** argv) {
  std::size_t inputs = 0;
  if (argc != 2) return 2;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
    std::cout << entry.path().filename().string() << std::endl;  // flushed: the last one is the one that failed
    fonklav::test::Fuzz(fonklav::test::Bytes(bytes));
    ++inputs;
  }
  return inputs > 0 ? 0 : 1;
}
