#pragma once

#include <string>
#include <string_view>

namespace fonklav {

/// Blanks at the ends go, "/" counts as a blank, and of each run of blanks every fourth stays, from the first on: up to
/// four become one. That a longer run keeps some is deliberate.
[[nodiscard]] std::string FoldBlanks(std::string_view number);

/// "49 30 1234567" becomes "+49(30)1234567". Deliberately simple: the first two blanks become the brackets whatever
/// stands between them, and without a second blank the rest of the number is lost.
[[nodiscard]] std::string BracketAreaCode(std::string_view number);

}  // namespace fonklav
