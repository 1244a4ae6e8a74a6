#pragma once

#include <array>
#include <string_view>

#include "app/Controls.h"

namespace fonklav {

/// Sizes of the whole window with its frame, in twips.
inline constexpr float kFormWidth = 7080;
inline constexpr float kFormHeightCollapsed = 3435;
inline constexpr float kFormHeightExpanded = 6690;

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
  std::string_view text;     ///< the layout text, UTF-8
  std::string_view toolTip;  ///< the layout tooltip, UTF-8
};

/// All controls in tab order. The window is built from it and the controls start with its texts.
[[nodiscard]] const std::array<LayoutRow, kControlCount>& Layout();

/// The row of one control.
[[nodiscard]] const LayoutRow& LayoutOf(ControlId id);

}  // namespace fonklav
