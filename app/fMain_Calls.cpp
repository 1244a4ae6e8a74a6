#include "app/fMain.h"
#include "app/modSaveSetting.h"
#include "tapi/modFunctions.h"
#include "tapi/modKeyPressCheck.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/Text.h"

// Dialing, hanging up, and how the call goes. Every step is shown in the status box and told to the main program.
namespace fonklav {

using enum ControlId;
namespace {

/// What telephony has refused, as a line of the status box.
std::string ErrorLine(const char* prefix, const CvbTAPILine& line) {
  return prefix + std::to_string(line.LastError()) + " " + line.ErrorString(line.LastError());
}

}  // namespace

fMain::LinePointer fMain::Line(int line) const {
  if (unloaded_) throw RunTimeError(ErrorNumber::NeverLogged, line);
  if (!tapiline_) throw RunTimeError(ErrorNumber::ObjectVariableNotSet, line);
  return tapiline_;
}

void fMain::ReleaseLine() {
  if (tapiline_) tapiline_->Detach();
  // The member is empty before the object ends: its end must not find itself as the form's line.
  std::exchange(tapiline_, nullptr).reset();
}

void fMain::ApplyDialButtonRule() {
  // The three are bits: a number and a voice line are all ones, and the version decides with its own bits.
  const std::int32_t number = services_.functions.fIsTelNumber(controls_[txtNumber].Text()) ? -1 : 0;
  const std::int32_t voice = Line()->LineSupportsVoiceCalls() ? -1 : 0;
  controls_[cmdWahl].Enabled((number & Line()->NegotiatedAPIVersion() & voice) != 0);
}

void fMain::cmdWahl_Click() {
  Procedure(services_.diagnostics, "fMain.cmdWahl_Click", {}, [&] {
    controls_[cmdWahl].Enabled(false);
    reports_.Progress(texts_.registering + " >> " + WithoutNul(Line()->LineName()));
    const bool open = Line()->OpenLine(LINECALLPRIVILEGE_NONE, LINEMEDIAMODE_INTERACTIVEVOICE);
    controls_[cmdHangUp].Enabled(true);  // before the result is looked at
    reports_.HangUpButton(controls_[cmdHangUp]);
    if (open) return RequestCall();
    ReportNoCall("Open line ERROR ", "OpenLine Error", Sender::DialClickNotOpened);
  });
}

void fMain::RequestCall() {
  reports_.Progress(texts_.preparation);
  // The user's code stands in where the system's location has none of its own.
  Line()->OutsideLocalAccess(ownAccessCode_.empty() ? services_.settings.TAPIAmtVW : ownAccessCode_);
  if (Line()->MakeCallAsynch(controls_[txtNumber].Text())) return;
  Line()->CloseLine();
  ReportNoCall("ERROR ", "MakeCallAsynch Error", Sender::DialClickRefused);
}

void fMain::ReportNoCall(const char* prefix, std::string_view what, Sender sender) {
  reports_.Failure(ErrorLine(prefix, *Line()), what);
  ApplyDialButtonRule();
  controls_[cmdHangUp].Enabled(false);
  reports_.CallButton(controls_[cmdWahl], sender);
}

void fMain::cmdHangUp_Click() {
  Procedure(services_.diagnostics, "fMain.cmdHangUp_Click", {}, [&] {
    controls_[cmdHangUp].Enabled(false);
    reports_.HangUpButton(controls_[cmdHangUp], Sender::HangUpClick);
    reports_.Progress(texts_.hangUp);
    if (!Line()->DropCallAsynch()) reports_.Failure(ErrorLine("ERROR ", *Line()), "DropCallAsynch Error");
    ApplyDialButtonRule();
    reports_.CallButton(controls_[cmdWahl], Sender::HangUpClick);
  });
}

void fMain::cmdLogClear_Click() {
  Procedure(services_.diagnostics, "fMain.cmdLogClear_Click", {}, [&] { controls_[txtTestStatus].Text(""); });
}

void fMain::txtNumber_Change() {
  Procedure(services_.diagnostics, "fMain.txtNumber_Change", {}, [&] {
    // Typing asks whether the line was bound, not what it can do: another rule than after a call, and meant so.
    controls_[cmdWahl].Enabled(services_.functions.fIsTelNumber(controls_[txtNumber].Text()) &&
                               services_.lines.LineOKFlag);
  });
}

// The verdict on a key is dropped on purpose: the filter runs and traces, and every key reaches its box.

void fMain::txtNumber_KeyPress(std::int16_t keyAscii) {
  Procedure(services_.diagnostics, "fMain.txtNumber_KeyPress", {keyAscii},
            [&] { static_cast<void>(services_.keyPressCheck.CheckKeyPress(keyAscii, "numTAPI")); });
}

void fMain::txtSettVW_KeyPress(std::int16_t keyAscii) {
  Procedure(services_.diagnostics, "fMain.txtSettVW_KeyPress", {keyAscii},
            [&] { static_cast<void>(services_.keyPressCheck.CheckKeyPress(keyAscii, "numTAPI")); });
}

void fMain::tapiline_MakeCallResult(std::int32_t errorCode) {
  Procedure(services_.diagnostics, "fMain.tapiline_MakeCallResult", {errorCode}, [&] {
    if (errorCode == 0) {
      DebugLine("TAPIMakeCallResult -  OK");
      return reports_.Answer(texts_.call);
    }
    const std::string line = "Call Error: " + Line()->ErrorString(errorCode);
    DebugLine("TAPIMakeCallResult - ", line);
    reports_.FailedAnswer(line, "Call Error");
  });
}

void fMain::tapiline_DropCallResult(std::int32_t errorCode) {
  Procedure(services_.diagnostics, "fMain.tapiline_DropCallResult", {errorCode}, [&] {
    const bool dropped = errorCode == 0;
    const std::string line = dropped ? "Call Dropped" : "Call Drop Error: " + Line()->ErrorString(errorCode);
    DebugLine("TAPIDropCallResult -  ", line);
    if (dropped) return reports_.Answer(line);
    reports_.FailedAnswer(line, "Drop Error");
  });
}

void fMain::tapiline_Dialing() {
  Procedure(services_.diagnostics, "fMain.tapiline_Dialing", {}, [&] {
    DebugLine("TAPIDialing");
    reports_.Progress(texts_.ring);
  });
}

void fMain::tapiline_Connected() {
  Procedure(services_.diagnostics, "fMain.tapiline_Connected", {}, [&] {
    DebugLine("TAPIConnected");
    controls_[cmdHangUp].Enabled(true);
    reports_.HangUpButton(controls_[cmdHangUp]);
    reports_.Progress(texts_.connected);
    reports_.AutoHide();
  });
}

void fMain::tapiline_Disconnected() {
  Procedure(services_.diagnostics, "fMain.tapiline_Disconnected", {}, [&] {
    DebugLine("TAPIDisconnected");
    controls_[cmdHangUp].Enabled(false);
    reports_.HangUpButton(controls_[cmdHangUp]);
    reports_.Progress(texts_.disconnected);
    reports_.AutoHide();
  });
}

void fMain::tapiline_Idle() {
  Procedure(services_.diagnostics, "fMain.tapiline_Idle", {}, [&] {
    DebugLine("TAPIIdle");
    controls_[cmdHangUp].Enabled(false);
    ApplyDialButtonRule();
    reports_.CallButton(controls_[cmdWahl], Sender::Idle);
    reports_.HangUpButton(controls_[cmdHangUp]);
    reports_.Progress(texts_.idle);
    reports_.AutoHide();
  });
}

}  // namespace fonklav
