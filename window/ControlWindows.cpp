#include "window/ControlWindows.h"

#include <windowsx.h>

#include <commctrl.h>

#include <stdexcept>

#include "window/WindowText.h"

namespace fonklav {
namespace {

constexpr int kFirstDialogId = 100;

/// What CreateWindowEx makes of a kind of control. WS_CHILD comes with each, WS_VISIBLE with none: who is seen is
/// decided when the control is shown.
struct KindRow {
  ControlKind kind;
  const wchar_t* className;
  DWORD style;
  DWORD extendedStyle;
};

constexpr DWORD kStatusBoxStyle = WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL;
constexpr DWORD kListStyle = WS_TABSTOP | LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_SINGLESEL | LVS_SHOWSELALWAYS;

/// In the order of ControlKind. WS_EX_TRANSPARENT has a frame painted only after the siblings beneath it.
constexpr std::array kKinds{
    KindRow{ControlKind::Frame, WC_BUTTONW, BS_GROUPBOX, WS_EX_TRANSPARENT},
    KindRow{ControlKind::CheckList, WC_LISTVIEWW, kListStyle, WS_EX_CLIENTEDGE},
    KindRow{ControlKind::Label, WC_STATICW, SS_LEFT, 0},
    KindRow{ControlKind::TextBox, WC_EDITW, WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE},
    KindRow{ControlKind::StatusBox, WC_EDITW, kStatusBoxStyle, WS_EX_CLIENTEDGE},
    KindRow{ControlKind::Button, WC_BUTTONW, WS_TABSTOP | BS_PUSHBUTTON, 0},
};

/// What one control has beside the style of its kind.
DWORD StyleOf(ControlId id) {
  if (id == ControlId::cmdSave) return BS_DEFPUSHBUTTON;
  // A driver's name may hold an "&", which a static control would take for the mark of an access key, and may be longer
  // than there is room for.
  if (id == ControlId::lbLineIDActive) return SS_NOPREFIX | SS_ENDELLIPSIS;
  return 0;
}

/// Whether the message is about to change the content of a box. An edit control gets Ctrl+V and Ctrl+X from the
/// keyboard as characters, from its context menu as WM_PASTE and WM_CUT. Undoing is not among them: see ShowOneLine.
bool Edits(UINT message, WPARAM wParam) {
  constexpr WPARAM paste = 0x16;  // Ctrl+V as a character, and so on
  constexpr WPARAM cut = 0x18;
  switch (message) {
    case WM_CHAR:
      return wParam >= L' ' || wParam == VK_BACK || wParam == paste || wParam == cut;
    case WM_KEYDOWN:
      return wParam == VK_DELETE || (wParam == VK_INSERT && GetKeyState(VK_SHIFT) < 0);
    case WM_PASTE:
    case WM_CUT:
    case WM_CLEAR:
    case EM_REPLACESEL:
    case WM_IME_STARTCOMPOSITION:
      return true;
    default:
      return false;
  }
}

/// A box that shows the beginning of its text: the first edit replaces all of it, and cannot be undone, because undoing
/// would bring back the beginning as if it were the whole.
LRESULT ReplaceWholeText(HWND box, UINT message, WPARAM wParam, LPARAM lParam) {
  DefSubclassProc(box, EM_SETSEL, 0, -1);
  const LRESULT result = DefSubclassProc(box, message, wParam, lParam);
  if (!ShowsBeginning(box)) DefSubclassProc(box, EM_EMPTYUNDOBUFFER, 0, 0);
  return result;
}

/// Stands in front of the system's edit control. The dialog hears of an edit by EN_CHANGE, when it has happened; only
/// the box itself sees the key, or the paste, that is about to make it.
LRESULT CALLBACK BoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR input) noexcept {
  if (message == WM_CHAR) {
    reinterpret_cast<FormInput*>(input)->KeyPress(static_cast<ControlId>(id), static_cast<int>(wParam));
  }
  if (ShowsBeginning(box) && Edits(message, wParam)) return ReplaceWholeText(box, message, wParam, lParam);
  const LRESULT result = DefSubclassProc(box, message, wParam, lParam);
  const bool lines = (GetWindowLongW(box, GWL_STYLE) & ES_MULTILINE) != 0;
  if (message != WM_GETDLGCODE || !lines) return result;
  // The dialog asks the control with the focus by WM_GETDLGCODE what it wants. A multiline edit control answers with
  // DLGC_WANTALLKEYS, which would take Tab, Enter and Esc from the dialog, and with DLGC_HASSETSEL, upon which the
  // dialog selects the whole text and scrolls the newest line out of sight.
  return result & ~LRESULT{DLGC_WANTALLKEYS | DLGC_HASSETSEL};
}

void PrepareBox(HWND box, ControlId id, FormInput& input) {
  constexpr UINT tabWidth = 16;  // in quarters of a character
  SetWindowSubclass(box, &BoxProc, static_cast<UINT_PTR>(id), reinterpret_cast<DWORD_PTR>(&input));
  SendMessageW(box, EM_SETLIMITTEXT, 0, 0);  // 0: as much as it can hold, and not 32767 characters
  SendMessageW(box, EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&tabWidth));
}

}  // namespace

int DialogIdOf(ControlId id) {
  if (id == ControlId::cmdSave) return IDOK;
  if (id == ControlId::cmdExit) return IDCANCEL;
  return kFirstDialogId + static_cast<int>(id);
}

std::optional<ControlId> ControlOfDialogId(int dialogId) {
  for (const LayoutRow& row : Layout()) {
    if (DialogIdOf(row.id) == dialogId) return row.id;
  }
  return std::nullopt;
}

void MakeControl(HWND dialog, ControlId id, FormInput& input) {
  const KindRow& kind = kKinds.at(static_cast<std::size_t>(LayoutOf(id).kind));
  const HWND window = CreateWindowExW(kind.extendedStyle, kind.className, L"", WS_CHILD | kind.style | StyleOf(id), 0,
                                      0, 0, 0, dialog, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(DialogIdOf(id))),
                                      GetWindowInstance(dialog), nullptr);
  if (window == nullptr) throw std::runtime_error("a control could not be made");
  if (kind.className == std::wstring_view(WC_EDITW)) PrepareBox(window, id, input);
}

void SetFonts(HWND dialog, HFONT font) {
  for (const LayoutRow& row : Layout()) {
    SendDlgItemMessageW(dialog, DialogIdOf(row.id), WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  }
}

void PlaceAll(HWND dialog, unsigned dpi, const Surplus& surplus) {
  for (const LayoutRow& row : Layout()) {
    // SWP_NOZORDER also keeps the order of Tab, which is the z-order of the dialog's children.
    const PixelRect place = PlaceOf(row, dpi, surplus);
    SetWindowPos(GetDlgItem(dialog, DialogIdOf(row.id)), nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

}  // namespace fonklav
