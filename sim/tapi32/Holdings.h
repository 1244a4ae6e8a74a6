#pragma once

#include <string>

namespace fonklav {

/// What the process holds at this moment, as `holdings blocks=77 bytes=14408 windows=24 atoms=12`: busy blocks of all
/// its heaps and their bytes, its windows of every kind with their children, and the global atoms of the whole session.
[[nodiscard]] std::string Holdings();

}  // namespace fonklav
