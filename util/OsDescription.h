#pragma once

#include <string>

namespace fonklav {

/// The operating system's version numbers, the real ones and not those of a compatibility setting.
struct OsVersion {
  unsigned major{0};
  unsigned minor{0};
  unsigned build{0};
  bool ntFamily{true};
  bool server{false};
};

/// The edition's name and its numbers: "Windows 10 (10.0.19045)". A system that is younger than all names known here
/// gets the youngest of them.
[[nodiscard]] std::string OsDescription(const OsVersion& version);

/// Whether the system belongs to the NT 6 family (Vista, Server 2008) or is younger: from there on programs may not
/// write beside themselves in the program-files folder.
[[nodiscard]] bool IsNt6OrLater(const OsVersion& version) noexcept;

}  // namespace fonklav
