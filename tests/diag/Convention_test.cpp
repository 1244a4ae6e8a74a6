#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "app/Program.h"
#include "tests/diag/LogSystem.h"
#include "tests/fakes/FakeView.h"

// The convention that every procedure keeps, seen from outside: one dialer, one call, and a fault in each layer in
// turn.
namespace fonklav::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kScenario =
    "device name=ISDN-Line1 version=0x00020000\n"
    "location local=\"\"\n"
    "call reply after=20\n"
    "call state CONNECTED after=40\n";

/// Settings of which one cannot be read.
class FaultyProfile : public FakePrivateProfile {
 public:
  using FakePrivateProfile::FakePrivateProfile;
  std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                          std::span<char> buffer, const std::string& file) const override {
    if (key == faultyKey) throw RunTimeError(ErrorNumber::DeviceIOError);
    return FakePrivateProfile::GetString(section, key, defaultValue, buffer, file);
  }
  std::string faultyKey;
};

/// A window of which one control cannot be shown.
class FaultyView : public FakeView {
 public:
  void ControlChanged(ControlId id) override {
    if (id == faulty) throw std::runtime_error("no such window");
    FakeView::ControlChanged(id);
  }
  void TextAppended(ControlId id, const std::string& /*added*/) override { ControlChanged(id); }
  std::optional<ControlId> faulty;
};

struct Desk : FakeSystem {
  explicit Desk(const std::string& switches = {}) : FakeSystem(kScenario) {
    File("C:\\Rufmon\\Rufmonspec.ini") = "[Debug]\r\n" + switches;
    File("C:\\ProgramData\\Rufmon\\data\\sett_TAPI.ini") = "[TAPIDial]\r\nTAPILine=ISDN-Line1\r\n";
    process.commandLine = "/run";
  }
  /// A dialer that starts, is told to dial, and ends.
  void Run() {
    Ports ports = AllPorts();
    ports.profile = profile;
    Program program(ports);
    EXPECT_TRUE(program.Load(view));
    program.Input().TimerTick(TimerId::Start0);
    dde.DeliverOutcome();
    dde.Sink().OnAdviseAck(kDdeAckPositive);
    program.Input().TimerTick(TimerId::Start1);
    dde.Sink().OnData("cmd|call|0301234567");
    telephony.Advance(std::chrono::milliseconds(100));
    loop.Run();
  }
  std::vector<std::string> Lines(const char* path) {
    std::vector<std::string> lines = Split(File(path), kCrLf);
    EXPECT_EQ(lines.back(), "");
    lines.pop_back();
    return lines;
  }
  /// The entries of the error log without their heads, and with "n" for the source line.
  std::vector<std::string> Errors() {
    std::vector<std::string> entries;
    for (const std::string& line : Lines(LogSystem::kErrorLog)) {
      EXPECT_TRUE(line.starts_with(LogSystem::Head())) << line;
      const std::string entry = line.substr(LogSystem::Head().size());
      entries.push_back(std::regex_replace(entry, std::regex(", Line: *[1-9][0-9]* "), ", Line:n"));
    }
    return entries;
  }

  FaultyProfile profile{files};
  FaultyView view;
};

TEST(Convention, ARunWithoutAFaultLeavesNoErrorLog) {
  Desk desk;
  desk.Run();
  EXPECT_THAT(desk.telephony.TextsOf("lineMakeCall"), ElementsAre("0301234567"));
  EXPECT_THAT(desk.Errors(), IsEmpty());
}

TEST(Convention, AFaultInTheConfiguration) {
  Desk desk;
  desk.profile.faultyKey = "TAPIAmtVW";
  desk.Run();
  EXPECT_THAT(desk.Errors(), ElementsAre("modAPI_INI.GetSettStr, Line:n + 57 + Device I/O error "
                                         "Params(S:TAPIDial, S:TAPIAmtVW, S:, S:\\data\\sett_TAPI.ini)"));
  EXPECT_THAT(desk.telephony.TextsOf("lineMakeCall"), ElementsAre("0301234567")) << "the call is made all the same";
}

