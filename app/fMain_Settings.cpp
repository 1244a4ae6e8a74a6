#include "app/fMain.h"
#include "app/modSaveSetting.h"
#include "util/Procedure.h"

// Saving, giving up, and going. While the main program is linked the form only hides.
namespace fonklav {

using enum ControlId;

void fMain::cmdSave_Click() {
  Procedure(services_.diagnostics, "fMain.cmdSave_Click", {}, [&] {
    for (const CheckList::Entry& entry : controls_.lstTAPI.Entries()) {
      if (entry.ticked) services_.lines.TAPILine = entry.text;
    }
    services_.settings.TAPIAmtVW = controls_[txtSettVW].Text();
    services_.saveSetting.SaveSettings();
    SetLine();
    reports_.SettingsChanged();
    Unload(UnloadMode::Code);
  });
}

void fMain::cmdExit_Click() {
  Procedure(services_.diagnostics, "fMain.cmdExit_Click", {}, [&] {
    if (LinkOpenFlag_) {
      ReLoadSettings();
      controls_.lstTAPI.Clear();
      RefreshTAPIList();
    }
    Unload(UnloadMode::Code);
  });
}

void fMain::Unload(UnloadMode mode) {
  if (unloaded_) return;
  bool cancel = false;
  Form_QueryUnload(cancel, mode);
  if (!cancel) Form_Unload();
}

void fMain::Form_QueryUnload(bool& cancel, UnloadMode mode) {
  const int number = static_cast<int>(mode);
  Procedure(services_.diagnostics, "fMain.Form_QueryUnload", {cancel, number}, [&] {
    DebugLine("FormFonklav_QueryUnload - Param=", std::to_string(number));
    const bool ours = mode == UnloadMode::UserClosed || mode == UnloadMode::Code;
    if (!ours || !LinkOpenFlag_) return;
    DebugLine("FormFonklav_QueryUnload - Cancel");
    controls_.form.Visible(false);
    cancel = true;
  });
}

void fMain::Form_Unload() {
  unloaded_ = true;
  Procedure(services_.diagnostics, "fMain.Form_Unload", {}, [&] {
    ReleaseLine();
    DebugLine("FormFonklav_Unload");
  });
  for (Timer& timer : controls_.tmStart) timer.Enabled(false);
  services_.link.Close();
  if (controls_.slot.view != nullptr) controls_.slot.view->Unloaded();
}

}  // namespace fonklav
