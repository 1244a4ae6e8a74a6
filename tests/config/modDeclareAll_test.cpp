#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/config/ConfigSystem.h"
#include "util/RunTimeError.h"

namespace fonklav::test {
namespace {

using testing::ElementsAre;
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

/// Settings of which one cannot be read.
class BrokenProfile : public FakePrivateProfile {
 public:
  using FakePrivateProfile::FakePrivateProfile;
  std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                          std::span<char> buffer, const std::string& file) const override {
    if (key == broken) throw RunTimeError(ErrorNumber::DeviceIOError, kLine);
    return FakePrivateProfile::GetString(section, key, defaultValue, buffer, file);
  }
  std::int32_t GetInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                      const std::string& file) const override {
    if (key == broken) throw RunTimeError(ErrorNumber::DeviceIOError, kLine);
    return FakePrivateProfile::GetInt(section, key, defaultValue, file);
  }
  static constexpr int kLine = 4711;
  std::string broken;
};

struct EarlyFaultRow {
  const char* key;
  const char* function;  ///< that tells the fault
  bool started;
};

TEST(SuiteStart, AFaultBeforeTheLogExistsIsTold) {
  for (const EarlyFaultRow& row : {EarlyFaultRow{"BookPath", "LoadSavePaths", false},
                                   {"BookRefresh", "LoadSavePaths", false},
                                   {"TraceMode", "LoadSpecs", true}}) {
    FakeSystem system;
    BrokenProfile broken{system.files};
    broken.broken = row.key;
    Ports ports = system.AllPorts();
    ports.profile = broken;
    system.File(ConfigSystem::kPathsFile) = "[Paths]\r\nProgramData=D:\\Daten\r\n";
    system.File(ConfigSystem::kSpecsFile) = "[Debug]\r\nLogTAPI=1\r\nTraceMode=1\r\n[LogMode]\r\nMail=1\r\n";
    Diagnostics diagnostics;
    RecordingLog* log = nullptr;
    Configuration config(diagnostics, ports, [&] {
      auto recording = std::make_unique<RecordingLog>(diagnostics);
      log = recording.get();
      return recording;
    });
    EXPECT_EQ(config.declareAll.Init("FVT", false), row.started) << row.key;
    ASSERT_THAT(system.boxes.shown, SizeIs(1)) << row.key;
    EXPECT_EQ(system.boxes.shown[0].prompt, std::string("Error in Function \"") + row.function + "\" at Line " +
                                                std::to_string(BrokenProfile::kLine));
    EXPECT_EQ(system.boxes.shown[0].style, 16U);
    EXPECT_EQ(system.boxes.shown[0].title, "Rufmon - FonklavTAPI");
    EXPECT_EQ(diagnostics.pending.number, 0);
    EXPECT_TRUE(config.state.debug.logTAPI) << "read before the fault";
    EXPECT_EQ(config.state.logMode.mail, !row.started) << "not read after it";
    ASSERT_EQ(log != nullptr, row.started);
    if (log == nullptr) continue;
    EXPECT_EQ(config.state.dataRoot, "D:\\Daten");
    EXPECT_EQ(config.ini.GetSettLng("Debug", row.key, 0, 0, 0, false, ConfigSystem::kSpecsFile), 0);
    EXPECT_THAT(log->errors, ElementsAre("modAPI_INI.GetSettLng 57 Device I/O error")) << "from now on it is logged";
    EXPECT_THAT(system.boxes.shown, SizeIs(1));
  }
}

}  // namespace
}  // namespace fonklav::test
