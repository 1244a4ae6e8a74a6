#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/config/ConfigSystem.h"
#include "util/RunTimeError.h"

namespace fonklav::test {
namespace {

using testing::MatchesRegex;
using testing::SizeIs;

constexpr OsVersion kWindowsXp{5, 1, 2600, true, false};
constexpr OsVersion kWindows98{4, 10, 2222, false, false};
constexpr OsVersion kVista{6, 0, 6002, true, false};

struct PathsRow {
  const char* name;
  const char* paths;  ///< of the paths file; null when there is none
  const char* programFolder;
  OsVersion version;
  const char* dataRoot;
  const char* bookFolder;
};

constexpr const char* kCommon = "C:\\ProgramData\\Rufmon";
constexpr const char* kCommonData = "C:\\ProgramData\\Rufmon\\data\\";
constexpr const char* kUnderPrograms = "C:\\Program Files\\Rufmon";

const PathsRow kPaths[] = {
    {"noFile", nullptr, "C:\\Rufmon", kVista, kCommon, kCommonData},
    {"nothingSaid", "", "C:\\Rufmon", kVista, kCommon, kCommonData},
    {"zero", "ProgramData=0", "C:\\Rufmon", kVista, "C:\\Rufmon", "C:\\Rufmon\\data\\"},
    {"zeroProtected", "ProgramData=0", kUnderPrograms, kVista, kCommon, kCommonData},
    {"zeroUnprotected", "ProgramData=0", kUnderPrograms, kWindowsXp, kUnderPrograms,
     "C:\\Program Files\\Rufmon\\data\\"},
    {"zeroOn98", "ProgramData=0", kUnderPrograms, kWindows98, kUnderPrograms, "C:\\Program Files\\Rufmon\\data\\"},
    {"emptyIsZero", "ProgramData=", "C:\\Rufmon", kVista, "C:\\Rufmon", "C:\\Rufmon\\data\\"},
    {"backslashIsZero", "ProgramData=\\", "C:\\Rufmon", kVista, "C:\\Rufmon", "C:\\Rufmon\\data\\"},
    {"otherNumber", "ProgramData=2", "C:\\Rufmon", kVista, kCommon, kCommonData},
    {"twoZeros", "ProgramData=00", "C:\\Rufmon", kVista, kCommon, kCommonData},
    {"fraction", "ProgramData=0,5", "C:\\Rufmon", kVista, kCommon, kCommonData},
    {"folder", "ProgramData=D:\\Daten\\", "C:\\Rufmon", kVista, "D:\\Daten", "D:\\Daten\\data\\"},
    {"twoBackslashes", "ProgramData=D:\\Daten\\\\", "C:\\Rufmon", kVista, "D:\\Daten", "D:\\Daten\\\\data\\"},
    {"drive", "ProgramData=D:\\", "C:\\Rufmon", kVista, "D:", "D:\\data\\"},
    {"umlauts",
     "ProgramData=D:\\Gr\xF6\xDF"
     "e",
     "C:\\Rufmon", kVista, "D:\\Größe", "D:\\Größe\\data\\"},
    {"book", "BookPath=E:\\Buch", "C:\\Rufmon", kVista, kCommon, "E:\\Buch\\"},
    {"bookWithBackslash", "BookPath=E:\\Buch\\", "C:\\Rufmon", kVista, kCommon, "E:\\Buch\\"},
    {"bookNumber", "BookPath=1", "C:\\Rufmon", kVista, kCommon, kCommonData},
};

class SuiteFolders : public testing::TestWithParam<PathsRow> {};

TEST_P(SuiteFolders, AreResolved) {
  const PathsRow& row = GetParam();
  ConfigSystem system;
  system.process.programFolder = row.programFolder;
  system.process.version = row.version;
  const std::string file = std::string(row.programFolder) + "\\Rufmonpaths.ini";
  if (row.paths != nullptr) system.File(file) = std::string("[Paths]\r\n") + row.paths + "\r\n";
  system.files.folders.insert(FakeFileSystem::Key(row.programFolder));
  EXPECT_TRUE(system.Init());
  EXPECT_EQ(system.config.state.dataRoot, row.dataRoot);
  EXPECT_EQ(system.config.state.bookFolder, row.bookFolder);
  EXPECT_EQ(system.config.state.commonDataFolder, kCommon);
  EXPECT_EQ(system.diagnostics.tag, "FVT");
  EXPECT_NE(system.log, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Rows, SuiteFolders, testing::ValuesIn(kPaths), [](const auto& row) { return row.param.name; });

TEST(SuiteSwitches, WithoutAFileAllAreOff) {
  ConfigSystem system;
  EXPECT_TRUE(system.Init());
  const ConfigState& state = system.config.state;
  EXPECT_FALSE(system.diagnostics.traceMode || state.debug.logTAPI || state.logMode.mail || state.logMode.exports);
}

TEST(SuiteSwitches, AreReadFromTheirFile) {
  ConfigSystem system;
  system.File(ConfigSystem::kSpecsFile) =
      "[Debug]\r\nLogTAPI=1\r\nTraceMode=1\r\nLogExport=1\r\nLogOther=-1\r\n[LogMode]\r\nExport=0\r\nMail=0\r\n"
      "[CAPI]\r\nLoadThisValues=1\r\nInfoMask_0=1\r\nInfoMask_7=1\r\nCIPMask_1=1\r\nCIPMask_31=1\r\nCIPMask_32=1\r\n";
  EXPECT_TRUE(system.Init());
  const ConfigState& state = system.config.state;
  EXPECT_TRUE(system.diagnostics.traceMode);
  EXPECT_TRUE(state.debug.logTAPI);
  EXPECT_FALSE(state.debug.logOther) << "-1 reads as false";
  EXPECT_FALSE(state.debug.logTiming);
  EXPECT_TRUE(state.logMode.exports) << "forced by the debug switch";
  EXPECT_FALSE(state.logMode.mail);
  EXPECT_TRUE(state.logMode.ntService) << "on unless switched off";
  EXPECT_EQ(state.capi.infoMask, 0x81);
  EXPECT_EQ(state.capi.cipMask, 0x80000002U);
}

TEST(SuiteSwitches, MasksAreReadOnlyWhenAskedFor) {
  ConfigSystem system;
  system.File(ConfigSystem::kSpecsFile) =
      "[Debug]\r\nTraceMode=-1\r\n[CAPI]\r\nSkipVersionAndManufact=1\r\nInfoMask_0=1\r\n";
  EXPECT_TRUE(system.Init());
  EXPECT_FALSE(system.diagnostics.traceMode);
  EXPECT_TRUE(system.config.state.capi.skipVersionAndManufact);
  EXPECT_EQ(system.config.state.capi.infoMask, 0);
}

TEST(SuiteStart, EndsBesideAnotherInstanceOnlyWhenItIsToldTo) {
  ConfigSystem system;
  system.process.otherRunning = true;
  EXPECT_FALSE(system.config.declareAll.Init("FVT", true));
  EXPECT_EQ(system.log, nullptr);
  EXPECT_TRUE(system.config.declareAll.Init("FVT", false));
}

/// A system that fails when it is asked for its version.
class BrokenProcess : public FakeProcess {
 public:
  [[nodiscard]] OsVersion SystemVersion() const override { throw RunTimeError(ErrorNumber::InternalError); }
};

TEST(SuiteStart, AFaultInTheFoldersIsShownAndEndsTheProgram) {
  FakeSystem system;
  BrokenProcess broken;
  Ports ports{system.clock, system.codePage, system.dde,     system.files, system.icons, system.boxes,
              system.loop,  system.locale,   system.profile, broken,       system.shell, system.telephony};
  system.File(ConfigSystem::kPathsFile) = "[Paths]\r\nProgramData=0\r\n";
  system.shell.folders.erase(CSIDL_PROGRAM_FILES);  // an unknown folder is in every path
  Diagnostics diagnostics;
  Configuration config(diagnostics, ports, [] { return std::unique_ptr<ProcedureLog>(); });
  EXPECT_FALSE(config.declareAll.Init("FVT", false));
  ASSERT_THAT(system.boxes.shown, SizeIs(1));
  EXPECT_THAT(system.boxes.shown[0].prompt, MatchesRegex("Error in Function \"LoadSavePaths\" at Line [1-9][0-9]*"));
  EXPECT_EQ(system.boxes.shown[0].style, 16U);
  EXPECT_EQ(system.boxes.shown[0].title, "Rufmon - FonklavTAPI");
  EXPECT_EQ(diagnostics.pending.number, 0);
}

}  // namespace
}  // namespace fonklav::test
