#include "config/modSystemPaths.h"

#include <array>
#include <string_view>

#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {
namespace {
constexpr std::uintptr_t kOwnerWindow = 100;  ///< a fixed number, no real window
/// SHGetPathFromIDListA is told no length and takes MAX_PATH (260) bytes for granted; in a shorter buffer it would
/// write behind the end.
constexpr std::size_t kBufferSize = 512;
}  // namespace

std::string modSystemPaths::GetSpecialFolder(std::int32_t number) const {
  return Procedure(diagnostics_, "modSystemPaths.GetSpecialFolder", {number}, std::string{}, [&](std::string& path) {
    std::array<char, kBufferSize> buffer{};
    if (!folders_.GetPath(kOwnerWindow, number, buffer)) return;
    path = codePage_.ToText(WithoutNul(std::string_view(buffer.data(), buffer.size())));
  });
}

}  // namespace fonklav
