#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>

#include "sim/suite/Script.h"
#include "sim/suite/WindowList.h"
#include "util/Text.h"

// What a story expects, and what a person does in it with mouse and keyboard: so it needs nobody beside it.
namespace fonklav::suite {

namespace {

constexpr std::chrono::seconds kPatience{15};

std::vector<std::string> LinesOf(const std::string& file) {
  std::ifstream stream(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void Press(const std::string& name, bool down) {
  static const std::map<std::string_view, int> keys{
      {"Return", VK_RETURN}, {"Escape", VK_ESCAPE}, {"space", VK_SPACE},     {"End", VK_END},
      {"Delete", VK_DELETE}, {"Insert", VK_INSERT}, {"BackSpace", VK_BACK},  {"ctrl", VK_CONTROL},
      {"alt", VK_MENU},      {"shift", VK_SHIFT},   {"comma", VK_OEM_COMMA}, {"F4", VK_F4}};
  const auto found = keys.find(name);
  const auto key = static_cast<UINT>(found != keys.end() ? found->second : VkKeyScanA(name[0]) & 0xFF);
  const bool extended = key == VK_END || key == VK_DELETE || key == VK_INSERT;
  keybd_event(static_cast<BYTE>(key), static_cast<BYTE>(MapVirtualKeyA(key, MAPVK_VK_TO_VSC)),
              (down ? 0U : KEYEVENTF_KEYUP) | (extended ? KEYEVENTF_EXTENDEDKEY : 0U), 0);
}

/// Where to aim: a place that PlaceList names, or the middle of what is shown under this name.
std::optional<POINT> PlaceOf(DWORD process, const std::string& name) {
  if (const HWND dialog = DialogOf(process, true)) {
    for (const std::string& line : PlaceList(dialog)) {
      const auto fields = Split(line, "|");
      if (fields[0] == name) return POINT{std::stol(fields[1]), std::stol(fields[2])};
    }
  }
  RECT area{};
  if (GetWindowRect(FindShown(process, name), &area) == FALSE) return std::nullopt;
  return POINT{(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

/// What the dialer's process holds of each kind, which a system may not count and call 0.
std::array<std::pair<const char*, DWORD>, 3> HandlesOf(HANDLE process) {
  DWORD handles = 0;
  GetProcessHandleCount(process, &handles);
  return {{{"GDI", GetGuiResources(process, GR_GDIOBJECTS)},
           {"USER", GetGuiResources(process, GR_USEROBJECTS)},
           {"process", handles}}};
}

}  // namespace

const std::vector<Script::Entry>& Script::CheckCommands() {
  static const std::vector<Entry> commands{
      {"expect", &Script::Expect},
      {"settle", [](Script& script, const std::string&) { script.Settle(); }},
      {"started", &Script::Started},
      {"wait-event", &Script::WaitForEvent},
      {"found", &Script::Found},
      {"given-back", &Script::GivenBack},
      {"has", &Script::Has},
      {"click", &Script::Click},
      {"keys", &Script::Keys},
      {"dials", &Script::Dials},
      {"box", [](Script& script, const std::string& text) { script.box_ = text; }},
      {"shows", [](Script& script, const std::string& name) { script.Has(name + "\t.*"); }},
      {"hidden",
       [](Script& script, const std::string&) {
    script.Until("nothing is shown", [&] { return WindowList(script.dialer_.Id()).empty(); });
       }},
      {"gone",
       [](Script& script, const std::string&) {
    // The name by which a dialer knows of another one.
    script.Until("no dialer", [] { return !HeldFile(OpenMutexA(SYNCHRONIZE, FALSE, "Local\\FonklavTAPI")); });
       }},
      {"said",
       [](Script& script, const std::string& countAndText) {
    const std::string text = countAndText.substr(countAndText.find(' ') + 1);
    const auto count = std::ranges::count(script.events_, text) + std::ranges::count(script.reports_, text);
    if (count != std::stol(countAndText)) script.Fail("said so often: " + std::to_string(count));
       }},
      {"answered-within",
       [](Script& script, const std::string& milliseconds) {
    if (script.longestPing_ > Milliseconds(milliseconds)) script.Fail("the window was slow");
       }},
      {"runs",
       [](Script& script, const std::string&) {
    if (script.dialerEnded_) script.Fail("the dialer has ended");
       }},
      {"kill", [](Script&, const std::string&) { TerminateProcess(GetCurrentProcess(), 0); }},
      {"make-folder", [](Script&, const std::string& path) { std::filesystem::create_directory(path); }},
      {"remove", [](Script&, const std::string& path) { std::filesystem::remove(path); }}};
  return commands;
}

void Script::Until(const std::string& what, const std::function<bool()>& met) {
  const auto look = [&] {
    if (const HWND box = box_.empty() ? nullptr : FindShown(dialer_.Id(), box_)) {
      PostMessageA(GetParent(box), WM_COMMAND, IDOK, 0);
      answered_ = true;
    }
    return met();
  };
  if (!PumpUntil(kPatience, look)) Fail("in vain: " + what);
}

void Script::Expect(const std::string& report) {
  Until(report, [this] { return compared_ < reports_.size(); });
  if (compared_ == reports_.size()) return;
  const std::string heard = OneLine(reports_[compared_++]);
  if (heard != report) Fail("heard " + heard + " instead of " + report);
}

void Script::Settle() {
  Send("debug|0");
  Expect("cmd|quitt");
  if (!reports_.empty()) reports_.pop_back();  // neither question nor answer is part of the conversation
  compared_ = std::min(compared_, reports_.size());
}

void Script::Started(const std::string& possible) {
  const auto known = Split(possible, "\t");
  Until("a start", [&] { return answered_ || std::ranges::find_first_of(known, reports_) != known.end(); });
  const auto linked = [](const std::string& event) { return event.starts_with("link to the item"); };
  Until("a link", [&] { return std::ranges::any_of(events_, linked); });
  Sleep("500");  // whether it says more depends on its telephony
  compared_ = reports_.size();
}

void Script::WaitForEvent(const std::string& prefix) {
  Until(prefix, [&] {
    const auto found = std::find_if(events_.begin() + heardOf_, events_.end(),
                                    [&](const std::string& event) { return event.starts_with(prefix); });
    heardOf_ = found - events_.begin() + (found != events_.end());
    return found != events_.end();
  });
}

void Script::Found(const std::string& fileAndPattern) {
  constexpr std::size_t longest = 4000;  // the library's matching goes as deep as the line is long
  auto wanted = Split(fileAndPattern, "\t");
  const std::regex pattern(wanted.at(1));
  std::vector<std::string> found;
  for (const std::string& line : LinesOf(wanted[0])) {
    const std::string begin = line.substr(0, longest);
    std::smatch match;
    if (std::regex_search(begin, match, pattern)) found.push_back(OneLine(match[1].str()));
  }
  wanted.erase(wanted.begin(), wanted.begin() + 2);
  if (found == wanted) return;
  Fail(std::to_string(found.size()) + " lines as in " + fileAndPattern);
  for (const std::string& text : found) Print("found", text);
}

void Script::GivenBack(const std::string& log) {
  std::map<std::string, int> calls;
  for (const std::string& line : LinesOf(log)) ++calls[line.substr(0, line.find('('))];
  const bool closed = calls["call lineOpen"] == calls["call lineClose"];
  if (!closed || calls["call lineInitializeEx"] != calls["call lineShutdown"]) Fail("telephony was not given back");
}

void Script::Has(const std::string& controlAndPattern) {
  const auto fields = Split(controlAndPattern, "\t");
  Until(controlAndPattern, [&, pattern = std::regex(fields.at(1))] {
    const HWND control = FindShown(dialer_.Id(), fields[0]);
    return control != nullptr && std::regex_match(OneLine(ContentOf(control)), pattern);
  });
}

void Script::Click(const std::string& place) {
  std::optional<POINT> at;
  Until(place, [&] { return (at = PlaceOf(dialer_.Id(), place)).has_value(); });
  if (!at) return;
  SetCursorPos(at->x, at->y);
  mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
  mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
}

void Script::Keys(const std::string& names) {
  for (const std::string& chord : Split(names, " ")) {
    Sleep("60");  // nobody types faster, nor before what came last is on the screen
    auto keys = Split(chord, "+");
    for (const std::string& key : keys) Press(key, true);
    std::ranges::reverse(keys);
    for (const std::string& key : keys) Press(key, false);
  }
}

void Script::Dials(const std::string& count) {
  const long all = std::stol(count);
  auto first = HandlesOf(dialer_.Handle());
  for (long dial = 1; dial <= all && ok_; ++dial) {
    Send("cmd|call|0301234567");
    Wait("10000 anzlog|Leerlauf");
    if (dial == all / 10) first = HandlesOf(dialer_.Handle());
  }
  const auto last = HandlesOf(dialer_.Handle());
  for (std::size_t kind = 0; kind < last.size(); ++kind) {
    const auto [name, held] = last[kind];
    const std::string what = name + std::string(" handles after a tenth of ") + count + " dials and after all: ";
    Print("fact",
          what + (held == 0 ? "not counted here" : std::to_string(first[kind].second) + ", " + std::to_string(held)));
    if (held > first[kind].second) Fail("more and more " + what);
  }
}

}  // namespace fonklav::suite
