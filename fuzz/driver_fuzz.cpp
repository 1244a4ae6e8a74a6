#include <algorithm>
#include <cstdint>
#include <span>

#include "tapi/mTAPIFunctions.h"
#include "tests/tapi/TapiSystem.h"

// A driver that fills every structure as it likes and sends what it likes: the line object must stay calm.
namespace fonklav::test {
namespace {

/// Deals out the fuzzer's bytes.
class Bytes {
 public:
  explicit Bytes(std::span<const std::uint8_t> data) : data_(data) {}

  void Fill(std::span<std::byte> target) {
    const std::size_t count = std::min(target.size(), data_.size());
    std::ranges::copy(std::as_bytes(data_.first(count)), target.begin());
    data_ = data_.subspan(count);
  }
  std::uint32_t Number() {
    std::uint32_t number = 0;
    Fill(std::as_writable_bytes(std::span(&number, 1)));
    return number;
  }
  [[nodiscard]] bool Empty() const { return data_.empty(); }

 private:
  std::span<const std::uint8_t> data_;
};

/// Telephony that succeeds and leaves garbage behind.
class GarbageTelephony : public LineSimulator {
 public:
  explicit GarbageTelephony(Bytes& bytes)
      : LineSimulator(Scenario::Parse("device\nlocation local=0\n")), bytes_(bytes) {}

  std::int32_t lineGetDevCaps(HLINEAPP, std::uint32_t, std::uint32_t, std::uint32_t,
                              std::span<std::byte> caps) override {
    bytes_.Fill(caps);
    return 0;
  }
  std::int32_t lineGetTranslateCaps(HLINEAPP, std::uint32_t, std::span<std::byte> caps) override {
    bytes_.Fill(caps);
    return 0;
  }
  std::int32_t lineTranslateAddress(HLINEAPP, std::uint32_t, std::uint32_t, const char*, std::uint32_t, std::uint32_t,
                                    std::span<std::byte> output) override {
    bytes_.Fill(output);
    return 0;
  }

 private:
  Bytes& bytes_;
};

void Run(Bytes bytes) {
  GarbageTelephony telephony(bytes);
  TapiSystem system("", &telephony);
  LineState lines;
  mTAPIFunctions functions(system.diagnostics, lines);
  const auto& line = system.line;
  static_cast<void>(line->Create());
  functions.GetTAPIInterfaces(*line);
  static_cast<void>(functions.GetLineInfo(*line, 0));
  static_cast<void>(line->OpenLine());
  static_cast<void>(line->MakeCallAsynch("+49 30 1234567"));
  for (int message = 0; message < 64 && !bytes.Empty(); ++message) {
    system.callback.LineCallBackProc(bytes.Number(), bytes.Number() % 16, bytes.Number() % 4, bytes.Number(),
                                     bytes.Number(), bytes.Number());
  }
}

}  // namespace
}  // namespace fonklav::test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fonklav::test::Run(fonklav::test::Bytes({data, size}));
  return 0;
}
