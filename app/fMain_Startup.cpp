#include <utility>

#include "app/Layout.h"
#include "app/fMain.h"
#include "app/modSaveSetting.h"
#include "config/Configuration.h"
#include "platform/Ports.h"
#include "tapi/mTAPIFunctions.h"
#include "tapi/modFunctions.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/Text.h"

// From the command line to the bound line. The line stage runs twice: once before the conversation exists, so that the
// window is complete whatever becomes of the link, and once after, so that the main program hears its reports.
namespace fonklav {

using enum ControlId;
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
    DebugLine("Start - Param=", services_.process.CommandLine());
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
    controls_[txtNumber].Text(argument);
    return true;
  }
  if (argument == "/run") {
    controls_[txtNumber].Text("");
    return true;
  }
  services_.config.messages.MsgBoxForward(services_.config.language.LoadLangKey(kDirectCallText),
                                          kMessageBoxInformation, "");
  return false;
}

void fMain::ShowCollapsed() {
  // Both frames stand in the same place by their layout; one of them is seen.
  controls_[frmInfo0].Visible(true);
  controls_[frmInfo1].Visible(false);
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
  services_.link.Connect(*this, kLinkApplication, kLinkTopic, kLinkItem);
}

void fMain::EndLinkStage() {
  ShowAsAsked();
  controls_.tmStart[1].Enabled(true);
}

void fMain::ShowAsAsked() {
  if (!std::exchange(shownAsAsked_, true)) controls_.form.Visible(SettModeFlag_);
}

void fMain::BindLineObject() {
  controls_.tmStart[1].Enabled(false);
  ReleaseLine();
  // Telephony may let messages in, here and in each of its functions below: when they have brought a newer line object,
  // or the form's end, this run is over.
  if (unloaded_ || tapiline_) return;
  const LinePointer line = tapiline_ = CvbTAPILine::Make(services_.lineServices, *this);
  line->LowAPI(TAPI_VERSION1_3);
  line->HiAPI(TAPI_VERSION3_0);
  DebugLine("Check area codes");
  const bool complete = line->CheckAreaCodes();
  if (tapiline_ != line) return;
  DebugLine(complete ? "Check area codes - OK" : "Check area codes - Fail");
  if (complete) return CreateLine(line);
  StageWithoutLine();
  controls_[lbLineIDActive].Text(services_.config.language.LoadLangKey(kLineIdText));
  ReportMissingAreaCodes();
}

void fMain::CreateLine(const LinePointer& line) {
  if (line->Create()) return LineCreated(line, "Create line - OK");
  if (tapiline_ != line) return;
  if (!TAPICheckShownFlag_) ReportFirstFailure();
  line->LowAPI(TAPI_VERSION1_3);
  line->HiAPI(TAPI_VERSION1_4);
  if (line->Create()) return LineCreated(line, "Create line - OK Lower version");
  if (tapiline_ == line) ReportWrongVersion();
}

void fMain::LineCreated(const LinePointer& line, std::string_view debugText) {
  if (tapiline_ != line) return;
  DebugLine(debugText);
  ownAccessCode_ = line->OutsideLocalAccess();
  services_.lineFunctions.GetTAPIInterfaces(*line);
  if (tapiline_ == line) SetLine();
}

void fMain::StageWithoutLine() {
  // Nothing of an earlier run may look like a line: neither a name to find or to tick, nor a button to press.
  services_.lineFunctions.ResetTable();
  services_.lines.LineOKFlag = false;
  ownAccessCode_.clear();
  controls_[cmdWahl].Enabled(false);
  controls_.lstTAPI.Clear();
}

void fMain::ReportFirstFailure() {
  TAPICheckShownFlag_ = true;
  const std::string text = Line()->ErrorString(Line()->LastError());
  DebugLine("TAPI check - Message=", text);
  reports_.Trouble(text, kCrLf);
  reports_.Trouble(texts_.checkTapi, "");
}

void fMain::ReportWrongVersion() {
  StageWithoutLine();
  controls_[lbLineIDActive].Text(texts_.errorVersion);
  DebugLine("TAPI check - Lower version Message=", texts_.errorVersion);
  reports_.NoTelephony(texts_.errorVersion);
}

void fMain::ReportMissingAreaCodes() {
  // Before the box, which lets messages in: two of it must not stand on each other.
  if (std::exchange(AreaCodeMsgShownFlag_, true)) return;
  services_.config.messages.MsgBoxForward(services_.config.state.texts.systemCodesFail, kMessageBoxExclamation, "");
}

void fMain::Language() {
  Procedure(services_.diagnostics, "fMain.Language", {}, [&] {
    const auto lookup = [&](const TextKey& text) { return services_.config.language.LoadLangKey(text); };
    const std::string head = lookup(kHeadText);  // one after the other: the trace shows the order
    const std::string settings = lookup(kSettingsText);
    controls_.form.Caption("Rufmon -  " + head + " " + settings);
    for (const FormTextRow& row : kFormTexts) texts_.*row.field = lookup(row.text);
    for (const ControlTextRow& row : kControlTexts) {
      // The default is what stands there by the layout, so a missing key leaves it as it is.
      Control& control = controls_[row.control];
      if (row.toolTip) {
        controls_.ToolTip(lookup({row.key, controls_.ToolTip()}));
      } else if (row.text != nullptr) {
        control.Text(texts_.*row.text);
      } else {
        control.Text(lookup({row.key, control.Text()}));
      }
    }
  });
}

void fMain::ReLoadSettings() {
  Procedure(services_.diagnostics, "fMain.ReLoadSettings", {}, [&] {
    services_.saveSetting.LoadSettings();
    controls_[txtSettVW].Text(services_.settings.TAPIAmtVW);
    tmStart_Timer(1);
  });
}

}  // namespace fonklav
