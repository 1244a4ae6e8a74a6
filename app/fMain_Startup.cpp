#include "app/Layout.h"
#include "app/fMain.h"
#include "config/Configuration.h"
#include "platform/MessageBoxes.h"
#include "platform/Process.h"
#include "tapi/mTAPIFunctions.h"
#include "tapi/modFunctions.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/Text.h"

// From the command line to the bound line. The line stage runs twice: once before the conversation exists, so that the
// window is complete whatever becomes of the link, and once after, so that the main program hears its reports.
namespace fonklav {
namespace {

constexpr const char* kProgramCode = "FVT";
constexpr std::string_view kLinkApplication = "Rufmon Fonklav";
constexpr std::string_view kLinkTopic = "RufmonFonklav";
constexpr std::string_view kLinkItem = "txtDDE";

}  // namespace

bool fMain::Form_Load() {
  if (!services_.config.declareAll.Init(kProgramCode, false)) return false;
  return Procedure(services_.diagnostics, "fMain.Form_Load", {}, false, [&](bool& loaded) {
    services_.lineFunctions.ResetTable();
    services_.config.languagePrivate.LoadTexts();
    DebugLine("Start - Param=" + services_.process.CommandLine());
    if (!ReadCommandLine()) return;
    loaded = true;
    Language();
    ReLoadSettings();
    ShowCollapsed();
    controls_.tmStart[0].Enabled(true);
  });
}

bool fMain::ReadCommandLine() {
  const std::string argument = services_.process.CommandLine();
  SettModeFlag_ = argument == "/sett";
  if (SettModeFlag_) return true;
  if (services_.functions.fIsTelNumber(argument)) {
    controls_.txtNumber.Text(argument);
    return true;
  }
  if (argument == "/run") {
    controls_.txtNumber.Text("");
    return true;
  }
  services_.config.messages.MsgBoxForward(Lookup(kDirectCallText), kMessageBoxInformation, "");
  return false;
}

void fMain::ShowCollapsed() {
  // Both frames stand in the same place by their layout; one of them is seen.
  controls_.frmInfo[0].Visible(true);
  controls_.frmInfo[1].Visible(false);
  controls_.form.Height(kFormHeightCollapsed);
  controls_.form.Width(kFormWidth);
}

void fMain::tmStart_Timer(int index) {
  Procedure(services_.diagnostics, "fMain.tmStart_Timer", {index}, [&] {
    if (index == 0) OpenLink();
    if (index == 1) BindLineObject();
  });
}

void fMain::OpenLink() {
  controls_.tmStart[0].Enabled(false);
  DebugLine("Init DDE");
  try {
    services_.link.Connect(*this, kLinkApplication, kLinkTopic, kLinkItem);
    controls_.tmLink.Enabled(true);
  } catch (const RunTimeError& error) {
    DebugLine("Init DDE - ERROR=" + error.Description());
  }
  controls_.form.Visible(SettModeFlag_);
  controls_.tmStart[1].Enabled(true);
}

void fMain::BindLineObject() {
  controls_.tmStart[1].Enabled(false);
  auto line = CvbTAPILine::Make(services_.lineServices, *this);
  ReleaseLine();
  tapiline_ = std::move(line);
  tapiline_->LowAPI(TAPI_VERSION1_3);
  tapiline_->HiAPI(TAPI_VERSION3_0);
  DebugLine("Check area codes");
  if (tapiline_->CheckAreaCodes()) {
    DebugLine("Check area codes - OK");
    CreateLine();
  } else {
    DebugLine("Check area codes - Fail");
    ReportMissingAreaCodes();
  }
}

void fMain::CreateLine() {
  if (Line().Create()) return LineCreated("Create line - OK");
  if (!TAPICheckShownFlag_) ReportFirstFailure();
  Line().LowAPI(TAPI_VERSION1_3);
  Line().HiAPI(TAPI_VERSION1_4);
  if (Line().Create()) return LineCreated("Create line - OK Lower version");
  ReportWrongVersion();
}

void fMain::LineCreated(std::string_view debugText) {
  DebugLine(debugText);
  ownAccessCode_ = Line().OutsideLocalAccess();
  services_.lineFunctions.GetTAPIInterfaces(Line());
  SetLine();
}

void fMain::ReportFirstFailure() {
  TAPICheckShownFlag_ = true;
  const std::string text = Line().ErrorString(Line().LastError());
  DebugLine("TAPI check - Message=" + text);
  AppendStatus(text);
  DDEexecute("log|" + text);
  controls_.txtTestStatus.Text(controls_.txtTestStatus.Text() + texts_.checkTapi);
  DDEexecute("log|" + texts_.checkTapi);
}

void fMain::ReportWrongVersion() {
  DebugLine("TAPI check - Lower version Message=" + texts_.errorVersion);
  controls_.txtTestStatus.Text(controls_.txtTestStatus.Text() + texts_.errorVersion);
  DDEexecute("line|" + texts_.errorVersion);
  DDEexecute("log|" + texts_.errorVersion);
}

void fMain::ReportMissingAreaCodes() {
  if (!AreaCodeMsgShownFlag_) {
    services_.config.messages.MsgBoxForward(services_.config.state.texts.systemCodesFail, kMessageBoxExclamation, "");
  }
  AreaCodeMsgShownFlag_ = true;
}

}  // namespace fonklav
