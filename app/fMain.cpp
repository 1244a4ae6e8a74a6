#include "app/fMain.h"

#include <utility>

#include "app/Layout.h"
#include "util/Procedure.h"

// The way in: what the window hands over goes to the procedure that is named after it. Whatever happens on the way ends
// in the log, never in the end of the process.
namespace fonklav {

using enum ControlId;

fMain::fMain(const FormServices& services, FormControls& controls)
    : services_(services),
      controls_(controls),
      reports_(services.diagnostics, services.codePage, services.link, controls[txtTestStatus], LinkOpenFlag_) {
  controls_[txtNumber].OnChange([this] { txtNumber_Change(); });
  controls_.lstTAPI.OnItemCheck([this](std::size_t index) { lstTAPI_ItemCheck(index); });
}

fMain::~fMain() = default;  // here: link-time optimisation would find it twice otherwise

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
  const auto keyAscii = static_cast<std::int16_t>(characterCode);
  if (box == txtNumber) txtNumber_KeyPress(keyAscii);
  if (box == txtSettVW) txtSettVW_KeyPress(keyAscii);
}

void fMain::Edit(ControlId box, const std::string& text) noexcept {
  Guarded(services_.diagnostics, "fMain.Edit", {}, [&] { controls_[box].Edited(text); });
}

void fMain::TickEntry(std::size_t index, bool ticked) noexcept {
  Guarded(services_.diagnostics, "fMain.TickEntry", {}, [&] { controls_.lstTAPI.Tick(index, ticked); });
}

void fMain::ClickEntry(std::size_t index) noexcept { lstTAPI_Click(index); }

void fMain::TimerTick(TimerId timer) noexcept {
  if (unloaded_) return;  // a tick may still be on its way when the form goes
  // The link may come late, and its user may have dialed by hand meanwhile. The line stage makes a new line object,
  // which would take that call away: it waits for a tick after the call.
  if (timer == TimerId::Start1 && LineIsOpen()) return;
  tmStart_Timer(static_cast<int>(timer));
}

void fMain::Moved(float top, float left) noexcept { controls_.form.Moved(top, left); }

void fMain::Resized(float width, float height) noexcept { controls_.form.Resized(width, height); }

void fMain::CloseRequested(UnloadMode mode) noexcept {
  Guarded(services_.diagnostics, "fMain.CloseRequested", {}, [&] { Unload(mode); });
}

void fMain::cmdInfo_Click(std::int16_t index) {
  Procedure(services_.diagnostics, "cmdInfo_Click", {index}, [&] {
    if (index != shownPanel_ || controls_.form.Height() <= kFormHeightCollapsed) {
      controls_.form.Height(kFormHeightExpanded);
      shownPanel_ = index;
      controls_[frmInfo0].Visible(index == 0);
      controls_[frmInfo1].Visible(index == 1);
      if (index == 1 && controls_.slot.view != nullptr) controls_.slot.view->FocusTo(ControlId::txtNumber);
    } else {
      controls_.form.Height(kFormHeightCollapsed);
      shownPanel_ = -1;
    }
  });
}

}  // namespace fonklav
