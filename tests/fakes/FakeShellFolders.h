#pragma once

#include <algorithm>
#include <map>
#include <string>

#include "platform/ShellFolders.h"

namespace fonklav::test {

class FakeShellFolders : public ShellFolders {
 public:
  bool GetPath(std::uintptr_t, std::int32_t folder, std::span<char> path) const override {
    const auto found = folders.find(folder);
    if (found == folders.end()) return false;
    std::ranges::copy(found->second, path.begin());
    return true;
  }
  std::map<std::int32_t, std::string> folders{{CSIDL_COMMON_APPDATA, "C:\\ProgramData"},
                                              {CSIDL_PROGRAM_FILES, "C:\\Program Files"}};
};

}  // namespace fonklav::test