TEST(Convention, AFaultInTheLineObject) {
  Desk desk;
  desk.telephony.SetFunctionMissing("lineMakeCall");
  desk.Run();
  EXPECT_THAT(desk.Errors(), ElementsAre("CvbTAPILine.MakeCallAsynch, Line:n + 453 + Can't find DLL entry point "
                                         "Params(S:0301234567)"));
  EXPECT_THAT(desk.dde.executed, Contains("btnHangUp|1")) << "the caller goes on with what it got";
}

TEST(Convention, AFaultInTheWindowThatIsNotOurs) {
  Desk desk;
  desk.view.faulty = ControlId::txtTestStatus;
  desk.Run();
  EXPECT_THAT(desk.Errors(), Contains("fMain.cmdWahl_Click + 1000 + no such window"));
  EXPECT_THAT(desk.dde.executed, Contains("cmd|quitt"));
}

TEST(Convention, AFaultInTheLogs) {
  Desk desk("LogTAPI=1\r\n");
  desk.files.faults[FakeFileSystem::Key(LogSystem::kDebugLog)] = ErrorNumber::PermissionDenied;
  desk.Run();
  const std::vector<std::string> errors = desk.Errors();
  EXPECT_THAT(errors, testing::Each(std::string("clsFiles_MakeFile, Line:n + 70 + Permission denied Params(S:") +
                                    LogSystem::kDebugLog + ", B:1)"));
  EXPECT_THAT(errors, Not(IsEmpty()));
  EXPECT_THAT(desk.telephony.TextsOf("lineMakeCall"), ElementsAre("0301234567"));
}

TEST(Convention, AFaultInEachLayerOfOneRun) {
  Desk desk("LogTAPI=1\r\nTraceMode=1\r\n");
  desk.profile.faultyKey = "TAPIAmtVW";
  desk.telephony.SetFunctionMissing("lineMakeCall");
  desk.view.faulty = ControlId::lbLineIDActive;
  desk.Run();
  const auto from = [&](const std::string& name) {
    const auto errors = desk.Errors();
    return std::ranges::count_if(errors, [&](const std::string& entry) { return entry.starts_with(name); });
  };
  EXPECT_EQ(from("modAPI_INI.GetSettStr"), 1);
  EXPECT_EQ(from("CvbTAPILine.MakeCallAsynch"), 1);
  EXPECT_GE(from("fMain.SetLine"), 1);

  // With everything on, each line of each log has its form, and the trace shows who called whom.
  const std::string stamp = R"(2015/03/07  09:05:31  )";
  for (const std::string& line : desk.Lines(LogSystem::kTraceLog)) {
    EXPECT_TRUE(std::regex_match(line, std::regex(stamp + R"(FVT v\d+\.\d+  [A-Za-z_.!]+ \d\d+(\(.*\))?)"))) << line;
  }
  for (const std::string& line : desk.Lines(LogSystem::kDebugLog)) {
    EXPECT_TRUE(line.starts_with(stamp + "TAPI FVT ")) << line;
  }
  std::vector<std::string> steps;
  for (const std::string& line : desk.Lines(LogSystem::kTraceLog)) steps.push_back(Split(line.substr(22), " ")[3]);
  const std::vector<std::string> chain{"fMain.Form_Load",
                                       "fMain.Language",
                                       "modLanguage.LoadLangKey",
                                       "txtDDE_Change",
                                       "fMain.cmdWahl_Click",
                                       "CvbTAPILine.OpenLine",
                                       "CvbTAPILine.MakeCallAsynch",
                                       "!ERROR!",
                                       "clsFiles.FileWrite_Log",
                                       "FileExist",
                                       "clsFiles.MakeFile"};
  auto at = steps.begin();
  for (const std::string& step : chain) {
    at = std::find(at, steps.end(), step);
    ASSERT_NE(at, steps.end()) << step << " is not where it belongs";
  }
}

}  // namespace
}  // namespace fonklav::test
