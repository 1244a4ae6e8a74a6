#include "util/FileLockName.h"

#include <algorithm>

#include "util/CaseFold.h"

namespace fonklav {

std::string FileLockName(std::string_view fullPath) {
  constexpr std::size_t mostOfPath = 200;
  std::string path = FoldCase(fullPath);
  path.erase(0, path.size() - std::min(path.size(), mostOfPath));
  std::ranges::replace(path, '\\', '/');
  // All sessions of a computer share the logs, so they share the locks.
  return "Global\\FonklavTAPI log " + path;
}

}  // namespace fonklav
