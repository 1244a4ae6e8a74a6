#include "tests/config/ConfigSystem.h"

namespace fonklav::test {
namespace {

using namespace testing;

constexpr const char* kFile = "\\data\\sett_TAPI.ini";
constexpr const char* kFullPath = "C:\\ProgramData\\Rufmon\\data\\sett_TAPI.ini";

struct IniSystem : ConfigSystem {
  explicit IniSystem(const std::string& section = {}) {
    EXPECT_TRUE(Init());
    File(kFullPath) = "[S]\r\n" + section;
  }
  modAPI_INI& ini{config.ini};
};

TEST(Ini, NamesBecomePaths) {
  IniSystem system;
  system.config.state.dataRoot = "D:\\Daten";
  EXPECT_EQ(system.ini.GetMainPath("\\data\\x.ini"), "D:\\Daten\\data\\x.ini");
  EXPECT_EQ(system.ini.GetMainPath("\\update\\x.ini"), "D:\\Daten\\update\\x.ini");
  EXPECT_EQ(system.ini.GetMainPath("\\base\\x.ini"), "C:\\Rufmon\\base\\x.ini");
  EXPECT_EQ(system.ini.GetMainPath(""), "D:\\Daten\\data\\Rufmon.ini");
  for (const char* full : {"\\DATA\\x.ini", "E:\\data\\x.ini", "x.ini", "data\\x.ini", "\\log\\x.ini"}) {
    EXPECT_EQ(system.ini.GetMainPath(full), full);
  }
}

struct NumberRow {
  const char* stored;
  std::int32_t lower;
  std::int32_t upper;
  bool defaultIfOutside;
  std::int32_t value;
};

TEST(Ini, NumbersWithinTheirBounds) {
  for (const NumberRow& row :
       {NumberRow{"K=-7\r\n", 0, 0, false, -7}, NumberRow{"K=0\r\n", 1, 0, false, 1},
        NumberRow{"K=2000000\r\n", 1, 0, false, 2000000}, NumberRow{"K=-1\r\n", 0, 5, false, 0},
        NumberRow{"K=5\r\n", 10, 1000, false, 10}, NumberRow{"K=1001\r\n", 10, 1000, false, 1000},
        NumberRow{"K=3\r\n", 10, 5, false, 10}, NumberRow{"K=7\r\n", 10, 5, false, 5},
        NumberRow{"K=1000\r\n", 10, 1000, true, 1000}, NumberRow{"K=11\r\n", 1, 10, true, 3},
        NumberRow{"K=0\r\n", 1, 10, true, 3}, NumberRow{"K=1\r\n", -5, 0, true, 3},
        NumberRow{"K=-5\r\n", -5, 0, true, -5}, NumberRow{"", 0, 0, false, 3}, NumberRow{"", 10, 20, false, 10}}) {
    IniSystem system(row.stored);
    EXPECT_EQ(system.ini.GetSettLng("S", "K", 3, row.lower, row.upper, row.defaultIfOutside, kFile), row.value)
        << row.stored << row.lower << ".." << row.upper;
  }
}

TEST(Ini, BooleansAreWrittenAsOne) {
  for (const auto& [stored, value] :
       {std::pair{"K=1\r\n", true}, std::pair{"K=2\r\n", true}, std::pair{"K=0\r\n", false},
        std::pair{"K=-1\r\n", false}, std::pair{"K=yes\r\n", false}, std::pair{"K=true\r\n", false}}) {
    IniSystem system(stored);
    EXPECT_EQ(system.ini.GetSettBool("S", "K", false, kFile), value) << stored;
    EXPECT_EQ(system.ini.GetSettBool("S", "K", true, kFile), value) << stored;
  }
  IniSystem empty;
  EXPECT_TRUE(empty.ini.GetSettBool("S", "K", true, kFile));
  EXPECT_FALSE(empty.ini.GetSettBool("S", "K", false, kFile));
}

struct TextRow {
  const char* stored;
  bool ifEmpty;
  bool ifNotNumeric;
  const char* value;
};

TEST(Ini, TextsAndTheirDefault) {
  for (const TextRow& row : {TextRow{"K=a=b\r\n", false, false, "a=b"}, TextRow{"", false, false, "def"},
                             TextRow{"K=\r\n", false, false, ""}, TextRow{"K=\r\n", true, false, "def"},
                             TextRow{"K=\r\n", false, true, "def"}, TextRow{"K=12a\r\n", false, true, "def"},
                             TextRow{"K=12\r\n", false, true, "12"}, TextRow{"K=-1,5\r\n", false, true, "-1,5"}}) {
    IniSystem system(row.stored);
    EXPECT_EQ(system.ini.GetSettStr("s", "k", "def", kFile, row.ifEmpty, row.ifNotNumeric), row.value) << row.stored;
  }
}

TEST(Ini, ALongValueIsCutToTheBuffer) {
  IniSystem system("K=" + std::string(3000, 'x') + "\r\n");
  EXPECT_EQ(system.ini.GetSettStr("S", "K", "", kFile, false, false), std::string(2047, 'x'));
}

TEST(Ini, UmlautsAreBytesOfTheCodePageInTheFile) {
  IniSystem system;
  system.ini.SetSettStr("S", "Gerät", "Büro € ☎", kFile);
  EXPECT_EQ(system.File(kFullPath), "[S]\r\nGer\xE4t=B\xFCro \x80 ?\r\n");
  EXPECT_EQ(system.ini.GetSettStr("S", "Gerät", "", kFile, false, false), "Büro € ?");
}

TEST(Ini, WritesAreSilentAboutWhatTheyCannotDo) {
  IniSystem system;
  system.ini.SetSettStr("S", "K", "1", "\\update\\x.ini");
  system.config.state.writeLocked = true;
  system.ini.SetSettStr("S", "K", "1", kFile);
  EXPECT_EQ(system.File(kFullPath), "[S]\r\n");
  EXPECT_TRUE(system.log->errors.empty());
}

TEST(Ini, RangeAppearsInTheTrace) {
  IniSystem system("K=5\r\n");
  system.diagnostics.traceMode = true;
  EXPECT_EQ(system.ini.GetSettLng("S", "K", 1, 0, 9, false, kFile), 5);
  EXPECT_THAT(system.log->steps, ElementsAre("modAPI_INI.GetSettLng", "modAPI_INI.GetMainPath", "modAPI_INI.Range"));
}

}  // namespace
}  // namespace fonklav::test
