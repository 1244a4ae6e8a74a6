#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>

#include "sim/suite/Script.h"
#include "sim/suite/WindowList.h"
#include "util/Text.h"

// What a story expects, and what a person does in it with mouse and keyboard: so it needs nobody beside it.
namespace fonklav::suite {

namespace {

constexpr std::chrono::seconds kPatience{15};
constexpr long kHasteMs = 60;  ///< nobody clicks or types faster, nor before what came last is on the screen

std::vector<std::string> LinesOf(const std::string& file) {
  std::ifstream stream(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void Press(const std::string& name, bool down) {
  static const std::map<std::string_view, int> keys{
      {"Return", VK_RETURN},   {"Escape", VK_ESCAPE},  {"space", VK_SPACE},  {"End", VK_END},  {"Delete", VK_DELETE},
      {"Insert", VK_INSERT},   {"BackSpace", VK_BACK}, {"ctrl", VK_CONTROL}, {"alt", VK_MENU}, {"shift", VK_SHIFT},
      {"comma", VK_OEM_COMMA}, {"F4", VK_F4},          {"Tab", VK_TAB}};
  const auto found = keys.find(name);
  const auto key = static_cast<UINT>(found != keys.end() ? found->second : VkKeyScanA(name[0]) & 0xFF);
  const bool extended = key == VK_END || key == VK_DELETE || key == VK_INSERT;
  keybd_event(static_cast<BYTE>(key), static_cast<BYTE>(MapVirtualKeyA(key, MAPVK_VK_TO_VSC)),
              (down ? 0U : KEYEVENTF_KEYUP) | (extended ? KEYEVENTF_EXTENDEDKEY : 0U), 0);
}

}  // namespace

void Script::AddStoryCommands() {
  commands_["expect"] = [this](const std::string& report) {
    Until(report, [this] { return !reports_.empty(); });
    if (reports_.empty()) return;
    const std::string heard = OneLine(reports_.front());
    reports_.pop_front();
    if (heard != report) Fail("heard " + heard + " instead of " + report);
  };
  commands_["settle"] = [this](const std::string&) {
    Run("send debug|0");
    Run("expect cmd|quitt");
  };
  commands_["started"] = [this](const std::string& possible) {
    const auto known = Split(possible, "\t");
    Until("a start", [&] { return answered_ || std::ranges::find_first_of(known, reports_) != known.end(); });
    const auto linked = [](const std::string& event) { return event.starts_with("link to the item"); };
    Until("a link", [&] { return std::ranges::any_of(heard_, linked); });
    Sleep(500);  // whether it says more depends on its telephony
    reports_.clear();
  };
  commands_["said"] = [this](const std::string& countAndText) {
    const std::string text = countAndText.substr(countAndText.find(' ') + 1);
    const auto count = std::ranges::count(heard_, text);
    if (count != std::stol(countAndText)) Fail("said so often: " + std::to_string(count));
  };
  commands_["found"] = [this](const std::string& fileAndPattern) {
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
  };
  commands_["given-back"] = [this](const std::string& log) {
    std::map<std::string, int> calls;
    for (const std::string& line : LinesOf(log)) ++calls[line.substr(0, line.find('('))];
    const bool closed = calls["call lineOpen"] == calls["call lineClose"];
    if (!closed || calls["call lineInitializeEx"] != calls["call lineShutdown"]) Fail("telephony was not given back");
  };
  commands_["has"] = [this](const std::string& controlAndPattern) {
    const auto fields = Split(controlAndPattern, "\t");
    Until(controlAndPattern, [&, pattern = std::regex(fields.at(1))] {
      const HWND control = FindShown(dialerId_, fields[0]);
      return control != nullptr && std::regex_match(OneLine(ContentOf(control)), pattern);
    });
  };
  commands_["hidden"] = [this](const std::string&) {
    Until("nothing is shown", [this] { return ShownBy(dialerId_).empty(); });
  };
  commands_["gone"] = [this](const std::string&) {
    // The name by which a dialer knows of another one.
    Until("no dialer", [] { return !UniqueKernelHandle(OpenMutexA(SYNCHRONIZE, FALSE, "Local\\FonklavTAPI")); });
  };
  commands_["click"] = [this](const std::string& place) {
    std::optional<POINT> at;
    Until(place, [&] { return (at = PlaceOf(dialerId_, place)).has_value(); });
    if (!at) return;
    Sleep(kHasteMs);
    const auto part = [](LONG pixels, int all) { return static_cast<DWORD>(MulDiv(pixels, 0xFFFF, all - 1)); };
    mouse_event(MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | MOUSEEVENTF_LEFTDOWN,
                part(at->x, GetSystemMetrics(SM_CXSCREEN)), part(at->y, GetSystemMetrics(SM_CYSCREEN)), 0, 0);
    mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
  };
  commands_["keys"] = [this](const std::string& names) {
    for (const std::string& chord : Split(names, " ")) {
      Sleep(kHasteMs);
      auto keys = Split(chord, "+");
      for (const std::string& key : keys) Press(key, true);
      std::ranges::reverse(keys);
      for (const std::string& key : keys) Press(key, false);
    }
  };
  commands_["box"] = [this](const std::string& text) { box_ = text; };
  commands_["handles"] = [this](const std::string&) {
    const HANDLE process = dialer_.Get();
    DWORD count = 0;
    GetProcessHandleCount(process, &count);
    // A system that does not count a kind says 0.
    const std::map<std::string, DWORD> counts{{"GDI", GetGuiResources(process, GR_GDIOBJECTS)},
                                              {"USER", GetGuiResources(process, GR_USEROBJECTS)},
                                              {"process", count}};
    for (const auto& [kind, held] : counts) {
      Print("fact", kind + " handles: " + (held == 0 ? "not counted here" : std::to_string(held)));
      if (!handles_.empty() && held > handles_[kind]) Fail("more and more " + kind + " handles");
    }
    handles_ = counts;
  };
  commands_["kill"] = [](const std::string&) { TerminateProcess(GetCurrentProcess(), 0); };
  commands_["make-folder"] = [](const std::string& path) { std::filesystem::create_directory(path); };
  commands_["remove"] = [](const std::string& path) { std::filesystem::remove(path); };
}

void Script::Until(const std::string& what, const std::function<bool()>& met) {
  const auto end = Clock::now() + kPatience;
  do {
    if (const HWND box = box_.empty() ? nullptr : FindShown(dialerId_, box_)) {
      PostMessageA(GetParent(box), WM_COMMAND, IDOK, 0);
      answered_ = true;
    }
    if (met()) return;
    Pump();
  } while (Clock::now() < end);
  Fail("in vain: " + what);
}

}  // namespace fonklav::suite
