#include "app/Layout.h"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <string>

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

bool IsPanel(ControlId id) { return id == frmInfo0 || id == frmInfo1; }

bool InPanel(const LayoutRow& row) { return IsPanel(row.frame); }

bool Overlap(const PixelRect& a, const PixelRect& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

/// The letter behind the "&", as a person presses it; 0 when there is none.
int AccessKey(std::string_view text) {
  const std::size_t mark = text.find('&');
  return mark == std::string_view::npos ? 0 : std::tolower(static_cast<unsigned char>(text.at(mark + 1)));
}

/// The window as it is with one of its panels open, or with none.
struct Shown {
  const char* name;
  float height;
  ControlId panel;
};

void PrintTo(const Shown& shown, std::ostream* out) { *out << shown.name; }

class LayoutShown : public testing::TestWithParam<Shown> {
 protected:
  LayoutShown() {
    controls.form.Height(GetParam().height);
    for (const ControlId frame : {frmInfo0, frmInfo1}) controls[frame].Visible(frame == GetParam().panel);
    for (const LayoutRow& row : Layout()) {
      if (IsShown(controls, row.id)) shown.push_back(row);
    }
  }

  FormControls controls;
  std::vector<LayoutRow> shown;
};

INSTANTIATE_TEST_SUITE_P(, LayoutShown,
                         testing::Values(Shown{"collapsed", kFormHeightCollapsed, frmInfo0},
                                         Shown{"deviceInformation", kFormHeightExpanded, frmInfo0},
                                         Shown{"testPanel", kFormHeightExpanded, frmInfo1}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(LayoutShown, NothingLiesOverAnything) {
  for (const LayoutRow& one : shown) {
    for (const LayoutRow& other : shown) {
      const bool beside = one.id < other.id && (one.frame == one.id) == (other.frame == other.id);
      if (!beside || (one.frame != one.id && one.frame != other.frame)) continue;
      for (const Surplus& surplus : {Surplus{}, Surplus{300, 0}, Surplus{1, 500}}) {
        const bool overlap = Overlap(PlaceOf(one, kNormalDpi, surplus), PlaceOf(other, kNormalDpi, surplus));
        EXPECT_FALSE(overlap) << static_cast<int>(one.id) << " and " << static_cast<int>(other.id);
      }
    }
  }
}

TEST_P(LayoutShown, EverythingIsInsideTheWindowOrItsFrame) {
  const int least = GetParam().height > kFormHeightCollapsed ? kLeastExpanded : kLeastCollapsed;
  for (const LayoutRow& row : shown) {
    const bool framed = row.frame != row.id;
    const int width = framed ? LayoutOf(row.frame).width : kLeastWidth;
    const int height = framed ? LayoutOf(row.frame).height : least;
    EXPECT_TRUE(row.left > 0 && row.top > 0 && row.left + row.width < width && row.top + row.height < height)
        << static_cast<int>(row.id);
  }
}

TEST_P(LayoutShown, NoTwoAccessKeysAreTheSame) {
  std::map<int, int> count;
  for (const LayoutRow& row : shown) ++count[AccessKey(row.text)];
  for (const auto& [key, times] : count) EXPECT_TRUE(key == 0 || times == 1) << static_cast<char>(key);
}

TEST(Layout, RowsStandInTabOrder) {
  for (std::size_t index = 0; index < kControlCount; ++index) {
    EXPECT_EQ(Layout().at(index).id, static_cast<ControlId>(index));
    // A frame comes before what it holds: it is drawn first and names the box behind it.
    EXPECT_LE(Layout().at(index).frame, Layout().at(index).id);
  }
}

TEST(Layout, ThePanelsShareOnePlaceBelowTheRest) {
  const LayoutRow& info = LayoutOf(frmInfo0);
  const LayoutRow& test = LayoutOf(frmInfo1);
  EXPECT_EQ(PlaceOf(info, kNormalDpi), PlaceOf(test, kNormalDpi));
  for (const LayoutRow& row : Layout()) {
    if (!IsPanel(row.id) && !InPanel(row) && row.frame == row.id) {
      EXPECT_LE(row.top + row.height, info.top) << static_cast<int>(row.id);
    }
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

}  // namespace
}  // namespace fonklav::test
