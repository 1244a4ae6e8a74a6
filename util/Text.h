#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fonklav {

inline constexpr std::string_view kCrLf = "\r\n";

/// How the user's locale writes numbers.
struct NumberSeparators {
  std::string decimal{","};
  std::string thousands{"."};
};

/// `text` with every occurrence of `from` replaced by `to`, in one pass from the left.
[[nodiscard]] std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);

/// `text` without its NUL characters: names that drivers report may carry them.
[[nodiscard]] std::string WithoutNul(std::string_view text);

/// `text` without blanks (not tabs) at either end.
[[nodiscard]] std::string_view TrimBlanks(std::string_view text);

/// The pieces of `text` between the separators, empty pieces kept; at least one.
[[nodiscard]] std::vector<std::string> Split(std::string_view text, std::string_view separator);

/// How many characters a user would count in a UTF-8 text.
[[nodiscard]] std::size_t CharacterCount(std::string_view text);

/// Whether `text` reads as one decimal number: blanks around it, one sign before or behind it, and the locale's
/// separators are accepted, a thousands separator only before the decimal one; letters, inner blanks and the empty
/// text are not.
[[nodiscard]] bool IsNumeric(std::string_view text, const NumberSeparators& separators);

/// What stands behind the program name on a command line, blanks in front of it removed, the rest as typed. The
/// program name is in quotes or ends at the first blank or tab.
[[nodiscard]] std::string_view ArgumentsOf(std::string_view commandLine);

/// The folder of a full path, without a backslash at its end except for a drive's root.
[[nodiscard]] std::string_view FolderOf(std::string_view path);

/// The file name of a path without its extension.
[[nodiscard]] std::string_view NameOf(std::string_view path);

/// The fewest plain decimal digits that read back as this very number, never with an exponent; whole numbers in full.
/// For a few powers of two one digit too many, as their neighbours are not equally far away; none from 2^-32 upwards.
[[nodiscard]] std::string DecimalText(float number);

/// The shortest text that reads back as this very number: plain digits, or with an exponent where that is shorter. One
/// digit too many for 46 powers of two, of which 2^-24 and 2^89 are nearest to one.
[[nodiscard]] std::string ShortestText(double number);

}  // namespace fonklav
