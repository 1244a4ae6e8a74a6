#include "fuzz/Bytes.h"
#include "tapi/mTAPIFunctions.h"
#include "tests/tapi/TapiSystem.h"

// A driver that fills every structure as it likes and sends what it likes: the line object must stay calm.
namespace fonklav::test {
namespace {

/// Telephony that succeeds and leaves garbage behind.
class GarbageTelephony : public LineSimulator {
 public:
  explicit GarbageTelephony(Bytes& bytes) : LineSimulator(Plain()), bytes_(bytes) {}

  std::int32_t lineInitializeEx(HLINEAPP& lineApp, LineMessageSink& sink, const char* friendlyName,
                                std::uint32_t& numDevs, std::uint32_t& apiVersion,
                                LINEINITIALIZEEXPARAMS& params) override {
    const auto result = LineSimulator::lineInitializeEx(lineApp, sink, friendlyName, numDevs, apiVersion, params);
    const std::size_t devices = bytes_.Below(8);
    if (devices != 0) numDevs = devices == 7 ? bytes_.Number() | 0x8001 : static_cast<std::uint32_t>(devices % 3);
    return result;
  }
  std::int32_t lineGetDevCaps(HLINEAPP, std::uint32_t, std::uint32_t, std::uint32_t,
                              std::span<std::byte> caps) override {
    return Litter(caps);
  }
  std::int32_t lineGetTranslateCaps(HLINEAPP, std::uint32_t, std::span<std::byte> caps) override {
    return Litter(caps);
  }
  std::int32_t lineTranslateAddress(HLINEAPP, std::uint32_t, std::uint32_t, const char*, std::uint32_t, std::uint32_t,
                                    std::span<std::byte> output) override {
    return Litter(output);
  }
  std::int32_t tapiGetLocationInfo(std::span<char, 8> country, std::span<char, 8> city) override {
    bytes_.Fill(std::as_writable_bytes(std::span<char>(country)));
    bytes_.Fill(std::as_writable_bytes(std::span<char>(city)));
    return 0;
  }

 private:
  static const Scenario& Plain() {
    static const Scenario scenario = Scenario::Parse("device\nlocation local=0\n");
    return scenario;
  }
  /// Garbage in the front, where the numbers stand, and at the end a text without one.
  std::int32_t Litter(std::span<std::byte> structure) {
    const std::size_t front = bytes_.Below(256);
    std::ranges::fill(structure.last(32), std::byte{'x'});
    bytes_.Fill(structure.first(front));
    return 0;
  }

  Bytes& bytes_;
};

/// No text of a structure is longer than the structure, or has a NUL.
void CheckTexts(const CvbTAPILine& line) {
  for (const std::string* text : {&line.LineName(), &line.ProviderInfo(), &line.SwitchInfo()}) {
    Require(text->find('\0') == std::string::npos && CharacterCount(*text) <= 2301, "a text of the structure");
  }
  for (const std::string* text : {&line.OutsideLocalAccess(), &line.OutsideLongDistanceAccess()}) {
    Require(text->find('\0') == std::string::npos && CharacterCount(*text) <= 6189, "a code of the location");
  }
  Require(CharacterCount(line.AreaCode()) < 8 && CharacterCount(line.Country()) < 8, "a code and its NUL in 8 bytes");
}

}  // namespace

void Fuzz(Bytes bytes) {
  GarbageTelephony telephony(bytes);
  TapiSystem system("", Stage::Made, &telephony);
  LineState lines;
  mTAPIFunctions functions(system.diagnostics, lines);
  const auto& line = system.line;
  static_cast<void>(line->CheckAreaCodes());
  static_cast<void>(line->Create());
  if (line->numLines() <= 8) functions.GetTAPIInterfaces(*line);
  static_cast<void>(functions.GetLineInfo(*line, 0));
  CheckTexts(*line);
  static_cast<void>(line->OpenLine());
  static_cast<void>(line->MakeCallAsynch("+49 30 1234567"));
  for (int message = 0; message < 64 && !bytes.Empty(); ++message) {
    const std::uintptr_t instance = bytes.Below(4);
    const std::uint32_t kind = bytes.Flag() ? LINE_CALLSTATE : static_cast<std::uint32_t>(bytes.Below(16));
    const std::uint32_t first = bytes.Flag() ? 1U << bytes.Below(16) : static_cast<std::uint32_t>(bytes.Below(8));
    system.callback.LineCallBackProc(bytes.Number(), kind, instance, first, bytes.Number(), 0);
  }
  Require(telephony.OpenLines() <= 1 && telephony.LiveCalls() <= 1, "one line and one call");
}

}  // namespace fonklav::test
