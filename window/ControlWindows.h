#pragma once

#include <windows.h>

#include <optional>

#include "app/Controls.h"
#include "app/FormView.h"
#include "app/Layout.h"

// The real controls of the dialog, one for each row of the layout. All are children of the dialog itself, because Tab
// and access keys go through the dialog's children: a frame is a group box, a border with a caption that contains
// nothing, and what seems to stand in it is placed over it.
namespace fonklav {

/// The number by which the dialog knows a control. OK and Cancel are IDOK and IDCANCEL: IsDialogMessage turns Esc into
/// a WM_COMMAND of IDCANCEL, and Enter into one of the default button.
[[nodiscard]] int DialogIdOf(ControlId id);
/// The control of such a number; nothing for a number that is none of ours.
[[nodiscard]] std::optional<ControlId> ControlOfDialogId(int dialogId);

/// Makes the control, without text, where PlaceAll is to put it. Boxes report each typed character to `input`, which
/// must outlive the dialog. Throws std::runtime_error when the system refuses.
void MakeControl(HWND dialog, ControlId id, FormInput& input);

/// Gives all controls this font, which must outlive them or be replaced before it goes.
void SetFonts(HWND dialog, HFONT font);

/// Puts all controls where the layout has them at `dpi` in a window with this surplus.
void PlaceAll(HWND dialog, unsigned dpi, const Surplus& surplus);

}  // namespace fonklav
