#pragma once

#include <algorithm>
#include <string_view>

// How the parts of a process's own names are told apart; nothing in here asks the system.
namespace fonklav {

/// What stands behind the program name on a command line, blanks in front of it removed, the rest as typed. The
/// program name is in quotes or ends at the first blank or tab.
[[nodiscard]] constexpr std::wstring_view ArgumentsOf(std::wstring_view commandLine) {
  const bool quoted = commandLine.starts_with(L'"');
  const std::size_t end = quoted ? commandLine.find(L'"', 1) : commandLine.find_first_of(L" \t");
  if (end == std::wstring_view::npos) return {};
  commandLine.remove_prefix(quoted ? end + 1 : end);
  commandLine.remove_prefix(std::min(commandLine.find_first_not_of(L" \t"), commandLine.size()));
  return commandLine;
}

/// The folder of a full path, without a backslash at its end except for a drive's root.
[[nodiscard]] constexpr std::wstring_view FolderOf(std::wstring_view path) {
  const std::size_t slash = path.find_last_of(L'\\');
  if (slash == std::wstring_view::npos) return {};
  const bool root = slash == 2 && path[1] == L':';
  return path.substr(0, root ? slash + 1 : slash);
}

/// The file name of a path without its extension.
[[nodiscard]] constexpr std::wstring_view NameOf(std::wstring_view path) {
  path.remove_prefix(path.find_last_of(L'\\') + 1);
  return path.substr(0, path.find_last_of(L'.'));
}

}  // namespace fonklav
