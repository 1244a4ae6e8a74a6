#include "diag/clsFiles.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "util/DateTime.h"
#include "util/Procedure.h"

namespace fonklav {
namespace {

constexpr std::size_t kKB = 1024;

/// Indexes, both included; last may be before first, and then there are none.
struct LineRange {
  std::int64_t first;
  std::int64_t last;
};

/// Which of the elements 0 to `last` are picked: `lineCount` + 1 of them, or all for -1.
LineRange Picked(std::int64_t last, std::int16_t lineCount, bool fromLast) {
  if (fromLast) return {lineCount == -1 || lineCount > last ? 0 : last - lineCount, last};
  return {0, lineCount == -1 ? last : std::min<std::int64_t>(lineCount, last)};
}

std::int32_t Occurrences(std::string_view text, std::string_view what) {
  std::int32_t count = 0;
  for (std::size_t at = text.find(what); at != std::string_view::npos; at = text.find(what, at + what.size())) ++count;
  return count;
}

std::int32_t RowCount(std::string_view text) { return Occurrences(text, kCrLf) + (text.ends_with(kCrLf) ? 0 : 1); }

std::int32_t RowCountOfAnySystem(std::string_view text) {
  if (text.find(kCrLf) != std::string_view::npos) return RowCount(text);
  // Deliberate: a line feed alone counts as half a line end, and one at the end of the text counts like the others.
  return Occurrences(text, "\n") / 2 + 1;
}

/// Where to cut off the oldest lines so that at most `keepKB` whole KB stay. The cut is behind a line's end; where no
/// line ends in time it goes through a line.
std::size_t StartOfNewest(std::string_view text, std::size_t keepKB) {
  std::size_t start = 0;
  while ((text.size() - start) / kKB > keepKB) {
    const std::size_t end = text.find(kCrLf, start);
    if (end == std::string_view::npos) return text.size() - ((keepKB + 1) * kKB - 1);
    start = end + kCrLf.size();
  }
  return start;
}

}  // namespace

void clsFiles::FileWrite_Log(const std::string& sFile, std::string& sLine, std::int32_t MaxSizeKB) {
  Procedure(diagnostics_, "clsFiles.FileWrite_Log", {sFile}, [&] {
    if (diagnostics_.tag.empty()) diagnostics_.tag = "NON";
    // From the look at the size to the last byte: a line that another program adds in between would be lost.
    const std::unique_ptr<FileLock> lock = files_.Lock(sFile);
    PutStamp(sLine, clock_.Now());
    const bool exists = fileTests_.FileExist(sFile);
    const std::uint64_t sizeKB = exists && MaxSizeKB > 0 ? files_.Length(sFile) / kKB : 0;
    if (!lock || MaxSizeKB < 1 || std::cmp_greater_equal(MaxSizeKB, sizeKB)) {
      MakeFile(sFile, sLine, true);
      return;
    }
    // What stays goes back as bytes: by way of text, whatever the code page does not know would be lost.
    const std::string old = ReadBytes(sFile);
    std::string bytes = old.substr(StartOfNewest(old, static_cast<std::size_t>(MaxSizeKB - MaxSizeKB / 4)));
    bytes += codePage_.ToBytes(sLine);
    MakeFileOf(sFile, std::move(bytes), false);
  });
}

std::string clsFiles::fOpenFileToStream(const std::string& sFile, std::int32_t& iAnzahlZeilen) {
  return Procedure(diagnostics_, "clsFiles.fOpenFileToStream", {sFile}, std::string{}, [&](std::string& stream) {
    const std::string bytes = ReadBytes(sFile);
    if (bytes.empty()) return;
    stream = codePage_.ToText(bytes);
    iAnzahlZeilen = RowCountOfAnySystem(stream);
  });
}

void clsFiles::fStreamToArray(std::string& sStream, std::vector<std::string>& aArray, std::string_view Delimiter) {
  Procedure(diagnostics_, "clsFiles.fStreamToArray", {Delimiter}, [&] {
    const auto has = [&](std::string_view what) { return sStream.find(what) != std::string::npos; };
    const std::string_view separator = Delimiter == kCrLf && !has(kCrLf) && has("\n") ? "\n" : Delimiter;
    const std::string_view text = TrimBlanks(sStream);
    if (separator.empty()) {
      aArray.assign(1, std::string(text));
    } else {
      aArray = Split(text, separator);
    }
    sStream.clear();
  });
}

bool clsFiles::WriteArrayToFile(const std::string& sFile, std::span<const std::string> aData) {
  return Procedure(diagnostics_, "clsFiles.WriteArrayToFile", {sFile}, false, [&](bool& done) {
    if (!sFile.empty()) {
      std::string bytes;
      for (const std::string& element : aData) {
        if (!element.empty()) bytes.append(codePage_.ToBytes(element)).append(kCrLf);
      }
      files_.Write(sFile, bytes);
    }
    done = true;
  });
}

bool clsFiles::MakeFile(const std::string& sFile, const std::string& sText, bool bAppend) {
  return MakeFileOf(sFile, codePage_.ToBytes(sText), bAppend);
}

bool clsFiles::MakeFileOf(const std::string& file, std::string bytes, bool append) {
  // The error log knows this procedure under an older name.
  constexpr ProcedureName name{"clsFiles.MakeFile", "clsFiles_MakeFile"};
  return Procedure(diagnostics_, name, {file, append}, false, [&](bool& written) {
    bytes += kCrLf;
    append ? files_.Append(file, bytes) : files_.Replace(file, bytes);
    written = true;
  });
}

bool clsFiles::CheckFileMaxLines(const std::string& sFile, std::int32_t lMaxLines, std::int32_t* RealLines) {
  return Procedure(diagnostics_, "clsFiles.CheckFileMaxLines", {sFile, lMaxLines}, false, [&](bool& reached) {
    const std::int32_t count = GetFileRowCount(sFile);
    if (RealLines != nullptr) *RealLines = count;
    reached = count >= lMaxLines;
  });
}

std::int32_t clsFiles::GetFileRowCount(const std::string& sFile) {
  return Procedure(diagnostics_, "clsFiles.GetFileRowCount", {sFile}, 0, [&](std::int32_t& count) {
    const std::string bytes = ReadBytes(sFile);
    if (!bytes.empty()) count = RowCount(bytes);
  });
}

std::string clsFiles::fStream_GetLastLines(std::string& sStream, std::int16_t LineCount, bool bFromLast,
                                           bool bWithoutComment) {
  return Procedure(diagnostics_, "clsFiles.fStream_GetLastLines", {LineCount, bFromLast, bWithoutComment},
                   std::string{},
                   [&](std::string& result) {
    std::vector<std::string> lines;
    fStreamToArray(sStream, lines);
    // Comments count as lines of the range, so leaving them out makes the result shorter.
    const auto [first, last] = Picked(static_cast<std::int64_t>(lines.size()) - 1, LineCount, bFromLast);
    std::string picked;
    for (std::int64_t index = first; index <= last; ++index) {
      const std::string& line = lines[static_cast<std::size_t>(index)];
      if (bWithoutComment && TrimBlanks(line).starts_with(';')) continue;
      picked.append(line).append(kCrLf);
    }
    result = TrimCR(picked);
  });
}

std::string clsFiles::TrimCR(std::string_view Text) {
  Text = TrimBlanks(Text);
  // Pairs go before single line feeds, and once more after each, so that mixed line ends leave no half of a pair.
  for (std::size_t before = Text.size() + 1; Text.size() < before;) {
    before = Text.size();
    while (Text.starts_with(kCrLf)) Text.remove_prefix(kCrLf.size());
    while (Text.ends_with(kCrLf)) Text.remove_suffix(kCrLf.size());
    if (Text.starts_with('\n')) Text.remove_prefix(1);
    if (Text.ends_with('\n') && !Text.ends_with(kCrLf)) Text.remove_suffix(1);
  }
  return std::string(Text);
}

std::string clsFiles::ReadBytes(const std::string& file) const {
  return fileTests_.FileExist(file) && files_.Length(file) != 0 ? files_.Read(file) : std::string{};
}

}  // namespace fonklav
