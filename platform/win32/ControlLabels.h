#pragma once

#include <optional>

#include "app/Layout.h"

namespace fonklav {

/// The control whose caption names a box or the list: the label or frame right before it, or else its frame. Nothing
/// for controls that show their own name.
[[nodiscard]] inline std::optional<ControlId> LabelOf(ControlId id) {
  const LayoutRow& row = LayoutOf(id);
  const bool namesItself =
      row.kind == ControlKind::Label || row.kind == ControlKind::Frame || row.kind == ControlKind::Button;
  if (namesItself || id == Layout().front().id) return std::nullopt;
  const LayoutRow& before = Layout().at(static_cast<std::size_t>(id) - 1);
  if (before.kind == ControlKind::Label || before.kind == ControlKind::Frame) return before.id;
  return row.frame != id ? std::optional(row.frame) : std::nullopt;
}

}  // namespace fonklav
