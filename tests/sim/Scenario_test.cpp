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
  const auto folder = std::filesystem::path(FONKLAV_ROOT) / "sim/scenarios";
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    EXPECT_NO_THROW(static_cast<void>(Scenario::Load(entry.path().string()))) << entry.path();
    ++count;
  }
  EXPECT_GT(count, 15U);
}

TEST(Scenario, LineIsNamedWithWhatIsWrongInIt) {
  const std::pair<const char*, const char*> rows[] = {
      {"device nmae=x", "line 1: 'nmae' is not understood here"},
      {"device\nfrob", "line 2: unknown directive 'frob'"},
      {"device name=\"x", "line 1: a quote is not closed"},
      {"device media=0xG", "line 1: '0xG' is no number"},
      {"call", "line 1: reply, state, message or nothing is missing"},
      {"refuse lineOpen", "line 1: a code is missing"},
      {"patch caps", "line 1: 'caps' is none of devcaps, translatecaps, translateoutput"},
      {"repeat 2 device {n}", "line 1: '1' is not understood here"},
  };
  for (const auto& [text, error] : rows) EXPECT_EQ(ErrorOf(text), error) << text;
  EXPECT_THROW(static_cast<void>(Scenario::Load("no such file")), ScenarioError);
}

}  // namespace
}  // namespace fonklav
