#include "sim/suite/WindowList.h"

#include <commctrl.h>
#include <comutil.h>
#include <oleacc.h>

#include <algorithm>
#include <iterator>

#include "platform/win32/WideText.h"
#include "sim/suite/Script.h"
#include "util/Text.h"

namespace fonklav::suite {

namespace {

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
  return text;
}

/// The numbers of the ticked entries of a list with check boxes, with a blank after each.
std::string TicksOf(HWND window) {
  std::string ticks;
  if (ClassOf(window) != WC_LISTVIEWA) return ticks;
  for (int entry = 0; entry < ListView_GetItemCount(window); ++entry) {
    if (ListView_GetCheckState(window, entry) == TRUE) ticks += std::to_string(entry) + ' ';
  }
  return ticks;
}

/// The windows of the desktop, or those in another one, that follow each other from front to back.
std::vector<HWND> WindowsIn(HWND parent) {
  std::vector<HWND> windows;
  HWND window = nullptr;
  while ((window = FindWindowExA(parent, window, nullptr, nullptr)) != nullptr) windows.push_back(window);
  return windows;
}

bool Belongs(HWND window, DWORD processId) {
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  return owner == processId;
}

/// A place in the part of the frame that the window says to have there, which is looked for from the upper right.
std::optional<POINT> PlaceInFrame(HWND window, LRESULT part) {
  constexpr LONG step = 4;  // finer than any button of a caption
  const auto hits = [&](LONG x, LONG y) { return SendMessageA(window, WM_NCHITTEST, 0, MAKELPARAM(x, y)) == part; };
  RECT area{};
  GetWindowRect(window, &area);
  for (LONG y = area.top; y < area.bottom; y += step) {
    for (LONG x = area.right; x > area.left; x -= step) {
      if (hits(x, y) && hits(x - step, y + step)) return POINT{x - step / 2, y + step / 2};
    }
  }
  return std::nullopt;
}

/// The middle of an entry's text or, left of it, of its check box. The list tells the height of its rows as a number;
/// a rectangle it would write to its own process alone.
std::optional<POINT> PlaceInList(HWND list, bool box, LONG entry) {
  const auto height = [&](WPARAM entries) { return HIWORD(ListView_ApproximateViewRect(list, -1, -1, entries)); };
  if (entry >= ListView_GetItemCount(list)) return std::nullopt;
  RECT area{};
  GetClientRect(list, &area);
  const LONG row = height(2) - height(1);
  const LONG above = entry - ListView_GetTopIndex(list);
  POINT place{box ? row / 2 : area.right / 2, row * above + row / 2};
  ClientToScreen(list, &place);
  return place;
}

}  // namespace

std::vector<HWND> ShownBy(DWORD processId) {
  std::vector<HWND> shown;
  for (const HWND window : WindowsIn(nullptr)) {
    if (!Belongs(window, processId) || IsWindowVisible(window) == FALSE) continue;
    shown.push_back(window);
    std::ranges::copy_if(WindowsIn(window), std::back_inserter(shown), IsWindowVisible);
  }
  return shown;
}

std::string Describe(HWND window) {
  RECT area{};
  GetWindowRect(window, &area);
  GUITHREADINFO thread{};
  thread.cbSize = sizeof thread;
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread);
  std::string line = GetAncestor(window, GA_ROOT) == window ? "window" : "control";
  line += '|' + ClassOf(window);
  for (const LONG number : {area.left, area.top, area.right - area.left, area.bottom - area.top}) {
    line += '|' + std::to_string(number);
  }
  line += thread.hwndFocus == window ? "|focus" : "|";
  return line + '|' + TicksOf(window) + '|' + TextOf(window);
}

std::string Reading(HWND window) {
  IAccessible* object = nullptr;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                             reinterpret_cast<void**>(&object));
  if (object == nullptr) return ClassOf(window) + "|- -|";
  const auto number = [&](auto ask, LONG child) {
    _variant_t told;
    (object->*ask)(_variant_t(child), &told);
    return told.vt == VT_I4 ? std::to_string(told.ulVal) : "-";
  };
  std::string told = number(&IAccessible::get_accRole, CHILDID_SELF);
  LONG children = 0;
  object->get_accChildCount(&children);
  for (LONG child = CHILDID_SELF; child <= children; ++child) told += ' ' + number(&IAccessible::get_accState, child);
  _bstr_t name;
  object->get_accName(_variant_t(static_cast<LONG>(CHILDID_SELF)), name.GetAddress());
  object->Release();
  const std::wstring_view wide(static_cast<const wchar_t*>(name), name.length());
  return ClassOf(window) + '|' + told + '|' + BytesFrom(CP_ACP, wide);
}

std::string ContentOf(HWND window) { return TicksOf(window) + TextOf(window); }

HWND FindShown(DWORD processId, const std::string& what) {
  std::map<std::string, int> seen;
  for (const HWND window : ShownBy(processId)) {
    const std::string text = OneLine(TextOf(window));
    const std::string kind = ClassOf(window);
    const bool named = text == what || ReplaceAll(text, "&", "") == what;
    if (named || kind + ' ' + std::to_string(seen[kind]++) == what) return window;
  }
  return nullptr;
}

HWND DialogOf(DWORD processId) {
  const auto windows = WindowsIn(nullptr);
  const auto isIt = [&](HWND window) { return Belongs(window, processId) && ClassOf(window) == "#32770"; };
  const auto found = std::ranges::find_if(windows, isIt);
  return found == windows.end() ? nullptr : *found;
}

std::optional<POINT> PlaceOf(DWORD processId, const std::string& name) {
  static const std::map<std::string_view, LRESULT> frame{
      {"caption", HTCAPTION}, {"minimize", HTMINBUTTON}, {"close", HTCLOSE}};
  const auto part = frame.find(name);
  const bool box = name.starts_with("box ");
  if (part == frame.end() && !box && !name.starts_with("entry ")) {
    RECT area{};
    if (GetWindowRect(FindShown(processId, name), &area) == FALSE) return std::nullopt;
    return POINT{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
  }
  const HWND dialog = DialogOf(processId);
  if (IsWindowVisible(dialog) == FALSE) return std::nullopt;
  if (part != frame.end()) return PlaceInFrame(dialog, part->second);
  return PlaceInList(FindWindowExA(dialog, nullptr, WC_LISTVIEWA, nullptr), box,
                     std::stol(name.substr(name.find(' '))));
}

}  // namespace fonklav::suite
