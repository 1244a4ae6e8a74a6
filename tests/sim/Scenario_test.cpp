#include <gtest/gtest.h>

#include <filesystem>

#include "sim/Scenario.h"
#include "sim/ScenarioLine.h"

namespace fonklav {
namespace {

/// What parsing `text` complains of.
std::string ErrorOf(const std::string& text) {
  try {
    static_cast<void>(Scenario::Parse(text));
  } catch (const ScenarioError& error) {
    return error.what();
  }
  return "none";
}

TEST(Scenario, EveryOneThatIsShippedIsUnderstood) {
  const auto folder = std::filesystem::path(__FILE__).parent_path() / "../../sim/scenarios";
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    EXPECT_NO_THROW(static_cast<void>(Scenario::Load(entry.path().string()))) << entry.path();
    ++count;
  }
  EXPECT_GT(count, 15U);
}

TEST(Scenario, LineIsNamedWithWhatIsWrongInIt) {
  const struct {
    const char* text;
    const char* error;
  } rows[] = {
      {"# only a remark\n\n", "none"},
      {"device nmae=x", "line 1: 'nmae' is not understood here"},
      {"device\nfrob", "line 2: unknown directive 'frob'"},
      {"device name=\"x", "line 1: a quote is not closed"},
      {"device name=\"\\q\"", "line 1: an escape is none of \\\" \\\\ \\xNN"},
      {"device media=0xG", "line 1: '0xG' is no number"},
      {"device media=-1", "line 1: '-1' is no number"},
      {"device media=", "line 1: '' is no number"},
      {"tapi version=0x100000000", "line 1: '0x100000000' is no number"},
      {"call", "line 1: reply, state, message or nothing is missing"},
      {"call state", "line 1: a call state is missing"},
      {"call state ringing", "line 1: 'ringing' is no number"},
      {"call sleep", "line 1: 'sleep' is none of reply, state, message, nothing"},
      {"refuse lineOpen", "line 1: a code is missing"},
      {"patch caps", "line 1: 'caps' is none of devcaps, translatecaps, translateoutput"},
      {"codes", "line 1: country=, city= or none is missing"},
      {"translate blanks=some", "line 1: blanks are optional or required"},
      {"\nrepeat x device", "line 2: 'x' is no number"},
      {"repeat 2 device {n}", "line 1: '1' is not understood here"},
  };
  for (const auto& row : rows) EXPECT_EQ(ErrorOf(row.text), row.error) << row.text;
  EXPECT_THROW(static_cast<void>(Scenario::Load("no such file")), ScenarioError);
}

TEST(Scenario, QuotesBytesAndRepetition) {
  const auto scenario = Scenario::Parse(
      "device name=\"a \\\"b\\\" \\xFC=#\" switch=S0 # remark\r\n"
      "repeat 3 device name=\"Leitung {n}\" id={n}0\n");
  ASSERT_EQ(scenario.devices.size(), 4U);
  EXPECT_EQ(scenario.devices[0].name, "a \"b\" \xFC=#");
  EXPECT_EQ(scenario.devices[0].switchInfo, "S0");
  EXPECT_EQ(scenario.devices[3].name, "Leitung 3");
  EXPECT_EQ(scenario.devices[3].numbers.at(28), 30U);
}

TEST(Scenario, StepsOfItsOwnReplaceTheUsualOnes) {
  EXPECT_EQ(Scenario().callSteps.size(), 1U);
  EXPECT_EQ(Scenario().dropSteps.size(), 2U);
  const auto scenario = Scenario::Parse("call reply after=5\ncall state BUSY after=7\ndrop nothing");
  ASSERT_EQ(scenario.callSteps.size(), 2U);
  EXPECT_EQ(scenario.callSteps[1].message.p1, 0x40U);
  EXPECT_EQ(scenario.callSteps[1].after.count(), 7);
  EXPECT_TRUE(scenario.dropSteps.empty());
}

}  // namespace
}  // namespace fonklav
