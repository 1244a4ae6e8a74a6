#include "app/Layout.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace fonklav {
namespace {

using enum ControlId;
using enum ControlKind;
using enum Growth;

// The inner area is 456 x 190 pixels of 15 twips when the window is collapsed and 456 x 407 when it is expanded, with
// the widest frame and caption that a system draws. The lower panels share one place and begin where the upper part
// ends; the window hides them while it is collapsed. What a window is wider than at the start goes to list and boxes,
// what it is higher than expanded to the box of the lower panel.
constexpr std::array<LayoutRow, kControlCount> kLayout{{
    {Frame2, Frame, Frame2, 120, 75, 3240, 2685, Stretches, Stays, "TAPI Geräte "},
    {lstTAPI, CheckList, Frame2, 135, 285, 2970, 1950, Stretches, Stays, ""},
    {lbLineIDActive, Label, Frame2, 150, 2325, 2940, 255, Stretches, Stays, "LineID"},
    {labTAPIConfig1, Label, labTAPIConfig1, 3540, 285, 3180, 255, Moves, Stays, "Amtskennzahl"},
    {txtSettVW, TextBox, txtSettVW, 3540, 555, 3180, 345, Moves, Stays, ""},
    {labTAPIConfig0, Label, labTAPIConfig0, 3540, 990, 3180, 735, Moves, Stays,
     "(Wenn keine Wählregel in Systemsteuerung!)"},
    {cmdInfo0, Button, cmdInfo0, 3540, 1800, 1560, 375, Moves, Stays, "Geräte-&Info"},
    {cmdInfo1, Button, cmdInfo1, 5160, 1800, 1560, 375, Moves, Stays, "&Test"},
    {cmdSave, Button, cmdSave, 3540, 2385, 1560, 375, Moves, Stays, "&OK"},
    {cmdExit, Button, cmdExit, 5160, 2385, 1560, 375, Moves, Stays, "A&bbrechen"},
    {frmInfo0, Frame, frmInfo0, 120, 2880, 6600, 3120, Stretches, Stretches, "Geräte-Informationen "},
    {txtLineInfo, StatusBox, frmInfo0, 150, 300, 6300, 2670, Stretches, Stretches, ""},
    {frmInfo1, Frame, frmInfo1, 120, 2880, 6600, 3120, Stretches, Stretches, "Test "},
    {Label1, Label, frmInfo1, 150, 345, 1050, 255, Stays, Stays, "Nummer"},
    {txtNumber, TextBox, frmInfo1, 1230, 300, 2160, 345, Stretches, Stays, ""},
    {cmdWahl, Button, frmInfo1, 3480, 285, 1440, 375, Moves, Stays, "Wählen"},
    {cmdHangUp, Button, frmInfo1, 5010, 285, 1440, 375, Moves, Stays, "Auflegen"},
    {txtTestStatus, StatusBox, frmInfo1, 150, 765, 6300, 1740, Stretches, Stretches, ""},
    {cmdLogClear, Button, frmInfo1, 5010, 2595, 1440, 375, Moves, Moves, "clear"},
}};

/// How far apart two stretches of one axis are; 0 when they touch or overlap.
int GapBetween(int from, int to, int otherFrom, int otherTo) { return std::max({0, otherFrom - to, from - otherTo}); }

/// Both ends of a control on one axis, given where they are without a surplus.
void Grow(Growth growth, int surplus, int& from, int& to) {
  if (growth == Growth::Moves) from += surplus;
  if (growth != Growth::Stays) to += surplus;
}

}  // namespace

const std::array<LayoutRow, kControlCount>& Layout() { return kLayout; }

const LayoutRow& LayoutOf(ControlId id) { return kLayout.at(static_cast<std::size_t>(id)); }

int PositionToPixels(float twips, unsigned dpi) {
  constexpr float farOut = 30000;
  const float pixels = twips * static_cast<float>(dpi) / kTwipsPerInch;
  return std::isnan(pixels) ? 0 : static_cast<int>(std::lround(std::clamp(pixels, -farOut, farOut)));
}

int LengthToPixels(float twips, unsigned dpi) {
  return static_cast<int>(std::floor(twips * static_cast<float>(dpi) / kTwipsPerInch + 0.01F));
}

float ToTwips(int pixels, unsigned dpi) { return static_cast<float>(pixels) * kTwipsPerInch / static_cast<float>(dpi); }

PixelRect Reachable(const PixelRect& window, int titleHeight, std::span<const PixelRect> screens) {
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

Surplus SurplusOf(int width, int height, unsigned dpi) {
  return {std::max(0, width - LengthToPixels(kFormWidth, dpi)),
          std::max(0, height - LengthToPixels(kFormHeightExpanded, dpi))};
}

PixelRect PlaceOf(const LayoutRow& row, unsigned dpi, const Surplus& surplus) {
  const bool framed = row.frame != row.id;
  const auto left = static_cast<float>(row.left + (framed ? LayoutOf(row.frame).left : 0));
  const auto top = static_cast<float>(row.top + (framed ? LayoutOf(row.frame).top : 0));
  PixelRect place{PositionToPixels(left, dpi), PositionToPixels(top, dpi),
                  PositionToPixels(left + static_cast<float>(row.width), dpi),
                  PositionToPixels(top + static_cast<float>(row.height), dpi)};
  Grow(row.across, surplus.across, place.left, place.right);
  Grow(row.down, surplus.down, place.top, place.bottom);
  return place;
}

int FittingFontHeight(int wanted, int lineHeight, unsigned dpi) {
  int room = std::numeric_limits<int>::max();
  for (const LayoutRow& row : Layout()) {
    const PixelRect place = PlaceOf(row, dpi);
    if (row.kind == ControlKind::Label) room = std::min(room, place.bottom - place.top);
  }
  return lineHeight > room ? room : wanted;
}

bool IsShown(const FormControls& controls, ControlId id) {
  const LayoutRow& row = LayoutOf(id);
  const bool panel = row.frame == ControlId::frmInfo0 || row.frame == ControlId::frmInfo1;
  if (panel && controls.form.Height() <= kFormHeightCollapsed) return false;
  return controls[id].Visible() && controls[row.frame].Visible();
}

std::optional<ControlId> LabelOf(ControlId id) {
  const LayoutRow& row = LayoutOf(id);
  const bool namesItself =
      row.kind == ControlKind::Label || row.kind == ControlKind::Frame || row.kind == ControlKind::Button;
  if (namesItself || id == Layout().front().id) return std::nullopt;
  const LayoutRow& before = Layout().at(static_cast<std::size_t>(id) - 1);
  if (before.kind == ControlKind::Label || before.kind == ControlKind::Frame) return before.id;
  return row.frame != id ? std::optional(row.frame) : std::nullopt;
}

}  // namespace fonklav
