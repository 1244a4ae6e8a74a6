#pragma once

#include <string>

#include "config/ConfigState.h"
#include "platform/FileSystem.h"
#include "platform/Ports.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// Tests for files and deletes them. Paths are full and UTF-8. A fault ends in the error log and counts as "no".
class modAPI_Files {
 public:
  modAPI_Files(Diagnostics& diagnostics, const ConfigState& state, FileSystem& files, const CodePage& codePage)
      : diagnostics_(diagnostics), state_(state), files_(files), codePage_(codePage) {}

  /// Whether there is a file of that name; a folder is none.
  [[nodiscard]] bool FileExist(const std::string& path) const;
  /// Deletes a file; true for a file that is not there. False when the system refuses.
  bool FileDelete(const std::string& path);

 private:
  Diagnostics& diagnostics_;
  const ConfigState& state_;
  FileSystem& files_;
  const CodePage& codePage_;
};

}  // namespace fonklav
