#include "diag/clsFiles.h"

#include "util/DateTime.h"
#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {

void clsFiles::FileWrite_Log(const std::string& file, std::string& line, std::int32_t maxSizeKB) {
  Procedure(diagnostics_, "clsFiles.FileWrite_Log", {file}, [&] {
    const LocalTime now = clock_.Now();
    line = GetFormatedDateByString(now, "/", true) + "  " + GetFormatedTime(now) + "  " + line;
    const std::uint64_t sizeKB = files_.Length(file) / 1024;
    if (maxSizeKB < 1 || static_cast<std::uint64_t>(maxSizeKB) >= sizeKB) {
      MakeFile(file, line, true);
    } else {
      Trim(file, line, maxSizeKB);
    }
  });
}

void clsFiles::Trim(const std::string& file, const std::string& line, std::int32_t maxSizeKB) {
  const std::string text = files_.Read(file);
  const auto keepKB = static_cast<std::size_t>(maxSizeKB - maxSizeKB / 4);
  std::size_t start = 0;
  while ((text.size() - start) / 1024 > keepKB) {
    const std::size_t end = text.find(kCrLf, start);
    start = end == std::string::npos ? start + 1 : end + kCrLf.size();
  }
  files_.Replace(file, text.substr(start) + codePage_.ToBytes(line) + std::string(kCrLf));
}

bool clsFiles::MakeFile(const std::string& file, const std::string& text, bool append) {
  const ProcedureName name{"clsFiles.MakeFile", "clsFiles_MakeFile"};
  return Procedure(diagnostics_, name, {file, append}, false, [&](bool& written) {
    const std::string bytes = codePage_.ToBytes(text) + std::string(kCrLf);
    if (append) {
      files_.Append(file, bytes);
    } else {
      files_.Write(file, bytes);
    }
    written = true;
  });
}

std::int32_t clsFiles::GetFileRowCount(const std::string& file) {
  return Procedure(diagnostics_, "clsFiles.GetFileRowCount", {file}, 0, [&](std::int32_t& count) {
    if (!fileTests_.FileExist(file)) return;
    const std::string text = files_.Read(file);
    if (text.empty()) return;
    count = static_cast<std::int32_t>(Split(text, kCrLf).size()) - (text.ends_with(kCrLf) ? 1 : 0);
  });
}

}  // namespace fonklav
