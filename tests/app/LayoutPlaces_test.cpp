#include "app/Layout.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace fonklav::test {
namespace {

TEST(WindowGeometry, NoHeightReadsBackHigherThanItWas) {
  for (const unsigned dpi : {96U, 120U, 144U, 168U, 192U, 240U, 288U}) {
    for (const float twips : {kFormHeightCollapsed, kFormHeightExpanded, kFormWidth}) {
      const int pixels = LengthToPixels(twips, dpi);
      EXPECT_LE(ToTwips(pixels, dpi), twips) << dpi;
      EXPECT_GT(ToTwips(pixels + 1, dpi), twips) << dpi;
    }
  }
}

TEST(WindowGeometry, PixelsSurviveTheWayThroughTwips) {
  for (const unsigned dpi : {96U, 120U, 144U, 168U, 192U}) {
    for (int pixels = -2000; pixels < 4000; ++pixels) {
      ASSERT_EQ(PositionToPixels(ToTwips(pixels, dpi), dpi), pixels) << dpi;
    }
    for (int pixels = 0; pixels < 4000; ++pixels) {
      ASSERT_EQ(LengthToPixels(ToTwips(pixels, dpi), dpi), pixels) << dpi;
    }
  }
}

TEST(WindowGeometry, AnyStoredNumberIsAPosition) {
  EXPECT_EQ(PositionToPixels(600, 96), 40);
  EXPECT_EQ(PositionToPixels(-2147483648.0F, 192), -30000);
  EXPECT_EQ(PositionToPixels(1e30F, 192), 30000);
  EXPECT_EQ(PositionToPixels(NAN, 96), 0);
}

struct Row {
  const char* story;
  PixelRect stored;
  PixelRect shown;
};

TEST(WindowGeometry, AWindowThatNobodyCouldReachIsShownOnTheNearestScreen) {
  // Two screens side by side, the second one higher up, each with a task bar of 40 pixels at its lower end.
  constexpr std::array<PixelRect, 2> screens{{{0, 0, 1600, 860}, {1600, -300, 2880, 684}}};
  constexpr int title = 30;
  constexpr std::array rows{
      Row{"on the first screen", {40, 40, 512, 269}, {40, 40, 512, 269}},
      Row{"half over the left edge", {-200, 40, 272, 269}, {-200, 40, 272, 269}},
      Row{"its lower part below the screen", {40, 850, 512, 1079}, {40, 850, 512, 1079}},
      Row{"only its title bar's end in sight", {-471, -29, 1, 200}, {-471, -29, 1, 200}},
      Row{"title bar above the screen", {40, -30, 512, 199}, {40, 0, 512, 229}},
      Row{"title bar under the task bar", {40, 860, 512, 1089}, {40, 631, 512, 860}},
      Row{"far left", {-5000, 100, -4528, 329}, {0, 100, 472, 329}},
      Row{"right of the second screen", {2880, 0, 3352, 229}, {2408, 0, 2880, 229}},
      Row{"in the corner above the first", {100, -200, 572, 29}, {100, 0, 572, 229}},
      Row{"above the second", {2000, -900, 2472, -671}, {2000, -300, 2472, -71}},
  };
  for (const Row& row : rows) EXPECT_EQ(Reachable(row.stored, title, screens), row.shown) << row.story;
  EXPECT_EQ(Reachable(rows[6].stored, title, {}), rows[6].stored) << "without a screen nothing is moved";
  EXPECT_EQ(Reachable({9000, 9000, 9900, 9900}, title, std::array{PixelRect{0, 0, 640, 480}}),
            (PixelRect{0, 0, 900, 900}))
      << "a window larger than the screen keeps its title bar in sight";
}

struct GrowthRow {
  ControlId id;
  PixelRect change;  // of a window that is 100 pixels wider and 60 higher than it starts
};

TEST(WindowGeometry, WhatTheUserAddsGoesToListAndBoxes) {
  using enum ControlId;
  constexpr std::array rows{
      GrowthRow{Frame2, {0, 0, 100, 0}},
      GrowthRow{lstTAPI, {0, 0, 100, 0}},
      GrowthRow{lbLineIDActive, {0, 0, 100, 0}},
      GrowthRow{txtSettVW, {100, 0, 100, 0}},
      GrowthRow{cmdInfo0, {100, 0, 100, 0}},
      GrowthRow{cmdExit, {100, 0, 100, 0}},
      GrowthRow{frmInfo0, {0, 0, 100, 60}},
      GrowthRow{txtLineInfo, {0, 0, 100, 60}},
      GrowthRow{frmInfo1, {0, 0, 100, 60}},
      GrowthRow{txtTestStatus, {0, 0, 100, 60}},
      GrowthRow{Label1, {0, 0, 0, 0}},
      GrowthRow{cmdHangUp, {100, 0, 100, 0}},
      GrowthRow{cmdLogClear, {100, 60, 100, 60}},
  };
  for (const unsigned dpi : {96U, 192U}) {
    const int width = LengthToPixels(kFormWidth, dpi);
    const int height = LengthToPixels(kFormHeightExpanded, dpi);
    const Surplus surplus = SurplusOf(width + 100, height + 60, dpi);
    for (const auto& [id, change] : rows) {
      PixelRect wanted = PlaceOf(LayoutOf(id), dpi);
      wanted = {wanted.left + change.left, wanted.top + change.top, wanted.right + change.right,
                wanted.bottom + change.bottom};
      EXPECT_EQ(PlaceOf(LayoutOf(id), dpi, surplus), wanted) << static_cast<int>(id);
    }
    // A window that is lower than expanded, or still on its way to another scale, moves nothing.
    EXPECT_EQ(SurplusOf(width - 100, height - 1, dpi), Surplus{});
  }
}

TEST(WindowGeometry, TheFontFitsTheLowestLabel) {
  EXPECT_EQ(FittingFontHeight(-12, 15, 96), -12);
  EXPECT_EQ(FittingFontHeight(-14, 17, 96), -14);
  EXPECT_EQ(FittingFontHeight(-15, 18, 96), 17);
  EXPECT_EQ(FittingFontHeight(-27, 36, 96), 17);
  EXPECT_EQ(FittingFontHeight(-27, 36, 192), 34);
}

}  // namespace
}  // namespace fonklav::test
