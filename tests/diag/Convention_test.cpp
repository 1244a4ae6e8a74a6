#include <algorithm>

#include "tests/app/Dialer.h"

// The convention that every procedure keeps, seen from outside: one dialer, one call, and a fault in each layer in
// turn.
namespace fonklav::test {
namespace {

using namespace testing;

/// A dialer that starts, is told to dial, and ends.
struct Desk : Dialer {
  Desk() : Dialer(std::string(kLine) + "call reply after=20\ncall state CONNECTED after=40\n") {
    StoreLine("ISDN-Line1");
  }
  void Run() {
    Start("/run");
    Command("cmd|call|0301234567");
    Pump(100);
    reports = TakeReports();
    program.reset();
    EXPECT_EQ(sim.CountOf("lineMakeCall"), calls);
  }
  std::size_t calls{1};
  std::vector<std::string> reports;
};

TEST(Convention, AFaultInTheWindowThatIsNotOurs) {
  Desk desk;
  desk.view.faulty = ControlId::txtTestStatus;
  desk.errors = Contains("fMain.cmdWahl_Click + 1000 + no such window");
  desk.calls = 0;
  desk.Run();
  EXPECT_THAT(desk.reports, Contains("cmd|quitt"));
}

TEST(Convention, AFaultInTheLogs) {
  Desk desk;
  desk.Switch("LogTAPI=1\r\n");
  desk.files.faults["c:\\programdata\\rufmon\\log\\debug.log"] = ErrorNumber::PermissionDenied;
  desk.errors = AllOf(SizeIs(Gt(10U)), Each(R"(clsFiles_MakeFile, Line:n + 70 + Permission denied )"
                                            R"(Params(S:C:\ProgramData\Rufmon\log\debug.log, B:1))"));
  desk.Run();
}

TEST(Convention, AFaultInEachLayerOfOneRun) {
  Desk desk;
  desk.Switch("LogTAPI=1\r\nTraceMode=1\r\n");
  desk.profile.brokenKey = "TAPIAmtVW";
  desk.sim.inside = Without("lineMakeCall");
  desk.view.faulty = ControlId::lbLineIDActive;
  desk.errors = ElementsAre(
      "modAPI_INI.GetSettStr, Line:n + 57 + Device I/O error Params(S:TAPIDial, S:TAPIAmtVW, S:, "
      "S:\\data\\sett_TAPI.ini)",
      "fMain.SetLine + 1000 + no such window",
      "CvbTAPILine.MakeCallAsynch, Line:n + 453 + Can't find DLL entry point Params(S:0301234567)");
  desk.calls = 0;
  desk.Run();
  EXPECT_EQ(desk.reports.back(), "btnCall|1|cmdWahl_Click 2") << "the caller goes on with what it got";
  // With everything on, each line of each log has its form, and the trace shows who called whom.
  EXPECT_THAT(desk.Log("debug"), Each(StartsWith("TAPI FVT ")));
  std::vector<std::string> steps;
  for (const std::string& line : desk.Log("trace")) {
    EXPECT_TRUE(std::regex_match(line, std::regex(R"(FVT v\d+\.\d+  [A-Za-z_.!]+ \d\d+(\(.*\))?)"))) << line;
    steps.push_back(Split(line, " ")[3]);
  }
  auto at = steps.begin();
  for (const char* step : {"fMain.Form_Load", "fMain.Language", "modLanguage.LoadLangKey", "txtDDE_Change",
                           "fMain.cmdWahl_Click", "CvbTAPILine.OpenLine", "CvbTAPILine.MakeCallAsynch", "!ERROR!",
                           "clsFiles.FileWrite_Log", "FileExist", "clsFiles.MakeFile"}) {
    at = std::find(at, steps.end(), step);
    ASSERT_NE(at, steps.end()) << step << " is not where it belongs";
  }
}

}  // namespace
}  // namespace fonklav::test
