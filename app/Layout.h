#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "app/Controls.h"

namespace fonklav {

/// Sizes of the whole window with its frame, in twips.
inline constexpr float kFormWidth = 7080;
inline constexpr float kFormHeightCollapsed = 3435;
inline constexpr float kFormHeightExpanded = 6690;

/// What a control is made as. A status box is a text box of many lines that only the program writes.
enum class ControlKind { Frame, CheckList, Label, TextBox, StatusBox, Button };

/// What a control does on one axis when the user makes the window larger than it starts: nothing, keep its distance
/// from the right or lower edge, or take the added length.
enum class Growth { Stays, Moves, Stretches };

/// One control as it is laid out: position relative to its frame, or to the window's inner area when it stands in
/// none, in twips.
struct LayoutRow {
  ControlId id;
  ControlKind kind;
  ControlId frame;  ///< the frame that holds it, or itself when none does
  int left;
  int top;
  int width;
  int height;
  Growth across;
  Growth down;
  std::string_view text;  ///< the layout text, UTF-8
};

/// The layout tooltip of the code box, UTF-8.
inline constexpr std::string_view kCodeToolTip =
    "00, 0 oder NICHTS vor nationalen Nummern, abhängig vom CAPI-Hersteller";

/// All controls in tab order. The window is built from it and the controls start with its texts.
[[nodiscard]] const std::array<LayoutRow, kControlCount>& Layout();

/// The row of one control.
[[nodiscard]] const LayoutRow& LayoutOf(ControlId id);

// Where the window and its controls stand on a screen. Twips become pixels here and nowhere else.

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
[[nodiscard]] int PositionToPixels(float twips, unsigned dpi);

/// A length, rounded down: a window of a given height never reads back as a higher one. The small addition undoes what
/// the way through twips may have lost.
[[nodiscard]] int LengthToPixels(float twips, unsigned dpi);

/// The other way: a position or a length that the window has told, at the dpi by which it was told.
[[nodiscard]] float ToTwips(int pixels, unsigned dpi);

/// `window` as it is, when some of its title bar lies on one of the screens; moved onto the nearest screen otherwise.
/// Without screens nothing is moved.
[[nodiscard]] PixelRect Reachable(const PixelRect& window, int titleHeight, std::span<const PixelRect> screens);

/// What the user has added to the window: pixels that it is wider than at the start and higher than expanded.
struct Surplus {
  int across{0};
  int down{0};
  bool operator==(const Surplus&) const = default;
};

/// The surplus of a window with these outer sizes.
[[nodiscard]] Surplus SurplusOf(int width, int height, unsigned dpi);

/// A control's place in the inner area of the window, its frame's place added.
[[nodiscard]] PixelRect PlaceOf(const LayoutRow& row, unsigned dpi, const Surplus& surplus = {});

/// The height of a font as LOGFONT has it: `wanted`, unless its line of `lineHeight` pixels is higher than the lowest
/// label, which would cut captions. A positive height is that of the line, so the label's own height is the answer
/// then.
[[nodiscard]] int FittingFontHeight(int wanted, int lineHeight, unsigned dpi);

/// Whether the window shows a control now: nothing of a hidden frame is shown, and nothing of the lower panels while
/// the window is collapsed, or the keyboard would go where nobody sees it.
[[nodiscard]] bool IsShown(const FormControls& controls, ControlId id);

/// The control whose caption names a box or the list: the label or frame right before it, or else its frame. Nothing
/// for controls that show their own name.
[[nodiscard]] std::optional<ControlId> LabelOf(ControlId id);

}  // namespace fonklav
