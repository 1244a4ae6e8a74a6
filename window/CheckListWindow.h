#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

#include "app/Controls.h"
#include "app/FormView.h"

namespace fonklav {

/// The list with check boxes: shows the entries, and tells what the user does to them. It is a list view in report view
/// with LVS_EX_CHECKBOXES, as a list box has no check boxes. A list view reports every change of an item by
/// LVN_ITEMCHANGED, whoever made it; `showing_` keeps what the program changes from being told back.
class CheckListWindow {
 public:
  /// Prepares a list view that has just been made.
  void Attach(HWND list);
  /// Shows these entries, changing only what differs from what is shown.
  void Show(const std::vector<CheckList::Entry>& entries);
  /// To be called when the list has got another size.
  void Resized() { FitColumn(); }
  /// To be called when the list has got another font, on a screen of `dpi` dots per inch.
  void Rescaled(unsigned dpi);
  /// To be called when the system's colours have changed.
  void Recolored();
  /// A WM_NOTIFY of the list. `input` is told of ticks and clicks; the form may have unloaded when this returns.
  void OnNotify(const NMHDR& header, FormInput& input);

 private:
  void RemoveGone(const std::vector<CheckList::Entry>& entries);
  void ShowEntry(std::size_t index, const CheckList::Entry& entry);
  void ShowTick(std::size_t index, bool ticked);
  void MakeCheckBoxes();
  void Measure(const std::wstring& text);
  void FitColumn();
  void FocusSomeEntry();
  void OnItemChanged(const NMLISTVIEW& change, FormInput& input);
  void OnMouseClick(const NMITEMACTIVATE& click, FormInput& input);

  HWND list_{nullptr};                   ///< not owned: the dialog's child
  std::vector<CheckList::Entry> shown_;  ///< as the list view has them now
  int checkBoxWidth_{0};                 ///< with the margins around it
  int widest_{0};                        ///< the width that the longest entry so far needs
  bool showing_{false};  ///< the program is changing the list: what it reports meanwhile is no user's doing
};

}  // namespace fonklav
