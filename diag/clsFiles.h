#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "config/modAPI_Files.h"
#include "platform/FileSystem.h"
#include "platform/Ports.h"
#include "util/Diagnostics.h"
#include "util/Text.h"

namespace fonklav {

/// The text files of the suite: 8-bit text whose lines end in CR LF. Every log line is written here, and whole files
/// are read into one text or into lines. Texts are UTF-8 on this side; sizes and trimming go by the bytes of the file.
/// Files are named by their full path. A member that fails writes to the error log and returns what it has so far: the
/// empty text, 0 or false.
class clsFiles {
 public:
  clsFiles(Diagnostics& diagnostics, const modAPI_Files& fileTests, FileSystem& files, const CodePage& codePage,
           const Clock& clock)
      : diagnostics_(diagnostics), fileTests_(fileTests), files_(files), codePage_(codePage), clock_(clock) {}

  /// Puts date and time in front of `sLine`, which is changed, and adds it to the file as a line. A file larger than
  /// `MaxSizeKB` (whole KB) first loses its oldest lines, down to three quarters of that; 0 is no limit. While another
  /// program keeps the file's lock it loses none.
  void FileWrite_Log(const std::string& sFile, std::string& sLine, std::int32_t MaxSizeKB = 0);
  /// The whole file, empty when there is none. `iAnzahlZeilen` receives its line count and is left alone for an empty
  /// file. A file whose lines end in LF alone counts as half as many lines and one; this is deliberate.
  [[nodiscard]] std::string fOpenFileToStream(const std::string& sFile, std::int32_t& iAnzahlZeilen);
  /// The text in pieces, at least one; LF separates where a text has no CR LF. Hands the text over: `sStream` is empty
  /// afterwards.
  void fStreamToArray(std::string& sStream, std::vector<std::string>& aArray, std::string_view Delimiter = kCrLf);
  /// Overwrites the file with the elements that are not empty, one a line. An empty name writes nothing, and is fine.
  bool WriteArrayToFile(const std::string& sFile, std::span<const std::string> aData);
  /// Writes one line, at the end or as the whole file. False when it could not be written.
  bool MakeFile(const std::string& sFile, const std::string& sText, bool bAppend);
  /// Whether the file has at least so many lines; `RealLines` receives how many it has.
  [[nodiscard]] bool CheckFileMaxLines(const std::string& sFile, std::int32_t lMaxLines,
                                       std::int32_t* RealLines = nullptr);
  /// The number of CR LF, and one for a rest behind the last; 0 for a missing or empty file.
  [[nodiscard]] std::int32_t GetFileRowCount(const std::string& sFile);
  /// `LineCount` + 1 lines from the front or from the end of a text, all for -1, without those among them that begin
  /// with ";" if so wanted. The empty piece behind a last CR LF counts as a line. `sStream` is empty afterwards.
  [[nodiscard]] std::string fStream_GetLastLines(std::string& sStream, std::int16_t LineCount, bool bFromLast,
                                                 bool bWithoutComment);
  /// The text without blanks and line breaks at its ends; a lone CR stays. Not traced.
  [[nodiscard]] static std::string TrimCR(std::string_view Text);

 private:
  [[nodiscard]] std::string ReadBytes(const std::string& file) const;
  /// MakeFile for what is bytes of the file already: a line alone, or the kept lines of a log and the new one behind
  /// them.
  bool MakeFileOf(const std::string& file, std::string bytes, bool append);

  Diagnostics& diagnostics_;
  const modAPI_Files& fileTests_;
  FileSystem& files_;
  const CodePage& codePage_;
  const Clock& clock_;
};

}  // namespace fonklav
