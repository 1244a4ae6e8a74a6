#include "sim/suite/WindowList.h"

#include <commctrl.h>
#include <comutil.h>
#include <oleacc.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>

#include "sim/suite/HeldFile.h"
#include "sim/suite/Script.h"
#include "util/Text.h"

namespace fonklav::suite {

namespace {

struct Releaser {
  void operator()(IUnknown* object) const noexcept { object->Release(); }
};

struct Search {
  DWORD processId;
  std::vector<HWND>& windows;
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

BOOL CALLBACK AddControl(HWND window, LPARAM windows) {
  if (IsWindowVisible(window) != FALSE) reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  return TRUE;
}

BOOL CALLBACK AddWindow(HWND window, LPARAM data) {
  const auto& search = *reinterpret_cast<const Search*>(data);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner == search.processId && IsWindowVisible(window) != FALSE) {
    search.windows.push_back(window);
    EnumChildWindows(window, &AddControl, reinterpret_cast<LPARAM>(&search.windows));
  }
  return TRUE;
}

/// What a screen reader learns of an object or one of its children: numbers that the system told, or nothing.
std::string Reading(IAccessible& object, const std::string& kind, LONG child) {
  const _variant_t which(child);
  _variant_t role, state, name;
  object.get_accRole(which, &role);
  object.get_accState(which, &state);
  std::string bytes(1024, '\0');
  if (object.get_accName(which, &name.bstrVal) == S_OK) {
    name.vt = VT_BSTR;
    WideCharToMultiByte(CP_ACP, 0, name.bstrVal, -1, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
  }
  const auto number = [](const _variant_t& told) { return told.vt == VT_I4 ? std::to_string(told.lVal) : ""; };
  return kind + '|' + number(role) + '|' + number(state) + '|' + bytes.c_str();
}

BOOL CALLBACK AddReading(HWND window, LPARAM data) {
  auto& lines = *reinterpret_cast<std::vector<std::string>*>(data);
  void* found = nullptr;
  if (IsWindowVisible(window) == FALSE) return TRUE;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible), &found);
  const std::unique_ptr<IAccessible, Releaser> object(static_cast<IAccessible*>(found));
  if (!object) return TRUE;
  const std::string kind = ClassOf(window);
  lines.push_back(Reading(*object, kind, CHILDID_SELF));
  const LRESULT entries = kind == WC_LISTVIEWA ? SendMessageA(window, LVM_GETITEMCOUNT, 0, 0) : 0;
  for (LONG entry = 1; entry <= entries; ++entry) lines.push_back(Reading(*object, "entry", entry));
  return TRUE;
}

/// Each visible window of a process and, after it, its visible controls.
std::vector<HWND> ShownBy(DWORD processId) {
  std::vector<HWND> windows;
  Search search{processId, windows};
  EnumWindows(&AddWindow, reinterpret_cast<LPARAM>(&search));
  return windows;
}

/// The middle of the part of the frame that the window says to have somewhere on a straight way; empty when it is not
/// on the way.
std::optional<POINT> PartOnTheWay(HWND window, LRESULT part, POINT from, POINT step) {
  RECT area{};
  GetWindowRect(window, &area);
  const auto run = [&](bool inPart) {
    for (; PtInRect(&area, from) != FALSE; from.x += step.x, from.y += step.y) {
      if ((SendMessageA(window, WM_NCHITTEST, 0, MAKELPARAM(from.x, from.y)) == part) != inPart) break;
    }
    return from;
  };
  const POINT begin = run(false);
  const POINT end = run(true);
  if (begin.x == end.x && begin.y == end.y) return std::nullopt;
  return POINT{(begin.x + end.x) / 2, (begin.y + end.y) / 2};
}

/// Room for a rectangle in the process of a list, which takes no other for a question about an entry.
class EntryArea {
 public:
  explicit EntryArea(HWND list) : list_(list) {
    DWORD id = 0;
    GetWindowThreadProcessId(list, &id);
    process_.reset(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id));
    rect_ = VirtualAllocEx(process_.get(), nullptr, sizeof(RECT), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
  }
  EntryArea(const EntryArea&) = delete;
  EntryArea& operator=(const EntryArea&) = delete;
  ~EntryArea() { VirtualFreeEx(process_.get(), rect_, 0, MEM_RELEASE); }

