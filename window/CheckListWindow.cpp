#include "window/CheckListWindow.h"

#include <algorithm>

#include "platform/win32/WideText.h"
#include "util/Scope.h"
#include "window/Dpi.h"

namespace fonklav {
namespace {

// The state image of an entry is its check box: number 1 is empty, number 2 is ticked. A new entry has number 0 until
// the list has given it a box, and the change from 0 to 1 is reported like any other.
constexpr UINT kTicked = 2;
constexpr UINT kUnticked = 1;

/// INDEXTOSTATEIMAGEMASK undone: the number stands in bits 12 to 15 of the state.
UINT ImageOf(UINT state) { return (state & LVIS_STATEIMAGEMASK) >> 12U; }

LVITEMW StateItem(UINT state, UINT mask) {
  LVITEMW item{};
  item.state = state;
  item.stateMask = mask;
  return item;
}

}  // namespace

void CheckListWindow::Attach(HWND list) {
  list_ = list;
  // A name that does not fit shows as a whole under the mouse (LVS_EX_LABELTIP). Report view shows nothing without a
  // column.
  constexpr DWORD style = LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER;
  SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, style, style);
  MakeCheckBoxes();
  LVCOLUMNW column{};
  SendMessageW(list_, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
}

void CheckListWindow::MakeCheckBoxes() {
  // The list view draws its check boxes into an image list once, when it gets LVS_EX_CHECKBOXES, in the size and
  // colours of that moment. So the style is taken away and given again, which leaves all entries unticked.
  const Scope scope(showing_);
  SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_CHECKBOXES, 0);
  SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_CHECKBOXES, LVS_EX_CHECKBOXES);
  for (std::size_t index = 0; index < shown_.size(); ++index) ShowTick(index, shown_[index].ticked);
}

void CheckListWindow::Show(const std::vector<CheckList::Entry>& entries) {
  const Scope scope(showing_);
  // No painting until all is done: otherwise each entry that comes or goes is seen to do so.
  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  RemoveGone(entries);
  for (std::size_t index = 0; index < entries.size(); ++index) ShowEntry(index, entries[index]);
  FitColumn();
  FocusSomeEntry();
  SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
}

void CheckListWindow::FocusSomeEntry() {
  // The space bar ticks the entry that has the focus. A list that has just been filled has none, and the first space
  // would do nothing.
  constexpr LPARAM focused = LVNI_FOCUSED;
  if (shown_.empty() || SendMessageW(list_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), focused) >= 0) return;
  LVITEMW item = StateItem(LVIS_FOCUSED, LVIS_FOCUSED);
  SendMessageW(list_, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&item));
}

void CheckListWindow::RemoveGone(const std::vector<CheckList::Entry>& entries) {
  if (entries.empty()) {
    SendMessageW(list_, LVM_DELETEALLITEMS, 0, 0);
    shown_.clear();
    widest_ = 0;
  }
  // An entry out of the middle is deleted there. To overwrite it with those behind it would leave the selection, which
  // belongs to an item, on another name.
  for (std::size_t index = 0; shown_.size() > entries.size();) {
    if (index < entries.size() && entries[index].text == shown_[index].text) {
      ++index;
      continue;
    }
    SendMessageW(list_, LVM_DELETEITEM, index, 0);
    shown_.erase(shown_.begin() + static_cast<std::ptrdiff_t>(index));
  }
}

void CheckListWindow::ShowEntry(std::size_t index, const CheckList::Entry& entry) {
  const bool fresh = index >= shown_.size();
  if (fresh || shown_[index].text != entry.text) {
    std::wstring text = Wide(entry.text);
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(index);
    item.pszText = text.data();
    SendMessageW(list_, fresh ? LVM_INSERTITEMW : LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    Measure(text);
  }
  if (fresh || shown_[index].ticked != entry.ticked) ShowTick(index, entry.ticked);
  if (fresh) {
    shown_.push_back(entry);
  } else {
    shown_[index] = entry;
  }
}

void CheckListWindow::ShowTick(std::size_t index, bool ticked) {
  LVITEMW item = StateItem(INDEXTOSTATEIMAGEMASK(ticked ? kTicked : kUnticked), LVIS_STATEIMAGEMASK);
  SendMessageW(list_, LVM_SETITEMSTATE, index, reinterpret_cast<LPARAM>(&item));
}

void CheckListWindow::Measure(const std::wstring& text) {
  const LRESULT width = SendMessageW(list_, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(text.c_str()));
  widest_ = std::max(widest_, static_cast<int>(width) + checkBoxWidth_);
}

void CheckListWindow::FitColumn() {
  RECT inner{};
  GetClientRect(list_, &inner);
  // At least the whole width, so that a click anywhere in a row finds its entry.
  const int width = std::max<int>(widest_, inner.right);
  if (SendMessageW(list_, LVM_GETCOLUMNWIDTH, 0, 0) != width) SendMessageW(list_, LVM_SETCOLUMNWIDTH, 0, width);
}

void CheckListWindow::Rescaled(unsigned dpi) {
  MakeCheckBoxes();
  checkBoxWidth_ = 2 * SystemLength(SM_CXSMICON, dpi);
  widest_ = 0;
  for (const CheckList::Entry& entry : shown_) Measure(Wide(entry.text));
  FitColumn();
}

void CheckListWindow::Recolored() {
  // The system sends this to top-level windows only and leaves it to them to tell their common controls.
  SendMessageW(list_, WM_SYSCOLORCHANGE, 0, 0);
  MakeCheckBoxes();
}

void CheckListWindow::OnNotify(const NMHDR& header, FormInput& input) {
  if (showing_) return;
  if (header.code == static_cast<UINT>(LVN_ITEMCHANGED)) {
    OnItemChanged(reinterpret_cast<const NMLISTVIEW&>(header), input);
  } else if (header.code == static_cast<UINT>(NM_CLICK)) {
    OnMouseClick(reinterpret_cast<const NMITEMACTIVATE&>(header), input);
  }
}

void CheckListWindow::OnItemChanged(const NMLISTVIEW& change, FormInput& input) {
  const auto index = static_cast<std::size_t>(change.iItem);
  if (change.iItem < 0 || index >= shown_.size() || (change.uChanged & LVIF_STATE) == 0) return;
  const bool ticked = ImageOf(change.uNewState) == kTicked;
  if ((change.uNewState & ~change.uOldState & LVIS_SELECTED) != 0 && GetKeyState(VK_LBUTTON) >= 0) {
    input.ClickEntry(index);  // by the keyboard; a selection by the mouse comes as a click
  } else if (ImageOf(change.uNewState) != 0 && ticked != shown_[index].ticked) {
    shown_[index].ticked = ticked;
    input.TickEntry(index, ticked);
  }
}

void CheckListWindow::OnMouseClick(const NMITEMACTIVATE& click, FormInput& input) {
  // The item in NM_CLICK counts only for a click on icon or label; the place of the click also finds the check box.
  LVHITTESTINFO place{};
  place.pt = click.ptAction;
  SendMessageW(list_, LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&place));
  if (place.iItem < 0) return;
  {
    // A click on the check box ticks and does not select. The report below is on the entry that was clicked, so that is
    // what has to be marked.
    const Scope scope(showing_);
    LVITEMW item = StateItem(LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    SendMessageW(list_, LVM_SETITEMSTATE, static_cast<WPARAM>(place.iItem), reinterpret_cast<LPARAM>(&item));
  }
  input.ClickEntry(static_cast<std::size_t>(place.iItem));
}

}  // namespace fonklav
