#pragma once

#include <string>

#include "config/ConfigState.h"
#include "platform/FileSystem.h"
#include "platform/Ports.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// Tests for files and deletes them.
class modAPI_Files {
 public:
  modAPI_Files(Diagnostics& diagnostics, const ConfigState& state, FileSystem& files, const CodePage& codePage)
      : diagnostics_(diagnostics), state_(state), files_(files), codePage_(codePage) {}

  /// Whether there is a file of that name; a folder is none.
  [[nodiscard]] bool FileExist(const std::string& path) const;
  /// Deletes a file; a file that is not there counts as deleted.
  bool FileDelete(const std::string& path);

 private:
  Diagnostics& diagnostics_;
  const ConfigState& state_;
  FileSystem& files_;
  const CodePage& codePage_;
};

}  // namespace fonklav
