#pragma once

#include <string>

#include "util/LogArg.h"

namespace fonklav {

/// The arguments of a procedure as one text: "(S:abc, N:5, B:1)". Texts, flags and numbers are marked so; an array
/// contributes its elements; anything else is the empty text. Empty when there is nothing to show. Does not throw.
[[nodiscard]] std::string GetStringFromParamArray(LogArgs args) noexcept;

/// Adds that text to a line.
void AppendParamArray(std::string& line, LogArgs args);

/// A text with its control characters made visible, CR LF as "<CR>", a tab as "#[9]", so that a log entry stays one
/// line.
[[nodiscard]] std::string VisibleControls(const std::string& text);

}  // namespace fonklav