  /// A part (LVIR_…) of an entry, in pixels of the screen.
  [[nodiscard]] RECT Of(WPARAM entry, LONG part) const {
    RECT area{part, 0, 0, 0};
    WriteProcessMemory(process_.get(), rect_, &area, sizeof area, nullptr);
    SendMessageA(list_, LVM_GETITEMRECT, entry, reinterpret_cast<LPARAM>(rect_));
    ReadProcessMemory(process_.get(), rect_, &area, sizeof area, nullptr);
    MapWindowPoints(list_, nullptr, reinterpret_cast<POINT*>(&area), 2);
    return area;
  }

 private:
  HWND list_;
  HeldFile process_;
  void* rect_;
};

std::string Place(const std::string& name, LONG x, LONG y) {
  return name + '|' + std::to_string(x) + '|' + std::to_string(y);
}

void AddEntries(HWND list, std::vector<std::string>& lines) {
  const EntryArea area(list);
  const auto first = static_cast<WPARAM>(SendMessageA(list, LVM_GETTOPINDEX, 0, 0));
  const auto inSight = static_cast<WPARAM>(SendMessageA(list, LVM_GETCOUNTPERPAGE, 0, 0));
  const auto count = static_cast<WPARAM>(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0));
  RECT seen{};
  GetClientRect(list, &seen);
  MapWindowPoints(list, nullptr, reinterpret_cast<POINT*>(&seen), 2);
  for (WPARAM entry = first; entry < std::min(count, first + inSight); ++entry) {
    const RECT all = area.Of(entry, LVIR_BOUNDS);
    RECT text = area.Of(entry, LVIR_LABEL);
    text.right = std::min(text.right, seen.right);
    const LONG middle = (all.top + all.bottom) / 2;
    // The check box is what is left of the icon, and there are no icons.
    lines.push_back(Place("box " + std::to_string(entry), (all.left + area.Of(entry, LVIR_ICON).left) / 2, middle));
    lines.push_back(Place("entry " + std::to_string(entry), (text.left + text.right) / 2, middle));
  }
}

}  // namespace

std::vector<std::string> WindowList(DWORD processId) {
  std::vector<std::string> lines;
  for (const HWND window : ShownBy(processId)) {
    lines.push_back(Describe(GetAncestor(window, GA_ROOT) == window ? "window" : "control", window));
  }
  return lines;
}

std::vector<std::string> ReadingList(HWND dialog) {
  std::vector<std::string> lines;
  EnumChildWindows(dialog, &AddReading, reinterpret_cast<LPARAM>(&lines));
  return lines;
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

HWND DialogOf(DWORD processId, bool shown) {
  HWND dialog = nullptr;
  while ((dialog = FindWindowExA(nullptr, dialog, "#32770", nullptr)) != nullptr) {
    DWORD owner = 0;
    GetWindowThreadProcessId(dialog, &owner);
    if (owner == processId && (!shown || IsWindowVisible(dialog) != FALSE)) return dialog;
  }
  return nullptr;
}

std::vector<std::string> PlaceList(HWND dialog) {
  std::vector<std::string> lines;
  RECT area{};
  GetWindowRect(dialog, &area);
  const LONG middle = (area.left + area.right) / 2;
  const auto add = [&](const std::string& name, LRESULT part, POINT from, POINT step) {
    const auto place = PartOnTheWay(dialog, part, from, step);
    if (place) lines.push_back(Place(name, place->x, place->y));
    return place.value_or(from);
  };
  const LONG right = area.right - 1;
  const LONG bottom = area.bottom - 1;
  const LONG title = add("caption", HTCAPTION, {middle, area.top}, {0, 1}).y;
  add("minimize", HTMINBUTTON, {right, title}, {-1, 0});
  add("close", HTCLOSE, {right, title}, {-1, 0});
  add("lower edge", HTBOTTOM, {middle, bottom}, {0, -1});
  add("corner", HTBOTTOMRIGHT, {right, bottom}, {-1, -1});
  if (const HWND list = FindWindowExA(dialog, nullptr, "SysListView32", nullptr)) AddEntries(list, lines);
  return lines;
}

}  // namespace fonklav::suite
