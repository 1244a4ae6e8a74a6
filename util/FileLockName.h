#pragma once

#include <string>
#include <string_view>

namespace fonklav {

/// The name of the mutex that is a file's lock, for a full path in UTF-8. It is the same for every program of ours, in
/// whatever case the path is spelled. A mutex name holds no backslash and at most 260 characters
/// (https://learn.microsoft.com/windows/win32/api/synchapi/nf-synchapi-createmutexw), so a long path counts by its end:
/// two that end alike have one lock, which costs a wait and nothing else.
[[nodiscard]] std::string FileLockName(std::string_view fullPath);

}  // namespace fonklav
