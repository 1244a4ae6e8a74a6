#include <gmock/gmock.h>

#include <cstring>
#include <optional>

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

TEST(Versions, AreNegotiatedEachDeviceForItself) {
  TestLine line("tapi version=0x00020002\ndevice version=0x00010004\ndevice\ndevice low=0x00030000\ndevice ext2=7");
  ASSERT_EQ(line.Register(), 0);
  EXPECT_EQ(line.devices, 4U);
  EXPECT_EQ(line.version, 0x00020002U);
  std::uint32_t version = 0;
  LINEEXTENSIONID extension{};
  const auto negotiate = [&](std::uint32_t device) {
    return line.sim.lineNegotiateAPIVersion(line.app, device, TAPI_VERSION1_3, TAPI_VERSION3_0, version, extension);
  };
  EXPECT_EQ(negotiate(0), 0);
  EXPECT_EQ(version, TAPI_VERSION1_4);
  EXPECT_EQ(negotiate(1), 0);
  EXPECT_EQ(version, 0x00020002U);
  EXPECT_EQ(negotiate(2), LINEERR_INCOMPATIBLEAPIVERSION);
  EXPECT_EQ(negotiate(3), 0);
  EXPECT_EQ(extension.dwExtensionID2, 7U);
  EXPECT_EQ(negotiate(4), LINEERR_BADDEVICEID);
}

TEST(Versions, TelephonyUpTo14IsAskedInItsOwnVersion) {
  TestLine line("tapi version=0x00010004\ndevice");
  EXPECT_EQ(line.Register(), LINEERR_INCOMPATIBLEAPIVERSION);
  line.version = TAPI_VERSION1_4;
  EXPECT_EQ(line.Register(), 0);
  EXPECT_EQ(line.version, TAPI_VERSION1_4);
  TestLine later("device");
  later.version = TAPI_VERSION1_4;
  EXPECT_EQ(later.Register(), LINEERR_INCOMPATIBLEAPIVERSION);
}

