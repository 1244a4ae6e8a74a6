#include "config/modAPI_Files.h"

#include "util/Procedure.h"

namespace fonklav {

bool modAPI_Files::FileExist(const std::string& path) const {
  return Procedure(diagnostics_, "FileExist", {path}, false, [&](bool& exists) {
    const auto attributes =
        state_.wideAttributes ? files_.GetAttributesW(path) : files_.GetAttributesA(codePage_.ToBytes(path));
    exists = attributes && (*attributes & kFileAttributeDirectory) == 0;
  });
}

bool modAPI_Files::FileDelete(const std::string& path) {
  return Procedure(diagnostics_, "FileDelete", {path}, false,
                   [&](bool& deleted) { deleted = !FileExist(path) || files_.DeleteA(codePage_.ToBytes(path)); });
}

}  // namespace fonklav
