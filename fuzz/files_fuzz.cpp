#include "diag/clsFiles.h"
#include "fuzz/Bytes.h"
#include "tests/config/ConfigSystem.h"

// Text files with any bytes in them through the helper that all logs are written with, against counting by hand.
namespace fonklav::test {
namespace {

constexpr const char* kFile = "C:\\Rufmon\\x.log";

std::int32_t SlowCount(std::string_view text, std::string_view what) {
  std::int32_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text.substr(at, what.size()) == what) ++count;
  }
  return count;
}

struct Helper : ConfigSystem {
  clsFiles text{diagnostics, config.files, files, codePage, clock};
};

void WriteLog(Helper& helper, const std::string& old, const std::string& added, std::int32_t limit) {
  helper.File(kFile) = old;
  std::string line = helper.codePage.ToText(added);
  helper.text.FileWrite_Log(kFile, line, limit);
  const std::string written = helper.codePage.ToBytes(line) + "\r\n";
  const std::string& now = helper.File(kFile);
  Require(now.ends_with(written) && written.ends_with(added + "\r\n"), "the line stands at the end");
  const std::string_view kept = std::string_view(now).substr(0, now.size() - written.size());
  Require(old.ends_with(kept), "what stays are the newest bytes");
  const bool trims = limit > 0 && old.size() / 1024 > static_cast<std::size_t>(limit);
  Require(trims == (kept.size() < old.size()), "trimmed above the limit, and only there");
  Require(!trims || kept.size() < static_cast<std::size_t>(limit + 1) * 1024, "and then below it");
}

void Count(Helper& helper, const std::string& old) {
  helper.File(kFile) = old;
  const std::int32_t pairs = SlowCount(old, "\r\n");
  const std::int32_t rows = old.empty() ? 0 : pairs + (old.ends_with("\r\n") ? 0 : 1);
  Require(helper.text.GetFileRowCount(kFile) == rows, "rows");
  std::int32_t counted = -1;
  std::string stream = helper.text.fOpenFileToStream(kFile, counted);
  Require(helper.codePage.ToBytes(stream) == old, "the whole file");
  Require(counted == (old.empty() ? -1 : pairs > 0 ? rows : SlowCount(old, "\n") / 2 + 1), "lines of either kind");
  const std::string trimmed(TrimBlanks(stream));
  std::vector<std::string> lines;
  helper.text.fStreamToArray(stream, lines);
  const std::string_view separator = pairs > 0 ? "\r\n" : "\n";
  std::string joined = lines.front();
  for (std::size_t line = 1; line < lines.size(); ++line) joined.append(separator).append(lines[line]);
  Require(stream.empty() && joined == trimmed, "the pieces are the text");
}

void PickLines(Helper& helper, const std::string& old, std::int16_t count, bool fromLast, bool comments) {
  std::string stream = helper.codePage.ToText(old);
  std::string again = stream;
  std::vector<std::string> lines;
  helper.text.fStreamToArray(again, lines);
  const std::string picked = helper.text.fStream_GetLastLines(stream, count, fromLast, !comments);
  const auto all = static_cast<std::int64_t>(lines.size());
  std::string expected;
  for (std::int64_t line = 0; line < all; ++line) {
    const bool in = count == -1 || (fromLast ? line >= all - 1 - count : line <= count);
    const std::string& text = lines[static_cast<std::size_t>(line)];
    if (in && (comments || !TrimBlanks(text).starts_with(';'))) expected += text + "\r\n";
  }
  Require(picked == clsFiles::TrimCR(expected), "the lines picked");
  Require(clsFiles::TrimCR(picked) == picked || picked.starts_with(' ') || picked.ends_with(' '), "trimmed once");
  Require(!picked.starts_with("\n") && !picked.ends_with("\n") && !picked.starts_with("\r\n"), "no line break outside");
}

}  // namespace

void Fuzz(Bytes bytes) {
  static Helper helper;
  const auto limit = static_cast<std::int32_t>(bytes.Below(4));
  const std::size_t repeated = bytes.Below(8) == 0 ? 1 + bytes.Below(256) : 1;
  const auto count = static_cast<std::int16_t>(static_cast<int>(bytes.Below(8)) - 1);
  const bool fromLast = bytes.Flag();
  const bool comments = bytes.Flag();
  const std::string added = bytes.Text(bytes.Below(32));
  const std::string piece = bytes.Text(4096);
  std::string old;
  for (std::size_t time = 0; time < repeated && old.size() < 8192; ++time) old += piece;
  WriteLog(helper, old, added, limit);
  Count(helper, piece);
  PickLines(helper, piece, count, fromLast, comments);
}

}  // namespace fonklav::test
