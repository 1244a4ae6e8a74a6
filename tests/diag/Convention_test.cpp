#include <algorithm>

#include "tests/app/Dialer.h"

// The convention that every procedure keeps, seen from outside.
namespace fonklav::test {
namespace {

using namespace testing;

TEST(Convention, AFaultInEachLayerOfOneRunStopsNothing) {
  Dialer dialer(std::string(kLine) + "call reply after=20\ncall state CONNECTED after=40\n");
  dialer.StoreLine("ISDN-Line1");
  dialer.Switch("LogTAPI=1\r\nTraceMode=1\r\n");
  dialer.profile.brokenKey = "TAPIAmtVW";
  dialer.sim.inside = Without("lineMakeCall");
  dialer.view.faulty = ControlId::lbLineIDActive;
  dialer.errors = ElementsAre(
      "modAPI_INI.GetSettStr, Line:n + 57 + Device I/O error Params(S:TAPIDial, S:TAPIAmtVW, S:, "
      "S:\\data\\sett_TAPI.ini)",
      "fMain.SetLine + 1000 + no such window",
      "CvbTAPILine.MakeCallAsynch, Line:n + 453 + Can't find DLL entry point Params(S:0301234567)");
  dialer.Start("/run");
  dialer.Command("cmd|call|0301234567", 100);
  EXPECT_EQ(dialer.TakeReports().back(), "btnCall|1|cmdWahl_Click 2") << "the caller goes on with what it got";
  dialer.program.reset();
  // With everything on, each line of each log has its form, and the trace shows who called whom.
  EXPECT_THAT(dialer.Log("debug"), Each(StartsWith("TAPI FVT ")));
  std::vector<std::string> steps;
  for (const std::string& line : dialer.Log("trace")) {
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
