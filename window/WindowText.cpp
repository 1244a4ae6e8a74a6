#include "window/WindowText.h"

namespace fonklav {

std::wstring TextOf(HWND window) {
  // GetWindowTextLength may say more than there is, never less; GetWindowText says how much it was.
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

std::wstring OneLine(std::wstring text) {
  constexpr std::size_t mostShown = 1000;
  if (text.size() > mostShown) text.replace(mostShown, std::wstring::npos, 1, L'\u2026');
  return text;
}

void ShowText(HWND window, const std::wstring& text) {
  if (TextOf(window) != text) SetWindowTextW(window, text.c_str());
}

void ShowOneLine(HWND box, const std::wstring& text) {
  const std::wstring shown = OneLine(text);
  ShowText(box, shown);
  if (shown == text) return ShowsAll(box);
  // The mark stands in the box's GWLP_USERDATA, which the system's classes leave to the program.
  SetWindowLongPtrW(box, GWLP_USERDATA, 1);
  SendMessageW(box, EM_EMPTYUNDOBUFFER, 0, 0);  // what Ctrl+Z would undo was an edit of the text before
}

bool ShowsBeginning(HWND box) { return GetWindowLongPtrW(box, GWLP_USERDATA) != 0; }

void ShowsAll(HWND box) { SetWindowLongPtrW(box, GWLP_USERDATA, 0); }

void AppendText(HWND box, const std::wstring& added) {
  // The selection is replaced, and nothing is selected behind the last character. WM_SETTEXT would hand over and lay
  // out the whole text again for every line that is added.
  const int end = GetWindowTextLengthW(box);
  SendMessageW(box, EM_SETSEL, static_cast<WPARAM>(end), end);
  SendMessageW(box, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(added.c_str()));
  SendMessageW(box, EM_SCROLLCARET, 0, 0);
}

}  // namespace fonklav
