#include "util/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace fonklav {
namespace {

bool ReadsAs(const std::string& text, float number) { return std::strtof(text.c_str(), nullptr) == number; }
bool ReadsAs(const std::string& text, double number) { return std::strtod(text.c_str(), nullptr) == number; }

/// The number in this format of printf, with as few digits behind the point as tell it from all others; not all of them
/// when it gets longer than `longest`. The library's std::to_chars does the same by tables that would be a sixth of the
/// program.
template <typename Number>
std::string WithFewestDigits(const char* format, Number number, std::size_t longest = SIZE_MAX) {
  for (int digits = 0;; ++digits) {
    const auto size = static_cast<std::size_t>(std::snprintf(nullptr, 0, format, digits, double{number}));
    std::string text(size + 1, '\0');
    std::snprintf(text.data(), text.size(), format, digits, double{number});
    text.pop_back();
    if (!std::isfinite(number) || text.size() > longest || ReadsAs(text, number)) return text;
  }
}

}  // namespace

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string result;
  if (from.empty()) return std::string(text);
  std::size_t start = 0;
  for (std::size_t at = text.find(from); at != std::string_view::npos; at = text.find(from, start)) {
    result.append(text.substr(start, at - start)).append(to);
    start = at + from.size();
  }
  return result.append(text.substr(start));
}

std::string WithoutNul(std::string_view text) { return ReplaceAll(text, std::string_view("\0", 1), ""); }

std::string_view TrimBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  for (std::size_t at = text.find(separator); at != std::string_view::npos; at = text.find(separator, start)) {
    pieces.emplace_back(text.substr(start, at - start));
    start = at + separator.size();
  }
  pieces.emplace_back(text.substr(start));
  return pieces;
}

std::size_t CharacterCount(std::string_view text) {
  // Every byte but the continuation bytes (10xxxxxx) begins a character.
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

bool IsNumeric(std::string_view text, const NumberSeparators& separators) {
  // Not by a conversion to a number: a telephone number may be longer than any number type.
  text = TrimBlanks(text);
  const auto isSign = [](char c) { return c == '+' || c == '-'; };
  if (!text.empty() && isSign(text.front())) {
    text.remove_prefix(1);
  } else if (!text.empty() && isSign(text.back())) {
    text.remove_suffix(1);
  }
  bool digits = false;
  bool fraction = false;
  while (!text.empty()) {
    if (text.front() >= '0' && text.front() <= '9') {
      digits = true;
      text.remove_prefix(1);
    } else if (!fraction && !separators.decimal.empty() && text.starts_with(separators.decimal)) {
      fraction = true;
      text.remove_prefix(separators.decimal.size());
    } else if (!fraction && digits && !separators.thousands.empty() && text.starts_with(separators.thousands)) {
      text.remove_prefix(separators.thousands.size());
    } else {
      return false;
    }
  }
  return digits;
}

std::string_view ArgumentsOf(std::string_view commandLine) {
  const bool quoted = commandLine.starts_with('"');
  const std::size_t end = quoted ? commandLine.find('"', 1) : commandLine.find_first_of(" \t");
  if (end == std::string_view::npos) return {};
  commandLine.remove_prefix(quoted ? end + 1 : end);
  commandLine.remove_prefix(std::min(commandLine.find_first_not_of(" \t"), commandLine.size()));
  return commandLine;
}

std::string_view FolderOf(std::string_view path) {
  const std::size_t slash = path.find_last_of('\\');
  if (slash == std::string_view::npos) return {};
  const bool root = slash == 2 && path[1] == ':';
  return path.substr(0, root ? slash + 1 : slash);
}

std::string_view NameOf(std::string_view path) {
  path.remove_prefix(path.find_last_of('\\') + 1);
  return path.substr(0, path.find_last_of('.'));
}

std::string DecimalText(float number) { return WithFewestDigits("%.*f", number); }

std::string ShortestText(double number) {
  const std::string scientific = WithFewestDigits("%.*e", number);
  const std::string plain = WithFewestDigits("%.*f", number, scientific.size());
  return plain.size() <= scientific.size() ? plain : scientific;
}

}  // namespace fonklav
