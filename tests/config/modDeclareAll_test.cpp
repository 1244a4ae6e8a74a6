#include "tests/config/ConfigSystem.h"
#include "util/RunTimeError.h"

namespace fonklav::test {
namespace {

using namespace testing;

constexpr OsVersion kWindowsXp{5, 1, 2600, true, false};
constexpr OsVersion kVista{6, 0, 6002, true, false};

constexpr const char* kCommon = "C:\\ProgramData\\Rufmon";
constexpr const char* kCommonData = "C:\\ProgramData\\Rufmon\\data\\";
constexpr const char* kUnderPrograms = "C:\\Program Files\\Rufmon";

TEST(SuiteFolders, AreResolved) {
  // The paths file, or none; the program's folder; the system; the folders for data and for the phone book.
  const std::tuple<const char*, const char*, OsVersion, const char*, const char*> rows[] = {
      {nullptr, "C:\\Rufmon", kVista, kCommon, kCommonData},
      {"", "C:\\Rufmon", kVista, kCommon, kCommonData},
      {"ProgramData=0", "C:\\Rufmon", kVista, "C:\\Rufmon", "C:\\Rufmon\\data\\"},
      {"ProgramData=0", kUnderPrograms, kVista, kCommon, kCommonData},
      {"ProgramData=0", kUnderPrograms, kWindowsXp, kUnderPrograms, "C:\\Program Files\\Rufmon\\data\\"},
      {"ProgramData=", "C:\\Rufmon", kVista, "C:\\Rufmon", "C:\\Rufmon\\data\\"},
      {"ProgramData=\\", "C:\\Rufmon", kVista, "C:\\Rufmon", "C:\\Rufmon\\data\\"},
      {"ProgramData=00", "C:\\Rufmon", kVista, kCommon, kCommonData},
      {"ProgramData=0,5", "C:\\Rufmon", kVista, kCommon, kCommonData},
      {"ProgramData=D:\\Daten\\", "C:\\Rufmon", kVista, "D:\\Daten", "D:\\Daten\\data\\"},
      {"ProgramData=D:\\Daten\\\\", "C:\\Rufmon", kVista, "D:\\Daten", "D:\\Daten\\\\data\\"},
      {"ProgramData=D:\\", "C:\\Rufmon", kVista, "D:", "D:\\data\\"},
      {"ProgramData=D:\\Gr\xF6\xDF\x65", "C:\\Rufmon", kVista, "D:\\Größe", "D:\\Größe\\data\\"},
      {"BookPath=E:\\Buch", "C:\\Rufmon", kVista, kCommon, "E:\\Buch\\"},
      {"BookPath=E:\\Buch\\", "C:\\Rufmon", kVista, kCommon, "E:\\Buch\\"},
      {"BookPath=1", "C:\\Rufmon", kVista, kCommon, kCommonData}};
  for (const auto& [paths, programFolder, version, dataRoot, bookFolder] : rows) {
    SCOPED_TRACE(PrintToString(paths) + programFolder);
    ConfigSystem system;
    system.process.programFolder = programFolder;
    system.process.version = version;
    const std::string file = std::string(programFolder) + "\\Rufmonpaths.ini";
    if (paths != nullptr) system.File(file) = std::string("[Paths]\r\n") + paths + "\r\n";
    system.files.folders.insert(FakeFileSystem::Key(programFolder));
    EXPECT_TRUE(system.Init());
    const ConfigState& state = system.config.state;
    EXPECT_EQ(state.dataRoot, dataRoot);
    EXPECT_EQ(state.bookFolder, bookFolder);
    EXPECT_FALSE(state.bookRefresh);
    EXPECT_EQ(state.commonDataFolder, kCommon);
    EXPECT_FALSE(system.diagnostics.traceMode || state.debug.logTAPI || state.logMode.mail || state.logMode.exports);
    EXPECT_EQ(system.diagnostics.tag, "FVT");
    EXPECT_NE(system.log, nullptr);
  }
}

TEST(SuiteSwitches, AreReadFromTheirFile) {
  ConfigSystem system;
  system.File(ConfigSystem::kSwitches) =
      "[Debug]\r\nLogTAPI=1\r\nTraceMode=1\r\nLogExport=1\r\nLogOther=-1\r\n[LogMode]\r\nExport=0\r\nMail=0\r\n"
      "[CAPI]\r\nLoadThisValues=1\r\nSkipVersionAndManufact=1\r\nInfoMask_0=1\r\nInfoMask_7=1\r\nCIPMask_1="
      "1\r\nCIPMask_31=1\r\nCIPMask_32=1\r\n";
  EXPECT_TRUE(system.Init());
  const ConfigState& state = system.config.state;
  EXPECT_TRUE(system.diagnostics.traceMode);
  EXPECT_TRUE(state.debug.logTAPI);
  EXPECT_FALSE(state.debug.logOther) << "-1 reads as false";
  EXPECT_FALSE(state.debug.logTiming);
  EXPECT_TRUE(state.logMode.exports) << "forced by the debug switch";
  EXPECT_FALSE(state.logMode.mail);
  EXPECT_TRUE(state.logMode.ntService) << "on unless switched off";
  EXPECT_TRUE(state.capi.skipVersionAndManufact);
  EXPECT_EQ(state.capi.infoMask, 0x81);
  EXPECT_EQ(state.capi.cipMask, 0x80000002U);
}

TEST(SuiteStart, EndsBesideAnotherInstanceOnlyWhenItIsToldTo) {
  ConfigSystem system;
  system.process.otherRunning = true;
  EXPECT_FALSE(system.config.declareAll.Init("FVT", true));
  EXPECT_EQ(system.log, nullptr);
  EXPECT_TRUE(system.config.declareAll.Init("FVT", false));
}

TEST(SuiteStart, ReadsItsSwitchesBeforeItsFoldersAndMasksOnlyWhenAskedFor) {
  ConfigSystem system;
  system.File(ConfigSystem::kPathsFile) = system.File(ConfigSystem::kSwitches) = "[Paths]\r\nBookRefresh=1\r\n";
  EXPECT_TRUE(system.Init());
  EXPECT_TRUE(system.config.state.bookRefresh);
  EXPECT_FALSE(system.config.state.capi.skipVersionAndManufact);
  EXPECT_THAT(system.profile.asked,
              ElementsAre("Debug LogExport", "Debug LogCAPI", "Debug LogAVM", "Debug LogNCID", "Debug LogTAPI",
                          "Debug LogOther", "Debug LogTiming", "Debug TraceMode", "LogMode Export", "LogMode Mail",
                          "LogMode Inverse", "LogMode Update", "LogMode Send2Script", "LogMode NTService",
                          "CAPI LoadThisValues", "CAPI SkipVersionAndManufact", "Paths BookRefresh",
                          "Paths ProgramData", "Paths BookPath"));
}

TEST(SuiteStart, AFaultBeforeTheLogExistsIsTold) {
  const std::tuple<const char*, const char*, bool> rows[] = {
      {"BookPath", "LoadSavePaths", false}, {"BookRefresh", "LoadSavePaths", false}, {"TraceMode", "LoadSpecs", true}};
  for (const auto& [key, function, started] : rows) {
    SCOPED_TRACE(key);
    ConfigSystem system;
    system.profile.brokenKey = key;
    system.File(ConfigSystem::kPathsFile) = "[Paths]\r\nProgramData=D:\\Daten\r\n";
    system.File(ConfigSystem::kSwitches) = "[Debug]\r\nLogTAPI=1\r\nTraceMode=1\r\n[LogMode]\r\nMail=1\r\n";
    EXPECT_EQ(system.Init(), started);
    const std::string place = "\" at Line " + std::to_string(FakePrivateProfile::kBrokenLine);
    EXPECT_THAT(system.boxes.shown, ElementsAre(FieldsAre(std::string("Error in Function \"") + function + place, 16,
                                                          "Rufmon - FonklavTAPI")));
    EXPECT_EQ(system.diagnostics.pending.number, 0);
    EXPECT_TRUE(system.config.state.debug.logTAPI) << "read before the fault";
    EXPECT_EQ(system.config.state.logMode.mail, !started) << "not read after it";
    ASSERT_EQ(system.log != nullptr, started);
    if (system.log == nullptr) continue;
    EXPECT_EQ(system.config.state.dataRoot, "D:\\Daten");
    EXPECT_EQ(system.config.ini.GetSettLng("Debug", key, 0, 0, 0, false, ConfigSystem::kSwitches), 0);
    EXPECT_THAT(system.log->errors, ElementsAre("modAPI_INI.GetSettLng 57 Device I/O error")) << "now it is logged";
    EXPECT_THAT(system.boxes.shown, SizeIs(1));
  }
}

}  // namespace
}  // namespace fonklav::test
