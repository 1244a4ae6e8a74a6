#include "diag/clsFiles.h"

#include "tests/diag/LogSystem.h"

namespace fonklav::test {
namespace {

using namespace testing;

constexpr const char* kFile = "C:\\ProgramData\\Rufmon\\log\\x.log";

struct FilesSystem : LogSystem {
  void Log(std::string line, std::int32_t maxKB = 0) { textFiles.FileWrite_Log(kFile, line, maxKB); }

  clsFiles textFiles{diagnostics, config.files, files, codePage, clock};
};

TEST(LogLine, IsStampedInTheCallersText) {
  FilesSystem system;
  std::string line = "Übung";
  system.diagnostics.tag.clear();
  system.textFiles.FileWrite_Log(kFile, line);
  EXPECT_EQ(line, "2015/03/07  09:05:31  Übung");
  EXPECT_EQ(system.File(kFile), "2015/03/07  09:05:31  \xDC\x62ung\r\n");
  EXPECT_EQ(system.diagnostics.tag, "NON");
}

std::string HundredByteLines(std::size_t bytes) {
  std::string text;
  for (int line = 100000; text.size() < bytes; ++line) text += std::to_string(line) + std::string(92, '.') + "\r\n";
  return text.substr(text.size() - bytes);
}

TEST(LogSize, FallsBackToThreeQuarters) {
  const std::string line = "2015/03/07  09:05:31  new\r\n";
  const std::string stream(120 * 1024, '\xFF');  // no line ends anywhere
  // The old text, the limit in KB, and how many of the old text's bytes stay, its newest.
  const std::tuple<const char*, std::string, std::int32_t, std::size_t> rows[] = {
      {"exactly at the limit", HundredByteLines(100 * 1024), 100, 100 * 1024},
      {"a byte short of the next KB", HundredByteLines(101 * 1024 - 1), 100, 101 * 1024 - 1},
      // Whole lines of 100 bytes, below 76 KB: 778 of them.
      {"over the limit", HundredByteLines(101 * 1024), 100, 77800},
      {"no lines", stream, 100, 76 * 1024 - 1},
      {"one huge line, then small ones", std::string(200 * 1024, 'a') + "\r\n" + HundredByteLines(1000), 100, 1000},
      {"small ones, then a huge rest", HundredByteLines(1000) + std::string(200 * 1024, '\0'), 100, 76 * 1024 - 1},
      {"limit of one KB", HundredByteLines(5000), 1, 2000},
      {"limit of three KB", HundredByteLines(5000), 3, 4000}};
  for (const auto& [name, before, maxKB, kept] : rows) {
    FilesSystem system;
    system.File(kFile) = before;
    system.Log("new", maxKB);
    EXPECT_EQ(system.File(kFile).size(), kept + line.size()) << name;
    EXPECT_TRUE(system.File(kFile) == before.substr(before.size() - kept) + line) << name;
  }
}

TEST(LogSize, AKillDuringTrimmingLeavesTheOldOrTheNewFile) {
  const std::string before = HundredByteLines(60 * 1024);
  std::string after;
  for (int steps = 0; steps < 6; ++steps) {
    FilesSystem system;
    system.File(kFile) = before;
    system.files.stepsToLive = steps;
    system.Log("new", 50);
    const std::string found = system.File(kFile);
    if (found != before) after = found;
    ASSERT_TRUE(found == before || found.ends_with("  new\r\n")) << "killed after " << steps << " steps";
    ASSERT_GT(found.size(), 30 * 1024U);
  }
  EXPECT_TRUE(after.ends_with("new\r\n")) << "the kill came too early each time";
}

TEST(LogSize, TrimmingLosesNoLineOfAnotherProgram) {
  for (const bool kept : {false, true}) {
    FilesSystem system;
    system.File(kFile) = HundredByteLines(60 * 1024);
    int theirs = 0;
    system.files.otherProgram = [&](const std::string& key) {
      if (key == FakeFileSystem::Key(kFile)) system.File(kFile) += "theirs " + std::to_string(theirs++) + "\r\n";
    };
    if (kept) system.files.keptLocks.insert(FakeFileSystem::Key(kFile));
    system.Log("new", 50);
    EXPECT_GT(theirs, 0);
    for (int line = 0; line < theirs; ++line) {
      EXPECT_NE(system.File(kFile).find("theirs " + std::to_string(line) + "\r\n"), std::string::npos) << kept << line;
    }
    EXPECT_NE(system.File(kFile).find("  new\r\n"), std::string::npos) << "written whoever has the lock";
    EXPECT_EQ(system.File(kFile).size() > 50 * 1024, kept) << "not cut beneath somebody else, but cut otherwise";
  }
}

TEST(Lines, AreCounted) {
  // A stream of lines ended by LF alone counts half of them and one; an empty one leaves the count alone.
  const std::tuple<const char*, std::int32_t, std::int32_t> rows[] = {
      {"a\nb\nc\nd\ne\n", 1, 3}, {"a\nb\nc\n", 1, 2},  {"\r\n", 1, 1},
      {"a\r\r\n\n\r\n", 2, 2},   {"a\n\r\nb\n", 2, 2}, {"a", 1, 1},
      {"a\r\nb\r\n", 2, 2},      {"a\r\nb", 2, 2},     {"", 0, -1}};
  for (const auto& [bytes, inFile, inStream] : rows) {
    FilesSystem system;
    system.File(kFile) = bytes;
    std::int32_t count = -1;
    EXPECT_EQ(system.textFiles.fOpenFileToStream(kFile, count), bytes);
    EXPECT_EQ(count, inStream) << PrintToString(bytes);
    EXPECT_EQ(system.textFiles.GetFileRowCount(kFile), inFile) << PrintToString(bytes);
  }
  FilesSystem system;
  std::int32_t real = -1;
  EXPECT_FALSE(system.textFiles.CheckFileMaxLines(kFile, 1, &real)) << "a missing file has no lines";
  EXPECT_EQ(real, 0);
  system.File(kFile) = "a\r\nb";
  EXPECT_TRUE(system.textFiles.CheckFileMaxLines(kFile, 2, &real));
  EXPECT_FALSE(system.textFiles.CheckFileMaxLines(kFile, 3));
  EXPECT_EQ(real, 2);
  EXPECT_THAT(system.Errors(), IsEmpty());
  system.files.faults[FakeFileSystem::Key(kFile)] = ErrorNumber::PermissionDenied;
  EXPECT_EQ(system.textFiles.GetFileRowCount(kFile), 0) << "one that cannot be read has none that we know of";
  EXPECT_FALSE(system.textFiles.CheckFileMaxLines(kFile, 1));
  EXPECT_THAT(system.Errors(), SizeIs(2));
}

TEST(Lines, AreSplit) {
  FilesSystem system;
  const auto split = [&](std::string text, std::string_view delimiter = kCrLf) {
    std::vector<std::string> pieces{"old"};
    system.textFiles.fStreamToArray(text, pieces, delimiter);
    EXPECT_EQ(text, "") << "the text is handed over";
    return pieces;
  };
  EXPECT_THAT(split("  a\r\n\r\nb\r\n  "), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(split("a\nb"), ElementsAre("a", "b"));
  EXPECT_THAT(split("a\nb\r\nc"), ElementsAre("a\nb", "c"));
  EXPECT_THAT(split("a|b", "|"), ElementsAre("a", "b"));
  EXPECT_THAT(split("a\nb", "|"), ElementsAre("a\nb"));
  EXPECT_THAT(split("  a  ", ""), ElementsAre("a"));
  EXPECT_THAT(split(""), ElementsAre(""));
}

TEST(Lines, AreWritten) {
  FilesSystem system;
  const std::vector<std::string> lines{"ä", "", "b"};
  EXPECT_TRUE(system.textFiles.WriteArrayToFile("", lines));
  EXPECT_TRUE(system.textFiles.WriteArrayToFile(kFile, lines));
  EXPECT_EQ(system.File(kFile), "\xE4\r\nb\r\n");
  EXPECT_TRUE(system.textFiles.MakeFile(kFile, "c", true));
  EXPECT_EQ(system.File(kFile), "\xE4\r\nb\r\nc\r\n");
  EXPECT_TRUE(system.textFiles.MakeFile(kFile, "d", false));
  EXPECT_EQ(system.File(kFile), "d\r\n");
  EXPECT_FALSE(system.textFiles.MakeFile("C:\\nowhere\\x.txt", "e", true));
  EXPECT_FALSE(system.textFiles.WriteArrayToFile("C:\\nowhere\\x.txt", lines));
  EXPECT_THAT(system.Errors(),
              ElementsAre(ContainsRegex(R"(clsFiles_MakeFile, Line:.* \+ 76 \+ .*\(S:C:\\nowhere\\x.txt, B:1\)$)"),
                          HasSubstr("clsFiles.WriteArrayToFile")));
}

TEST(Lines, ArePicked) {
  constexpr const char* kText = "x\r\n;c\r\ny\r\n";
  const std::tuple<const char*, std::int16_t, bool, bool, const char*> rows[] = {
      {kText, 2, true, true, "y"},       {kText, 2, true, false, ";c\r\ny"}, {kText, 0, true, false, ""},
      {kText, -1, true, true, "x\r\ny"}, {kText, 9, true, true, "x\r\ny"},   {kText, 0, false, true, "x"},
      {kText, 1, false, true, "x"},      {kText, 2, false, true, "x\r\ny"},  {kText, -1, false, false, "x\r\n;c\r\ny"},
      {kText, -2, false, false, ""},     {kText, -2, true, false, ""},       {" ; c\nz", -1, false, true, "z"},
      {"", -1, false, false, ""}};
  FilesSystem system;
  for (const auto& [given, count, fromLast, withoutComment, picked] : rows) {
    std::string text = given;
    EXPECT_EQ(system.textFiles.fStream_GetLastLines(text, count, fromLast, withoutComment), picked)
        << count << fromLast << withoutComment;
    EXPECT_EQ(text, "");
  }
}

TEST(TrimCR, TakesLineBreaksOffTheEnds) {
  const std::pair<const char*, const char*> rows[] = {
      {"\r\n\r\nabc\r\n\n", "abc"}, {"\n\nabc\n\n", "abc"}, {"\r\n", ""},
      {"  a\r\nb  ", "a\r\nb"},     {"abc\r", "abc\r"},     {" \r\n ", ""},
      {"\r\n a \r\n", " a "},       {"\rabc", "\rabc"},     {"", ""}};
  for (const auto& [text, trimmed] : rows) EXPECT_EQ(clsFiles::TrimCR(text), trimmed) << PrintToString(text);
}

}  // namespace
}  // namespace fonklav::test
