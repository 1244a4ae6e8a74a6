#include "app/Layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <map>
#include <tuple>

#include "util/Text.h"

namespace fonklav::test {
namespace {

using enum ControlId;

constexpr int kTwipsPerPixel = 15;

// What frame and caption leave of the window: the least of all systems is that of Windows 10 with 39 and 16 pixels, the
// most that of the classic frame with 26 and 8.
constexpr int kLeastWidth = static_cast<int>(kFormWidth) - 16 * kTwipsPerPixel;
constexpr int kLeastCollapsed = static_cast<int>(kFormHeightCollapsed) - 39 * kTwipsPerPixel;
constexpr int kLeastExpanded = static_cast<int>(kFormHeightExpanded) - 39 * kTwipsPerPixel;

bool Overlap(const PixelRect& a, const PixelRect& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

/// The letter behind the "&", as a person presses it; 0 when there is none.
int AccessKey(std::string_view text) {
  const std::size_t mark = text.find('&');
  return mark == std::string_view::npos ? 0 : std::tolower(static_cast<unsigned char>(text.at(mark + 1)));
}

/// What is seen of the window with one of its panels open, or with none.
std::vector<LayoutRow> ShownRows(float height, ControlId panel) {
  FormControls controls;
  controls.form.Height(height);
  for (const ControlId frame : {frmInfo0, frmInfo1}) controls[frame].Visible(frame == panel);
  std::vector<LayoutRow> shown;
  std::ranges::copy_if(Layout(), std::back_inserter(shown), [&](const auto& row) { return IsShown(controls, row.id); });
  return shown;
}

/// Whether two controls that stand beside each other lie over each other in a window larger by this much.
bool Collide(const LayoutRow& one, const LayoutRow& other, const Surplus& surplus) {
  const bool beside = one.id < other.id && (one.frame == one.id) == (other.frame == other.id);
  if (!beside || (one.frame != one.id && one.frame != other.frame)) return false;
  return Overlap(PlaceOf(one, kNormalDpi, surplus), PlaceOf(other, kNormalDpi, surplus));
}

TEST(Layout, IsTidyWhicheverPanelIsOpen) {
  EXPECT_EQ(PlaceOf(LayoutOf(frmInfo0), kNormalDpi), PlaceOf(LayoutOf(frmInfo1), kNormalDpi));
  for (const auto& [height, panel] :
       {std::pair{kFormHeightCollapsed, frmInfo0}, {kFormHeightExpanded, frmInfo0}, {kFormHeightExpanded, frmInfo1}}) {
    const std::vector<LayoutRow> shown = ShownRows(height, panel);
    EXPECT_GT(shown.size(), 9U);
    std::map<int, int> keys;
    for (const LayoutRow& row : shown) {
      const int name = static_cast<int>(row.id);
      for (const LayoutRow& other : shown) {
        for (const Surplus& surplus : {Surplus{}, Surplus{300, 0}, Surplus{1, 500}}) {
          EXPECT_FALSE(Collide(row, other, surplus)) << name << " and " << static_cast<int>(other.id);
        }
      }
      const bool framed = row.frame != row.id;
      const int width = framed ? LayoutOf(row.frame).width : kLeastWidth;
      const int least = height > kFormHeightCollapsed ? kLeastExpanded : kLeastCollapsed;
      const int room = framed ? LayoutOf(row.frame).height : least;
      EXPECT_TRUE(row.left > 0 && row.top > 0 && row.left + row.width < width && row.top + row.height < room) << name;
      const int key = AccessKey(row.text);
      EXPECT_TRUE(key == 0 || ++keys[key] == 1) << static_cast<char>(key);
    }
  }
}

TEST(Layout, RowsStandInTabOrderAndListAndBoxesHaveALabel) {
  const std::map<ControlId, ControlId> labels{
      {lstTAPI, Frame2},   {txtSettVW, labTAPIConfig1}, {txtLineInfo, frmInfo0},
      {txtNumber, Label1}, {txtTestStatus, frmInfo1},
  };
  for (std::size_t index = 0; index < kControlCount; ++index) {
    const LayoutRow& row = Layout().at(index);
    EXPECT_EQ(row.id, static_cast<ControlId>(index));
    // Whole pixels, or neighbours would be a pixel apart on one display and not on another.
    for (const int twips : {row.left, row.top, row.width, row.height}) EXPECT_EQ(twips % kTwipsPerPixel, 0) << index;
    // A frame comes before what it holds: it is drawn first and names the box behind it.
    EXPECT_LE(row.frame, row.id);
    const auto label = labels.find(row.id);
    EXPECT_EQ(LabelOf(row.id), label == labels.end() ? std::nullopt : std::optional(label->second)) << index;
  }
}

// At 9 points an average character of the message fonts is 6 to 7 pixels wide and a line 15 high; where the user has
// texts made bigger, a line fills the lowest label and characters have grown alike.
TEST(Layout, TextsHaveRoom) {
  const int lineHeight = FittingFontHeight(0, 1000, kNormalDpi);
  for (const LayoutRow& row : Layout()) {
    const int padding = row.kind == ControlKind::Button ? 16 : 0;
    const int perLine = (row.width / kTwipsPerPixel - padding) * 15 / (7 * lineHeight);
    const int lines = row.kind == ControlKind::Label ? row.height / kTwipsPerPixel / lineHeight : 1;
    const std::size_t marks = AccessKey(row.text) != 0 ? 1 : 0;  // not drawn
    EXPECT_LE(CharacterCount(row.text) - marks, static_cast<std::size_t>(perLine * lines)) << row.text;
  }
}

TEST(WindowGeometry, PixelsSurviveTheWayThroughTwipsAndNoHeightReadsBackHigherThanItWas) {
  for (const unsigned dpi : {96U, 120U, 144U, 168U, 192U, 240U, 288U}) {
    for (int pixels = -2000; pixels < 4000; ++pixels) {
      ASSERT_EQ(PositionToPixels(ToTwips(pixels, dpi), dpi), pixels) << dpi;
      ASSERT_TRUE(pixels < 0 || LengthToPixels(ToTwips(pixels, dpi), dpi) == pixels) << dpi << " " << pixels;
    }
    for (const float twips : {kFormHeightCollapsed, kFormHeightExpanded, kFormWidth}) {
      const int pixels = LengthToPixels(twips, dpi);
      EXPECT_LE(ToTwips(pixels, dpi), twips) << dpi;
      EXPECT_GT(ToTwips(pixels + 1, dpi), twips) << dpi;
    }
  }
}

TEST(WindowGeometry, AnyStoredNumberIsAPosition) {
  EXPECT_EQ(PositionToPixels(600, 96), 40);
  EXPECT_EQ(PositionToPixels(-2147483648.0F, 192), -30000);
  EXPECT_EQ(PositionToPixels(1e30F, 192), 30000);
  EXPECT_EQ(PositionToPixels(NAN, 96), 0);
}

TEST(WindowGeometry, AWindowThatNobodyCouldReachIsShownOnTheNearestScreen) {
  // Two screens side by side, the second one higher up, each with a task bar of 40 pixels at its lower end.
  constexpr std::array<PixelRect, 2> screens{{{0, 0, 1600, 860}, {1600, -300, 2880, 684}}};
  constexpr int title = 30;
  const std::tuple<const char*, PixelRect, PixelRect> rows[] = {
      {"its lower part below the screen", {40, 850, 512, 1079}, {40, 850, 512, 1079}},
      {"only its title bar's end in sight", {-471, -29, 1, 200}, {-471, -29, 1, 200}},
      {"title bar above the screen", {40, -30, 512, 199}, {40, 0, 512, 229}},
      {"title bar under the task bar", {40, 860, 512, 1089}, {40, 631, 512, 860}},
      {"far left", {-5000, 100, -4528, 329}, {0, 100, 472, 329}},
      {"right of the second screen", {2880, 0, 3352, 229}, {2408, 0, 2880, 229}},
      {"in the corner above the first", {100, -200, 572, 29}, {100, 0, 572, 229}},
      {"above the second", {2000, -900, 2472, -671}, {2000, -300, 2472, -71}},
      {"below both, over the edge between them", {1500, 900, 1972, 1129}, {1128, 631, 1600, 860}}};
  for (const auto& [story, stored, shown] : rows) EXPECT_EQ(Reachable(stored, title, screens), shown) << story;
  constexpr PixelRect away{-5000, 100, -4528, 329};
  EXPECT_EQ(Reachable(away, title, {}), away) << "without a screen nothing is moved";
  EXPECT_EQ(Reachable({9000, 9000, 9900, 9900}, title, std::array{PixelRect{0, 0, 640, 480}}),
            (PixelRect{0, 0, 900, 900}))
      << "a window larger than the screen keeps its title bar in sight";
}

TEST(WindowGeometry, WhatTheUserAddsGoesToListAndBoxes) {
  // Of a window that is 100 pixels wider and 60 higher than it starts.
  constexpr std::pair<ControlId, PixelRect> rows[] = {
      {Frame2, {0, 0, 100, 0}},         {lstTAPI, {0, 0, 100, 0}},      {lbLineIDActive, {0, 0, 100, 0}},
      {txtSettVW, {100, 0, 100, 0}},    {cmdInfo0, {100, 0, 100, 0}},   {cmdExit, {100, 0, 100, 0}},
      {frmInfo0, {0, 0, 100, 60}},      {txtLineInfo, {0, 0, 100, 60}}, {frmInfo1, {0, 0, 100, 60}},
      {txtTestStatus, {0, 0, 100, 60}}, {Label1, {0, 0, 0, 0}},         {cmdHangUp, {100, 0, 100, 0}},
      {cmdLogClear, {100, 60, 100, 60}}};
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
