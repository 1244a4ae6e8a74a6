#include "app/fMain.h"
#include "app/modSaveSetting.h"
#include "tapi/modFunctions.h"
#include "tapi/modKeyPressCheck.h"
#include "util/Procedure.h"
#include "util/Text.h"

// Dialing, hanging up, and how the call goes. Every step is shown in the status box and told to the main program.
namespace fonklav {
namespace {

const char* Digit(bool enabled) { return enabled ? "1" : "0"; }

}  // namespace

void fMain::AppendStatus(const std::string& line) { controls_.txtTestStatus.Append(line + std::string(kCrLf)); }

void fMain::ShowProgress(const std::string& text) {
  AppendStatus(text);
  DDEexecute("anzlog|" + text);
}

void fMain::ShowFailure(const std::string& line, const char* pointer) {
  AppendStatus(line);
  DDEexecute("log|" + line);
  DDEexecute(std::string("anz|") + pointer + " >> Log");
}

std::string fMain::ErrorLine(const char* prefix) {
  return prefix + std::to_string(Line()->LastError()) + " " + Line()->ErrorString(Line()->LastError());
}

void fMain::ApplyDialButtonRule() {
  // The three are bits: a number and a voice line are all ones, and the version decides with its own bits.
  const std::int32_t number = services_.functions.fIsTelNumber(controls_.txtNumber.Text()) ? -1 : 0;
  const std::int32_t voice = Line()->LineSupportsVoiceCalls() ? -1 : 0;
  controls_.cmdWahl.Enabled((number & Line()->NegotiatedAPIVersion() & voice) != 0);
}

void fMain::SendHangUpState(const std::string& tag) {
  DDEexecute(std::string("btnHangUp|") + Digit(controls_.cmdHangUp.Enabled()), tag);
}

void fMain::SendCallState(const std::string& tag) {
  DDEexecute(std::string("btnCall|") + Digit(controls_.cmdWahl.Enabled()), tag);
}

void fMain::cmdWahl_Click() {
  Procedure(services_.diagnostics, "fMain.cmdWahl_Click", {}, [&] {
    controls_.cmdWahl.Enabled(false);
    ShowProgress(texts_.registering + " >> " + WithoutNul(Line()->LineName()));
    const bool open = Line()->OpenLine(LINECALLPRIVILEGE_NONE, LINEMEDIAMODE_INTERACTIVEVOICE);
    controls_.cmdHangUp.Enabled(true);  // before the result is looked at
    SendHangUpState();
    if (open) return RequestCall();
    ShowFailure(ErrorLine("Open line ERROR "), "OpenLine Error");
    ApplyDialButtonRule();
    controls_.cmdHangUp.Enabled(false);
    SendCallState("|cmdWahl_Click 1");
  });
}

void fMain::RequestCall() {
  ShowProgress(texts_.preparation);
  // The user's code stands in where the system's location has none of its own.
  Line()->OutsideLocalAccess(ownAccessCode_.empty() ? services_.settings.TAPIAmtVW : ownAccessCode_);
  if (Line()->MakeCallAsynch(controls_.txtNumber.Text())) return;
  Line()->CloseLine();
  ShowFailure(ErrorLine("ERROR "), "MakeCallAsynch Error");
  ApplyDialButtonRule();
  controls_.cmdHangUp.Enabled(false);
  SendCallState("|cmdWahl_Click 2");
}

void fMain::cmdHangUp_Click() {
  Procedure(services_.diagnostics, "fMain.cmdHangUp_Click", {}, [&] {
    controls_.cmdHangUp.Enabled(false);
    SendHangUpState("|cmdHangUp_Click");
    ShowProgress(texts_.hangUp);
    if (!Line()->DropCallAsynch()) ShowFailure(ErrorLine("ERROR "), "DropCallAsynch Error");
    ApplyDialButtonRule();
    SendCallState("|cmdHangUp_Click");
  });
}

void fMain::cmdLogClear_Click() {
  Procedure(services_.diagnostics, "fMain.cmdLogClear_Click", {}, [&] { controls_.txtTestStatus.Text(""); });
}

void fMain::txtNumber_Change() {
  Procedure(services_.diagnostics, "fMain.txtNumber_Change", {}, [&] {
    // Typing asks whether the line was bound, not what it can do: another rule than after a call, and meant so.
    controls_.cmdWahl.Enabled(services_.functions.fIsTelNumber(controls_.txtNumber.Text()) &&
                              services_.lines.LineOKFlag);
  });
}

void fMain::txtNumber_KeyPress(int keyAscii) { FilterKey("fMain.txtNumber_KeyPress", keyAscii); }

void fMain::txtSettVW_KeyPress(int keyAscii) { FilterKey("fMain.txtSettVW_KeyPress", keyAscii); }

void fMain::FilterKey(const char* procedure, int keyAscii) {
  Procedure(services_.diagnostics, procedure, {keyAscii}, [&] {
    // The verdict is dropped on purpose: the filter runs and traces, and every key reaches the box.
    static_cast<void>(services_.keyPressCheck.CheckKeyPress(static_cast<std::int16_t>(keyAscii), "numTAPI"));
  });
}

void fMain::tapiline_MakeCallResult(std::int32_t errorCode) {
  Procedure(services_.diagnostics, "fMain.tapiline_MakeCallResult", {errorCode}, [&] {
    if (errorCode != 0) {
      const std::string line = "Call Error: " + Line()->ErrorString(errorCode);
      DebugLine("TAPIMakeCallResult - " + line);
      DDEexecute("log|" + line);
      DDEexecute("anz|Call Error >> Log");
      AppendStatus(line);
    } else {
      DebugLine("TAPIMakeCallResult -  OK");
      DDEexecute("anzlog|" + texts_.call);
      AppendStatus(texts_.call);
    }
  });
}

void fMain::tapiline_DropCallResult(std::int32_t errorCode) {
  Procedure(services_.diagnostics, "fMain.tapiline_DropCallResult", {errorCode}, [&] {
    const bool dropped = errorCode == 0;
    const std::string line = dropped ? "Call Dropped" : "Call Drop Error: " + Line()->ErrorString(errorCode);
    DebugLine("TAPIDropCallResult -  " + line);
    DDEexecute((dropped ? "anzlog|" : "log|") + line);
    if (!dropped) DDEexecute("anz|Drop Error >> Log");
    AppendStatus(line);
  });
}

void fMain::tapiline_Dialing() {
  Procedure(services_.diagnostics, "fMain.tapiline_Dialing", {}, [&] {
    DebugLine("TAPIDialing");
    ShowProgress(texts_.ring);
  });
}

void fMain::tapiline_Connected() {
  Procedure(services_.diagnostics, "fMain.tapiline_Connected", {}, [&] {
    DebugLine("TAPIConnected");
    controls_.cmdHangUp.Enabled(true);
    SendHangUpState();
    ShowProgress(texts_.connected);
    DDEexecute("cmd|autohide");
  });
}

void fMain::tapiline_Disconnected() {
  Procedure(services_.diagnostics, "fMain.tapiline_Disconnected", {}, [&] {
    DebugLine("TAPIDisconnected");
    controls_.cmdHangUp.Enabled(false);
    SendHangUpState();
    ShowProgress(texts_.disconnected);
    DDEexecute("cmd|autohide");
  });
}

void fMain::tapiline_Idle() {
  Procedure(services_.diagnostics, "fMain.tapiline_Idle", {}, [&] {
    DebugLine("TAPIIdle");
    controls_.cmdHangUp.Enabled(false);
    ApplyDialButtonRule();
    SendCallState("|Idle");
    SendHangUpState();
    ShowProgress(texts_.idle);
    DDEexecute("cmd|autohide");
  });
}

}  // namespace fonklav
