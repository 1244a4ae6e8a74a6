#include "tests/config/ConfigSystem.h"

namespace fonklav::test {
namespace {

using namespace testing;

constexpr const char* kFile = "\\data\\sett_TAPI.ini";
constexpr const char* kFullPath = "C:\\ProgramData\\Rufmon\\data\\sett_TAPI.ini";

struct IniSystem : ConfigSystem {
  explicit IniSystem(const std::string& line = ";") {
    EXPECT_TRUE(Init());
    File(kFullPath) = "[S]\r\n" + line + "\r\n";
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

TEST(Ini, NumbersWithinTheirBounds) {
  const std::tuple<const char*, std::int32_t, std::int32_t, bool, std::int32_t> rows[] = {
      {"K=-7", 0, 0, false, -7}, {"K=0", 1, 0, false, 1},      {"K=2000000", 1, 0, false, 2000000},
      {"K=-1", 0, 5, false, 0},  {"K=5", 10, 1000, false, 10}, {"K=1001", 10, 1000, false, 1000},
      {"K=3", 10, 5, false, 10}, {"K=7", 10, 5, false, 5},     {"K=1000", 10, 1000, true, 1000},
      {"K=11", 1, 10, true, 3},  {"K=0", 1, 10, true, 3},      {"K=1", -5, 0, true, 3},
      {"K=-5", -5, 0, true, -5}, {"", 0, 0, false, 3},         {"", 10, 20, false, 10}};
  for (const auto& [stored, lower, upper, defaultIfOutside, value] : rows) {
    IniSystem system(stored);
    EXPECT_EQ(system.ini.GetSettLng("S", "K", 3, lower, upper, defaultIfOutside, kFile), value)
        << stored << lower << ".." << upper;
  }
}

TEST(Ini, BooleansAreWrittenAsOne) {
  // What is stored, and what it reads as where the default is false and where it is true.
  const std::tuple<const char*, bool, bool> rows[] = {
      {"K=1", true, true},    {"K=2", true, true},     {"K=0", false, false},   {";", false, true},
      {"K=-1", false, false}, {"K=yes", false, false}, {"K=true", false, false}};
  for (const auto& [stored, orFalse, orTrue] : rows) {
    IniSystem system(stored);
    EXPECT_EQ(system.ini.GetSettBool("S", "K", false, kFile), orFalse) << stored;
    EXPECT_EQ(system.ini.GetSettBool("S", "K", true, kFile), orTrue) << stored;
  }
}

TEST(Ini, TextsAndTheirDefault) {
  const std::tuple<const char*, bool, bool, const char*> rows[] = {
      {"K=a=b", false, false, "a=b"},  {"", false, false, "def"},    {"K=", false, false, ""},
      {"K=", true, false, "def"},      {"K=", false, true, "def"},   {"K=12", false, true, "12"},
      {"K=-1,5", false, true, "-1,5"}, {"K=12a", false, true, "def"}};
  for (const auto& [stored, ifEmpty, ifNotNumeric, value] : rows) {
    IniSystem system(stored);
    EXPECT_EQ(system.ini.GetSettStr("s", "k", "def", kFile, ifEmpty, ifNotNumeric), value) << stored;
  }
  IniSystem tooLong("K=" + std::string(3000, 'x'));
  EXPECT_EQ(tooLong.ini.GetSettStr("S", "K", "", kFile, false, false), std::string(2047, 'x'));
}

TEST(Ini, UmlautsAreBytesOfTheCodePageInTheFile) {
  IniSystem system;
  system.ini.SetSettStr("S", "Gerät", "Büro € ☎", kFile);
  EXPECT_EQ(system.File(kFullPath), "[S]\r\n;\r\nGer\xE4t=B\xFCro \x80 ?\r\n");
  EXPECT_EQ(system.ini.GetSettStr("S", "Gerät", "", kFile, false, false), "Büro € ?");
}

TEST(Ini, WritesAreSilentAboutWhatTheyCannotDo) {
  IniSystem system;
  system.ini.SetSettStr("S", "K", "1", "\\update\\x.ini");
  system.config.state.writeLocked = true;
  system.ini.SetSettStr("S", "K", "1", kFile);
  EXPECT_EQ(system.File(kFullPath), "[S]\r\n;\r\n");
  EXPECT_TRUE(system.log->errors.empty());
}

TEST(Ini, RangeAppearsInTheTrace) {
  IniSystem system("K=5");
  system.diagnostics.traceMode = true;
  EXPECT_EQ(system.ini.GetSettLng("S", "K", 1, 0, 9, false, kFile), 5);
  EXPECT_THAT(system.log->steps, ElementsAre("modAPI_INI.GetSettLng", "modAPI_INI.GetMainPath", "modAPI_INI.Range"));
}

}  // namespace
}  // namespace fonklav::test
