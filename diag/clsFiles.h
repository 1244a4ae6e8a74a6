#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/modAPI_Files.h"
#include "platform/Clock.h"
#include "platform/CodePage.h"
#include "platform/FileSystem.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// Text files of the suite: 8-bit text with CR LF line ends. Every log line is written here.
class clsFiles {
 public:
  clsFiles(Diagnostics& diagnostics, const modAPI_Files& fileTests, FileSystem& files, const CodePage& codePage,
           const Clock& clock)
      : diagnostics_(diagnostics), fileTests_(fileTests), files_(files), codePage_(codePage), clock_(clock) {}

  /// Puts date and time in front of `line`, which is changed, and adds it to the file. A file larger than `maxSizeKB`
  /// falls back to about three quarters of that, oldest lines first; 0 is no limit.
  void FileWrite_Log(const std::string& file, std::string& line, std::int32_t maxSizeKB = 0);
  /// Writes one line, at the end or as the whole file. False when it could not be written, which the error log hears.
  bool MakeFile(const std::string& file, const std::string& text, bool append);
  /// The number of lines that end in CR LF, and one for a rest behind the last; 0 for a missing or empty file.
  [[nodiscard]] std::int32_t GetFileRowCount(const std::string& file);

 private:
  void Trim(const std::string& file, const std::string& line, std::int32_t maxSizeKB);

  Diagnostics& diagnostics_;
  const modAPI_Files& fileTests_;
  FileSystem& files_;
  const CodePage& codePage_;
  const Clock& clock_;
};

}  // namespace fonklav
