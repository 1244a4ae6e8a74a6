#include <gmock/gmock.h>

#include <cstring>

#include "sim/AddressTranslation.h"
#include "sim/TapiCodes.h"
#include "tests/sim/TestLine.h"

namespace fonklav {
namespace {

using namespace sim;

/// A caller's buffer that says how long it is.
class Buffer {
 public:
  explicit Buffer(std::uint32_t total) : bytes_(std::max<std::size_t>(total, 4), std::byte{0xEE}) {
    std::memcpy(bytes_.data(), &total, sizeof total);
  }
  operator std::span<std::byte>() { return bytes_; }
  [[nodiscard]] std::uint32_t Number(std::size_t offset) const {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes_.data() + offset, sizeof number);
    return number;
  }
  [[nodiscard]] std::string Text(std::size_t field) const {
    return std::string(reinterpret_cast<const char*>(bytes_.data()) + Number(field + 4), Number(field));
  }

 private:
  std::vector<std::byte> bytes_;
};

const std::string kNul(1, '\0');

TEST(DevCaps, StringsThatDoNotFitAreLeftOutWhole) {
  TestLine line("device name=Line provider=Provider switch=S");
  line.Register();
  Buffer roomy(2301);
  ASSERT_EQ(line.sim.lineGetDevCaps(line.app, 0, TAPI_VERSION3_0, 0, roomy), 0);
  EXPECT_EQ(roomy.Text(offsetof(LINEDEVCAPS, dwLineNameSize)), "Line" + kNul);
  const std::uint32_t needed = roomy.Number(4);
  EXPECT_EQ(needed, 292U + 9 + 2 + 5);
  Buffer tight(needed - 1);
  ASSERT_EQ(line.sim.lineGetDevCaps(line.app, 0, TAPI_VERSION3_0, 0, tight), 0);
  EXPECT_EQ(tight.Number(4), needed);
  EXPECT_EQ(tight.Text(offsetof(LINEDEVCAPS, dwProviderInfoSize)), "Provider" + kNul);
  EXPECT_EQ(tight.Number(offsetof(LINEDEVCAPS, dwLineNameSize)), 0U);
  EXPECT_EQ(tight.Number(offsetof(LINEDEVCAPS, dwLineNameOffset)), 0U);
}

TEST(DevCaps, FixedPartGrowsWithTheVersion) {
  TestLine line("device");
  line.Register();
  const std::pair<std::uint32_t, std::uint32_t> sizes[] = {
      {TAPI_VERSION1_3, 236}, {TAPI_VERSION1_4, 240}, {0x00020000, 252}, {0x00020002, 268}, {TAPI_VERSION3_0, 292}};
  for (const auto& [version, size] : sizes) {
    Buffer enough(size);
    Buffer small(size - 1);
    EXPECT_EQ(line.sim.lineGetDevCaps(line.app, 0, version, 0, enough), 0) << HexText(version);
    EXPECT_EQ(line.sim.lineGetDevCaps(line.app, 0, version, 0, small), LINEERR_STRUCTURETOOSMALL) << HexText(version);
  }
  Buffer none(0);
  EXPECT_EQ(line.sim.lineGetDevCaps(line.app, 0, TAPI_VERSION3_0, 0, none), LINEERR_STRUCTURETOOSMALL);
  Buffer lying(100);
  const std::uint32_t claim = 5000;
  std::memcpy(std::span<std::byte>(lying).data(), &claim, sizeof claim);
  EXPECT_EQ(line.sim.lineGetDevCaps(line.app, 0, TAPI_VERSION3_0, 0, lying), LINEERR_STRUCTURETOOSMALL);
}

TEST(TranslateCaps, LocationsThatDoNotFitAreLeftOutWhole) {
  TestLine line("device\nlocation");
  line.Register();
  Buffer caps(6189);
  ASSERT_EQ(line.sim.lineGetTranslateCaps(line.app, TAPI_VERSION1_4, caps), 0);
  Buffer small(60);
  ASSERT_EQ(line.sim.lineGetTranslateCaps(line.app, TAPI_VERSION1_4, small), 0);
  EXPECT_EQ(small.Number(offsetof(LINETRANSLATECAPS, dwNumLocations)), 0U);
  EXPECT_EQ(small.Number(4), caps.Number(4));
}

TEST(Translation, CanonicalNumbersGetPrefixesOthersPass) {
  const Scenario::Location berlin{
      .id = 1, .name = "", .country = 49, .city = "30", .localAccess = "8", .longDistanceAccess = "9"};
  const char* const no = "refused";
  // Where a canonical number has its blanks, or is refused, and where it need not have them.
  const std::tuple<const char*, const char*, const char*> rows[] = {{"030 12/34", "030 12/34", "030 12/34"},
                                                                    {"", "", ""},
                                                                    {"+49 (30) 1234", "81234", "81234"},
                                                                    {"+49 (89) 1234", "90891234", "90891234"},
                                                                    {"+1 (425) 555", "9001425555", "9001425555"},
                                                                    {"+1 555", "9001555", "9001555"},
                                                                    {"+49(30)1234", no, "81234"},
                                                                    {"+49(", no, no},
                                                                    {"+", no, no},
                                                                    {"+49()30  1234", no, no},
                                                                    {"+49 (30) ", no, no}};
  for (const auto& [given, strict, kind] : rows) {
    EXPECT_EQ(TranslateAddress(given, berlin, false).value_or(no), strict) << given;
    EXPECT_EQ(TranslateAddress(given, berlin, true).value_or(no), kind) << given;
  }
}

}  // namespace
}  // namespace fonklav
