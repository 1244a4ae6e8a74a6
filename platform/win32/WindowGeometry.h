#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

#include "app/Layout.h"

// Where the window and its parts stand, as plain arithmetic: nothing in here asks the system.
namespace fonklav {

/// Pixels of the screen; right and bottom are the first that no longer belong to it.
struct PixelRect {
  int left{0};
  int top{0};
  int right{0};
  int bottom{0};
  bool operator==(const PixelRect&) const = default;
};

inline constexpr unsigned kNormalDpi = 96;
inline constexpr float kTwipsPerInch = 1440;

/// A coordinate of the screen. Settings files can hold any number; the screen ends long before this does.
[[nodiscard]] inline int PositionToPixels(float twips, unsigned dpi) {
  constexpr float farOut = 30000;
  const float pixels = twips * static_cast<float>(dpi) / kTwipsPerInch;
  return std::isnan(pixels) ? 0 : static_cast<int>(std::lround(std::clamp(pixels, -farOut, farOut)));
}

/// A length, rounded down: a window of a given height never reads back as a higher one. The small addition undoes what
/// the way through twips may have lost.
[[nodiscard]] inline int LengthToPixels(float twips, unsigned dpi) {
  return static_cast<int>(std::floor(twips * static_cast<float>(dpi) / kTwipsPerInch + 0.01F));
}

[[nodiscard]] inline float ToTwips(int pixels, unsigned dpi) {
  return static_cast<float>(pixels) * kTwipsPerInch / static_cast<float>(dpi);
}

/// How far apart two stretches of one axis are; 0 when they touch or overlap.
[[nodiscard]] inline int GapBetween(int from, int to, int otherFrom, int otherTo) {
  return std::max({0, otherFrom - to, from - otherTo});
}

/// `window` as it is, when some of its title bar lies on one of the screens; moved onto the nearest screen otherwise.
/// Without screens nothing is moved.
[[nodiscard]] inline PixelRect Reachable(const PixelRect& window, int titleHeight, std::span<const PixelRect> screens) {
  const PixelRect* nearest = nullptr;
  double least = std::numeric_limits<double>::max();
  for (const PixelRect& screen : screens) {
    const bool seen = window.left < screen.right && window.right > screen.left && window.top < screen.bottom &&
                      window.top + titleHeight > screen.top;
    if (seen) return window;
    const double across = GapBetween(window.left, window.right, screen.left, screen.right);
    const double down = GapBetween(window.top, window.top + titleHeight, screen.top, screen.bottom);
    if (const double distance = std::hypot(across, down); distance < least) {
      least = distance;
      nearest = &screen;
    }
  }
  if (nearest == nullptr) return window;
  const int width = window.right - window.left;
  const int height = window.bottom - window.top;
  const int left = std::clamp(window.left, nearest->left, std::max(nearest->left, nearest->right - width));
  const int top = std::clamp(window.top, nearest->top, std::max(nearest->top, nearest->bottom - height));
  return {left, top, left + width, top + height};
}

/// What the user has added to the window: pixels that it is wider than at the start and higher than expanded.
struct Surplus {
  int across{0};
  int down{0};
  bool operator==(const Surplus&) const = default;
};

/// The surplus of a window with these outer sizes.
[[nodiscard]] inline Surplus SurplusOf(int width, int height, unsigned dpi) {
  return {std::max(0, width - LengthToPixels(kFormWidth, dpi)),
          std::max(0, height - LengthToPixels(kFormHeightExpanded, dpi))};
}

/// Both ends of a control on one axis, given where they are without a surplus.
inline void Grow(Growth growth, int surplus, int& from, int& to) {
  if (growth == Growth::Moves) from += surplus;
  if (growth != Growth::Stays) to += surplus;
}

/// A control's place in the inner area of the window, its frame's place added.
[[nodiscard]] inline PixelRect PlaceOf(const LayoutRow& row, unsigned dpi, const Surplus& surplus = {}) {
  const bool framed = row.frame != row.id;
  const float left = static_cast<float>(row.left + (framed ? LayoutOf(row.frame).left : 0));
  const float top = static_cast<float>(row.top + (framed ? LayoutOf(row.frame).top : 0));
  PixelRect place{PositionToPixels(left, dpi), PositionToPixels(top, dpi),
                  PositionToPixels(left + static_cast<float>(row.width), dpi),
                  PositionToPixels(top + static_cast<float>(row.height), dpi)};
  Grow(row.across, surplus.across, place.left, place.right);
  Grow(row.down, surplus.down, place.top, place.bottom);
  return place;
}

/// The height of a font as LOGFONT has it: `wanted`, unless its line of `lineHeight` pixels is higher than the lowest
/// label, which would cut captions. A positive height is that of the line, so the label's own height is the answer
/// then.
[[nodiscard]] inline int FittingFontHeight(int wanted, int lineHeight, unsigned dpi) {
  int room = std::numeric_limits<int>::max();
  for (const LayoutRow& row : Layout()) {
    const PixelRect place = PlaceOf(row, dpi);
    if (row.kind == ControlKind::Label) room = std::min(room, place.bottom - place.top);
  }
  return lineHeight > room ? room : wanted;
}

/// Whether the window shows a control now: nothing of a hidden frame is shown, and nothing of the lower panels while
/// the window is collapsed, or the keyboard would go where nobody sees it.
[[nodiscard]] inline bool IsShown(FormControls& controls, ControlId id) {
  const LayoutRow& row = LayoutOf(id);
  const bool panel = row.frame == ControlId::frmInfo0 || row.frame == ControlId::frmInfo1;
  if (panel && controls.form.Height() <= kFormHeightCollapsed) return false;
  const auto visible = [&](ControlId which) {
    const Control* control = controls.Find(which);
    return control == nullptr || control->Visible();
  };
  return visible(id) && visible(row.frame);
}

}  // namespace fonklav