TEST(DevCaps, StringsThatDoNotFitAreLeftOutWhole) {
  TestLine line("device name=Line provider=Provider switch=S media=0x1C");
  line.Register();
  Buffer roomy(2301);
  ASSERT_EQ(line.sim.lineGetDevCaps(line.app, 0, TAPI_VERSION3_0, 0, roomy), 0);
  EXPECT_EQ(roomy.Text(offsetof(LINEDEVCAPS, dwLineNameSize)), "Line" + kNul);
  EXPECT_EQ(roomy.Number(offsetof(LINEDEVCAPS, dwMediaModes)), 0x1CU);
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
  for (const auto& [version, size] : {std::pair{TAPI_VERSION1_3, 236U},
                                      {TAPI_VERSION1_4, 240U},
                                      {0x00020000U, 252U},
                                      {0x00020002U, 268U},
                                      {TAPI_VERSION3_0, 292U}}) {
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

TEST(TranslateCaps, LocationsWithTheirCodes) {
  TestLine line("device\nlocation id=3 local=0 long=00\nlocation id=9 current=1 local=9 long=99");
  line.Register();
  Buffer caps(6189);
  ASSERT_EQ(line.sim.lineGetTranslateCaps(line.app, TAPI_VERSION1_4, caps), 0);
  EXPECT_EQ(caps.Number(offsetof(LINETRANSLATECAPS, dwNumLocations)), 2U);
  EXPECT_EQ(caps.Number(offsetof(LINETRANSLATECAPS, dwCurrentLocationID)), 9U);
  EXPECT_EQ(caps.Number(offsetof(LINETRANSLATECAPS, dwLocationListSize)), 2 * sizeof(LINELOCATIONENTRY));
  const std::size_t second = caps.Number(offsetof(LINETRANSLATECAPS, dwLocationListOffset)) + sizeof(LINELOCATIONENTRY);
  EXPECT_EQ(caps.Text(second + offsetof(LINELOCATIONENTRY, dwLocalAccessCodeSize)), "9" + kNul);
  EXPECT_EQ(caps.Text(second + offsetof(LINELOCATIONENTRY, dwLongDistanceAccessCodeSize)), "99" + kNul);
  Buffer small(60);
  ASSERT_EQ(line.sim.lineGetTranslateCaps(line.app, TAPI_VERSION1_4, small), 0);
  EXPECT_EQ(small.Number(offsetof(LINETRANSLATECAPS, dwNumLocations)), 0U);
  EXPECT_EQ(small.Number(4), caps.Number(4));
}

TEST(TranslateCaps, WithoutALocationTheSettingsAreCorrupt) {
  TestLine line("device");
  line.Register();
  Buffer caps(6189);
  EXPECT_EQ(line.sim.lineGetTranslateCaps(line.app, TAPI_VERSION1_4, caps), LINEERR_INIFILECORRUPT);
  EXPECT_EQ(line.sim.lineTranslateAddress(line.app, 0, TAPI_VERSION3_0, "1234", 0, 0, caps), LINEERR_INIFILECORRUPT);
}

TEST(LocationInfo, CodesMissingOrTooLong) {
  char country[8] = "       ";
  char city[8] = "       ";
  TestLine missing("location\ncodes none");
  EXPECT_EQ(missing.sim.tapiGetLocationInfo(country, city), TAPIERR_REQUESTFAILED);
  EXPECT_STREQ(country, "       ");
  TestLine plain("location country=44 city=20");
  EXPECT_EQ(plain.sim.tapiGetLocationInfo(country, city), 0);
  EXPECT_STREQ(country, "44");
  EXPECT_STREQ(city, "20");
  TestLine full("location\ncodes country=49 city=123456789");
  EXPECT_EQ(full.sim.tapiGetLocationInfo(country, city), 0);
  EXPECT_EQ(std::string(city, 8), "12345678") << "no NUL ends it";
}

struct Address {
  const char* given;
  std::optional<std::string> strict;
  std::optional<std::string> kind;
};

TEST(Translation, CanonicalNumbersGetPrefixesOthersPass) {
  const Scenario::Location berlin{
      .id = 1, .name = "", .country = 49, .city = "30", .localAccess = "8", .longDistanceAccess = "9"};
  const Address rows[] = {
      {"0301234567", "0301234567", "0301234567"},
      {"030 12/34", "030 12/34", "030 12/34"},
      {"", "", ""},
      {"+49 (30) 1234", "81234", "81234"},
      {"+49 (89) 1234", "90891234", "90891234"},
      {"+1 (425) 555", "9001425555", "9001425555"},
      {"+1 555", "9001555", "9001555"},
      {"+49(30)1234", std::nullopt, "81234"},
      {"+49(", std::nullopt, std::nullopt},
      {"+", std::nullopt, std::nullopt},
      {"+49()30  1234", std::nullopt, std::nullopt},
      {"+49 (30) ", std::nullopt, std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(TranslateAddress(row.given, berlin, false), row.strict) << row.given;
    EXPECT_EQ(TranslateAddress(row.given, berlin, true), row.kind) << row.given;
  }
}

TEST(Translation, ScenarioMayForceResultAndOffsets) {
  TestLine line("device\nlocation\ntranslate prefix=T\npatch translateoutput offset=16 value=12");
  line.Register();
  Buffer output(1064);
  ASSERT_EQ(line.sim.lineTranslateAddress(line.app, 0, TAPI_VERSION3_0, "1234", 0, 0, output), 0);
  EXPECT_EQ(output.Number(offsetof(LINETRANSLATEOUTPUT, dwDialableStringSize)), 6U);
  EXPECT_EQ(output.Number(offsetof(LINETRANSLATEOUTPUT, dwDialableStringOffset)), 12U);
  EXPECT_EQ(output.Text(offsetof(LINETRANSLATEOUTPUT, dwDisplayableStringSize)), "1234" + kNul);
}

}  // namespace
}  // namespace fonklav
