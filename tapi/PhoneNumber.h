#pragma once

#include <string>
#include <string_view>

namespace fonklav {

/// Blanks at the ends go, "/" counts as a blank, and short runs of blanks become one. Two passes only: a run of more
/// than four keeps some.
[[nodiscard]] std::string FoldBlanks(std::string_view number);

/// "49 30 1234567" becomes "+49(30)1234567". Deliberately simple: the first two blanks become the brackets whatever
/// stands between them, and without a second blank the rest of the number is lost.
[[nodiscard]] std::string BracketAreaCode(std::string_view number);

}  // namespace fonklav
