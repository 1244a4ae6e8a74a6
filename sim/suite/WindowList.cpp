#include "sim/suite/WindowList.h"

#include <commctrl.h>

namespace fonklav::suite {

namespace {

struct Search {
  DWORD processId;
  std::vector<std::string>& lines;
};

std::string ClassOf(HWND window) {
  char name[64]{};
  GetClassNameA(window, name, sizeof name);
  return name;
}

/// The text as the window itself gives it, which for a text box is its content; a hanging window has none.
std::string TextOf(HWND window) {
  std::string text(0x10000, '\0');
  DWORD_PTR length = 0;
  SendMessageTimeoutA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG, 1000,
                      &length);
  text.resize(length);
  for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.replace(at, 2, "\\n");
  return text;
}

/// The numbers of the ticked entries of a list with check boxes, with a blank after each.
std::string TicksOf(HWND window) {
  std::string ticks;
  if (ClassOf(window) != "SysListView32") return ticks;
  const LRESULT count = SendMessageA(window, LVM_GETITEMCOUNT, 0, 0);
  for (WPARAM entry = 0; entry < static_cast<WPARAM>(count); ++entry) {
    const LRESULT state = SendMessageA(window, LVM_GETITEMSTATE, entry, LVIS_STATEIMAGEMASK);
    if (state >> 12 == 2) ticks += std::to_string(entry) + ' ';
  }
  return ticks;
}

std::string Describe(std::string_view kind, HWND window) {
  RECT area{};
  GetWindowRect(window, &area);
  GUITHREADINFO thread{};
  thread.cbSize = sizeof thread;
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread);
  std::string line{kind};
  line += '|' + ClassOf(window);
  for (const LONG number : {area.left, area.top, area.right - area.left, area.bottom - area.top}) {
    line += '|' + std::to_string(number);
  }
  line += IsWindowEnabled(window) != FALSE ? "|enabled" : "|disabled";
  line += thread.hwndFocus == window ? "|focus" : "|";
  return line + '|' + TicksOf(window) + '|' + TextOf(window);
}

BOOL CALLBACK AddControl(HWND window, LPARAM lines) {
  if (IsWindowVisible(window) != FALSE) {
    reinterpret_cast<std::vector<std::string>*>(lines)->push_back(Describe("control", window));
  }
  return TRUE;
}

BOOL CALLBACK AddWindow(HWND window, LPARAM data) {
  const auto& search = *reinterpret_cast<const Search*>(data);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner == search.processId && IsWindowVisible(window) != FALSE) {
    search.lines.push_back(Describe("window", window));
    EnumChildWindows(window, &AddControl, reinterpret_cast<LPARAM>(&search.lines));
  }
  return TRUE;
}

}  // namespace

std::vector<std::string> WindowList(DWORD processId) {
  std::vector<std::string> lines;
  Search search{processId, lines};
  EnumWindows(&AddWindow, reinterpret_cast<LPARAM>(&search));
  return lines;
}

}  // namespace fonklav::suite
