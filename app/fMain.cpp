#include "app/fMain.h"

#include <utility>

#include "util/Procedure.h"
#include "util/RunTimeError.h"

// The way in: what the window hands over goes to the procedure that is named after it.
namespace fonklav {

fMain::fMain(const FormServices& services, FormControls& controls) : services_(services), controls_(controls) {
  controls_.txtNumber.OnChange([this] { txtNumber_Change(); });
  controls_.lstTAPI.OnItemCheck([this](std::size_t index) { lstTAPI_ItemCheck(index); });
}

void fMain::Click(ControlId button) noexcept {
  switch (button) {
    case ControlId::cmdWahl:
      return cmdWahl_Click();
    case ControlId::cmdHangUp:
      return cmdHangUp_Click();
    case ControlId::cmdLogClear:
      return cmdLogClear_Click();
    case ControlId::cmdSave:
      return cmdSave_Click();
    case ControlId::cmdExit:
      return cmdExit_Click();
    case ControlId::cmdInfo0:
      return cmdInfo_Click(0);
    case ControlId::cmdInfo1:
      return cmdInfo_Click(1);
    default:
      return;
  }
}

void fMain::KeyPress(ControlId box, int characterCode) noexcept {
  if (box == ControlId::txtNumber) txtNumber_KeyPress(characterCode);
  if (box == ControlId::txtSettVW) txtSettVW_KeyPress(characterCode);
}

void fMain::Edit(ControlId box, const std::string& text) noexcept {
  if (Control* control = controls_.Find(box); control != nullptr) control->Edited(text);
}

void fMain::TickEntry(std::size_t index, bool ticked) noexcept { controls_.lstTAPI.Tick(index, ticked); }

void fMain::ClickEntry(std::size_t index) noexcept { lstTAPI_Click(index); }

void fMain::TimerTick(TimerId timer) noexcept {
  if (unloaded_) return;  // a tick may still be on its way when the form goes
  if (timer != TimerId::Link) return tmStart_Timer(static_cast<int>(timer));
  Procedure(services_.diagnostics, "fMain.tmLink_Timer", {}, [&] {
    services_.link.Tick();
    controls_.tmLink.Enabled(services_.link.Connected());
  });
}

void fMain::Moved(float top, float left) noexcept { controls_.form.Moved(top, left); }

void fMain::Resized(float width, float height) noexcept { controls_.form.Resized(width, height); }

void fMain::CloseRequested(UnloadMode mode) noexcept { Unload(mode); }

CvbTAPILine& fMain::Line() const {
  if (!tapiline_) throw RunTimeError(ErrorNumber::ObjectVariableNotSet);
  return *tapiline_;
}

void fMain::ReleaseLine() {
  if (tapiline_) tapiline_->Detach();
  // The member is empty before the object ends: its end must not find itself as the form's line.
  std::exchange(tapiline_, nullptr).reset();
}

}  // namespace fonklav
