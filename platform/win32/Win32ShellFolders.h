#pragma once

#include "platform/ShellFolders.h"

namespace fonklav {

/// The shell's special folders.
class Win32ShellFolders final : public ShellFolders {
 public:
  bool GetPath(std::uintptr_t owner, std::int32_t folder, std::span<char> path) const override;
};

}  // namespace fonklav
