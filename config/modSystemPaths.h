#pragma once

#include <cstdint>
#include <string>

#include "platform/Ports.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// Asks the shell where its special folders are. They differ by Windows version and by language, so no path is built
/// in.
class modSystemPaths {
 public:
  modSystemPaths(Diagnostics& diagnostics, const ShellFolders& folders, const CodePage& codePage)
      : diagnostics_(diagnostics), folders_(folders), codePage_(codePage) {}

  /// The full path of a special folder by its CSIDL number, UTF-8; empty when the shell does not know it.
  [[nodiscard]] std::string GetSpecialFolder(std::int32_t number) const;

 private:
  Diagnostics& diagnostics_;
  const ShellFolders& folders_;
  const CodePage& codePage_;
};

}  // namespace fonklav
