#include "app/Layout.h"
#include "app/fMain.h"
#include "util/Procedure.h"

// The lower part of the window: two panels in one place, each with a button that opens and closes it.
namespace fonklav {

using enum ControlId;

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
