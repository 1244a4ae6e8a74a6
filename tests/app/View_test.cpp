#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/app/Dialer.h"

// What the form hands to the window that shows it.
namespace fonklav::test {
namespace {

constexpr const char* kScenario = "device name=A version=0x00020000\nlocation local=9\n";

TEST(View, TheStatusBoxIsHandedWhatIsAddedHoweverLongItHasBecome) {
  Dialer dialer(kScenario);
  dialer.StoreLine("A");
  dialer.Start("/run");
  FakeView& view = dialer.View();
  std::string shown;
  std::size_t firstCall = 0;
  for (int call = 0; call < 20; ++call) {
    view.changed.clear();
    view.appended.clear();
    dialer.Command("cmd|call|0301234567");
    dialer.Pump(100);
    dialer.Command("cmd|hangup");
    dialer.Pump(100);
    dialer.Command("");
    std::size_t handed = 0;
    for (const auto& [id, text] : view.appended) {
      EXPECT_EQ(id, ControlId::txtTestStatus);
      handed += text.size();
      shown += text;
    }
    if (call == 0) firstCall = handed;
    EXPECT_EQ(handed, firstCall) << call;
    EXPECT_EQ(std::ranges::count(view.changed, ControlId::txtTestStatus), 0) << "the whole text was shown anew";
  }
  EXPECT_GT(firstCall, 0U);
  EXPECT_EQ(shown, dialer.Controls()[ControlId::txtTestStatus].Text()) << "what was handed over is what the box holds";
}

TEST(View, SettingsBringsAVisibleWindowToTheFrontAndNoOtherCommandDoes) {
  Dialer dialer(kScenario);
  dialer.Start("/sett");
  for (const auto& [command, raises] : {std::pair{"cmd|hangup", 0}, std::pair{"settings", 1}, std::pair{"unload", 0}}) {
    dialer.View().raises = 0;
    dialer.Command(command);
    EXPECT_EQ(dialer.View().raises, raises) << command;
  }
}

TEST(View, AFaultThatNobodyCaughtIsToldUnderTheProgramsTitle) {
  Dialer dialer(kScenario);
  dialer.Start("/run");
  dialer.program->ReportFault("the window could not be made");
  ASSERT_EQ(dialer.Messages().size(), 1U);
  EXPECT_EQ(dialer.Messages()[0].prompt, "the window could not be made");
  EXPECT_EQ(dialer.Messages()[0].title, "Rufmon - FonklavTAPI");
  EXPECT_EQ(dialer.Messages()[0].style, kMessageBoxCritical);
}

}  // namespace
}  // namespace fonklav::test
