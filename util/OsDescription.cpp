#include "util/OsDescription.h"

#include <array>
#include <tuple>

namespace fonklav {
namespace {

/// From which numbers on a system is called so. Within a family the youngest comes first, so that the first row that is
/// not younger than the system is its name.
struct EditionRow {
  bool ntFamily;
  bool server;
  unsigned major;
  unsigned minor;
  unsigned build;
  const char* name;
};

constexpr std::array kEditions{
    EditionRow{true, false, 10, 0, 22000, "Windows 11"},
    EditionRow{true, false, 10, 0, 0, "Windows 10"},
    EditionRow{true, false, 6, 3, 0, "Windows 8.1"},
    EditionRow{true, false, 6, 2, 0, "Windows 8"},
    EditionRow{true, false, 6, 1, 0, "Windows 7"},
    EditionRow{true, false, 6, 0, 0, "Windows Vista"},
    EditionRow{true, false, 5, 2, 0, "Windows XP x64"},
    EditionRow{true, false, 5, 1, 0, "Windows XP"},
    EditionRow{true, false, 5, 0, 0, "Windows 2000"},
    EditionRow{true, false, 0, 0, 0, "Windows NT"},
    EditionRow{true, true, 10, 0, 26100, "Windows Server 2025"},
    EditionRow{true, true, 10, 0, 20348, "Windows Server 2022"},
    EditionRow{true, true, 10, 0, 17763, "Windows Server 2019"},
    EditionRow{true, true, 10, 0, 0, "Windows Server 2016"},
    EditionRow{true, true, 6, 3, 0, "Windows Server 2012 R2"},
    EditionRow{true, true, 6, 2, 0, "Windows Server 2012"},
    EditionRow{true, true, 6, 1, 0, "Windows Server 2008 R2"},
    EditionRow{true, true, 6, 0, 0, "Windows Server 2008"},
    EditionRow{true, true, 5, 2, 0, "Windows Server 2003"},
    EditionRow{true, true, 5, 0, 0, "Windows 2000 Server"},
    EditionRow{true, true, 0, 0, 0, "Windows NT Server"},
    EditionRow{false, false, 4, 90, 0, "Windows Me"},
    EditionRow{false, false, 4, 10, 0, "Windows 98"},
    EditionRow{false, false, 4, 0, 0, "Windows 95"},
};

const char* EditionName(const OsVersion& version) {
  for (const EditionRow& row : kEditions) {
    const bool sameFamily = row.ntFamily == version.ntFamily && row.server == (version.ntFamily && version.server);
    const auto from = std::tie(row.major, row.minor, row.build);
    if (sameFamily && from <= std::tie(version.major, version.minor, version.build)) return row.name;
  }
  return "Windows";
}

}  // namespace

std::string OsDescription(const OsVersion& version) {
  std::string text = EditionName(version);
  text += " (" + std::to_string(version.major) + ".";
  text += std::to_string(version.minor) + ".";
  return text + std::to_string(version.build) + ")";
}

bool IsNt6OrLater(const OsVersion& version) noexcept { return version.ntFamily && version.major >= 6; }

}  // namespace fonklav
