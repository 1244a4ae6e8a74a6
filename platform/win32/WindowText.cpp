#include "platform/win32/WindowText.h"

namespace fonklav {

std::wstring TextOf(HWND window) {
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

void ShowGrowingText(HWND box, const std::wstring& text) {
  const std::wstring shown = TextOf(box);
  if (!text.starts_with(shown)) {
    SetWindowTextW(box, text.c_str());
  } else if (text.size() > shown.size()) {
    SendMessageW(box, EM_SETSEL, shown.size(), static_cast<LPARAM>(shown.size()));
    SendMessageW(box, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str() + shown.size()));
  }
  SendMessageW(box, EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
  SendMessageW(box, EM_SCROLLCARET, 0, 0);
}

}  // namespace fonklav
