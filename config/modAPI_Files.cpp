#include "config/modAPI_Files.h"

#include "util/Procedure.h"

namespace fonklav {

std::optional<std::uint64_t> modAPI_Files::FileLength(const std::string& path) const {
  return Procedure(diagnostics_, "FileExist", {path}, std::optional<std::uint64_t>{}, [&](auto& length) {
    const auto attributes =
        state_.wideAttributes ? files_.GetAttributesW(path) : files_.GetAttributesA(codePage_.ToBytes(path));
    if (attributes && (attributes->flags & kFileAttributeDirectory) == 0) length = attributes->length;
  });
}

bool modAPI_Files::FileDelete(const std::string& path) {
  return Procedure(diagnostics_, "FileDelete", {path}, false,
                   [&](bool& deleted) { deleted = !FileExist(path) || files_.DeleteA(codePage_.ToBytes(path)); });
}

}  // namespace fonklav
