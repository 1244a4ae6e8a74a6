#include "sim/suite/Script.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <system_error>

#include "sim/suite/WindowList.h"
#include "util/Text.h"

namespace fonklav::suite {

namespace {

constexpr std::size_t kLongCommand = 200;  ///< of a longer one, its beginning is printed
constexpr UINT kPingLimitMs = 5000;

/// The first word of a line, and what follows it.
std::pair<std::string, std::string> FirstWord(const std::string& line) {
  const std::size_t blank = line.find(' ');
  return {line.substr(0, blank), blank == std::string::npos ? "" : line.substr(blank + 1)};
}

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

std::string OneLine(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string line;
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    const bool plain = code >= 0x20 && code != 0x7F && byte != '\\';
    line += plain ? std::string{byte} : std::string{'\\', 'x', digits[code >> 4U], digits[code & 0xFU]};
  }
  return line;
}

Script::Script(std::string dialer)
    : dialerPath_(std::move(dialer)),
      server_(
          {[this](const std::string& bytes) { OnReport(bytes); }, [this](std::string_view what) { OnEvent(what); }}) {
  commands_["start"] = [this](const std::string& arguments) {
    OnEvent("starts the dialer: " + arguments);
    answered_ = false;
    // The arguments stay exactly as they stand, blanks and all.
    std::string commandLine = '"' + dialerPath_ + '"' + (arguments.empty() ? "" : " ") + arguments;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const BOOL started =
        CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
    if (started == FALSE) throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    CloseHandle(process.hThread);
    dialer_.Reset(process.hProcess);
    dialerId_ = process.dwProcessId;
  };
  commands_["send"] = [this](const std::string& value) {
    clearWhenAcknowledged_ = true;
    Run("set " + value);
  };
  commands_["set"] = [this](const std::string& value) {
    Print("suite  -> dialer", value.substr(0, kLongCommand));
    server_.Publish(value);
  };
  commands_["wait"] = [this](const std::string& prefix) { Until(prefix, [&] { return Heard(prefix); }); };
  commands_["ping"] = [this](const std::string& millisecondsAndPrefix) {
    const auto [milliseconds, prefix] = FirstWord(millisecondsAndPrefix);
    const HWND window = DialogOf(dialerId_);
    Clock::duration longest{};
    Until(prefix, [&, prefix = prefix] {
      const auto asked = Clock::now();
      if (SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_NORMAL, kPingLimitMs, nullptr) == 0) Fail("the window hangs");
      longest = std::max(longest, Clock::now() - asked);
      return Heard(prefix);
    });
    const auto took = std::chrono::ceil<std::chrono::milliseconds>(longest).count();
    if (took > std::stol(milliseconds)) Fail("the window took for an answer ms: " + std::to_string(took));
  };
  commands_["sleep"] = [this](const std::string& milliseconds) { Sleep(std::stol(milliseconds)); };
  commands_["terminate"] = [this](const std::string&) {
    OnEvent("closes the conversation");
    if (!server_.Terminate()) Fail("there is no conversation to close");
  };
  commands_["windows"] = [this](const std::string&) { Show(Describe); };
  commands_["readings"] = [this](const std::string&) { Show(Reading); };
  commands_["misbehave"] = [this](const std::string& howAndDetail) {
    const auto [how, detail] = FirstWord(howAndDetail);
    server_.Misbehave(how, detail);
  };
  commands_["hold"] = [this](const std::string& path) {
    held_.emplace_back(CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_ALWAYS, 0, nullptr));
    if (!held_.back()) Fail("cannot hold " + path);
  };
  commands_["release"] = [this](const std::string&) { held_.clear(); };
  commands_["append"] = [this](const std::string& pathAndText) {
    const auto [path, text] = FirstWord(pathAndText);
    files_.Append(path, text + "\r\n");
  };
  commands_["knock"] = [this](const std::string& path) {
    constexpr int times = 20;
    constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE;
    for (int time = 0; time < times; ++time) {
      const UniqueFile file{CreateFileA(path.c_str(), FILE_APPEND_DATA, share, nullptr, OPEN_ALWAYS, 0, nullptr)};
      if (!file) Fail("cannot append to " + path);
    }
  };
  commands_["lock"] = [this](const std::string& path) {
    lock_ = files_.Lock(path);
    if (!lock_) Fail("cannot lock " + path);
  };
  commands_["cover"] = [this](const std::string&) {
    // But for the lowest row: Wine 10 confines the mouse to a window as large as the screen, and never ends doing so.
    cover_.Reset(CreateWindowA("STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, GetSystemMetrics(SM_CXSCREEN),
                               GetSystemMetrics(SM_CYSCREEN) - 1, nullptr, nullptr, nullptr, nullptr));
    if (!cover_ || SetForegroundWindow(cover_.Get()) == FALSE) Fail("cannot cover the screen");
  };
  commands_["tell"] = [this](const std::string& messageAndParameter) {
    const auto [message, parameter] = FirstWord(messageAndParameter);
    SendMessageA(DialogOf(dialerId_), std::stoul(message, nullptr, 0), std::stoul(parameter, nullptr, 0), 0);
  };
  AddStoryCommands();
}

bool Script::Run(const std::string& line) {
  const auto [name, rest] = FirstWord(line);
  if (name == "exit") return false;
  try {
    commands_.at(name)(rest);
  } catch (const std::exception& fault) {
    Fail("cannot " + line + ": " + fault.what());
  }
  return true;
}

void Script::Pump() {
  const HANDLE process = dialer_.Get();
  MsgWaitForMultipleObjects(process != nullptr ? 1 : 0, &process, FALSE, 10, QS_ALLINPUT);
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageA(&message);
  if (process == nullptr || WaitForSingleObject(process, 0) != WAIT_OBJECT_0) return;
  DWORD code = 0;
  GetExitCodeProcess(process, &code);
  dialer_.Reset();
  OnEvent("dialer ended, exit code " + std::to_string(code));
}

void Script::Sleep(long milliseconds) {
  for (const auto end = Clock::now() + std::chrono::milliseconds(milliseconds); Clock::now() < end;) Pump();
}

bool Script::Heard(const std::string& prefix) {
  while (waitedFor_ < heard_.size()) {
    if (heard_[waitedFor_++].starts_with(prefix)) return true;
  }
  return false;
}

void Script::OnReport(const std::string& bytes) {
  Print("dialer -> suite ", bytes);
  heard_.push_back(bytes);
  reports_.push_back(bytes);
  if (bytes == "cmd|quitt" && std::exchange(clearWhenAcknowledged_, false)) server_.Publish("");
}

void Script::OnEvent(std::string_view what) {
  Print("suite", what);
  heard_.emplace_back(what);
}

void Script::Fail(const std::string& why) {
  Print("suite", "FAILED " + why);
  ok_ = false;
}

void Script::Show(const std::function<std::string(HWND)>& told) const {
  for (const HWND window : ShownBy(dialerId_)) Print("screen", told(window));
  Print("screen", "end");
}

void Script::Print(std::string_view who, std::string_view text) const {
  const auto now = std::chrono::floor<std::chrono::milliseconds>(Clock::now() - begin_).count();
  std::printf("%7lld ms  %-16.*s  %s\n", static_cast<long long>(now), static_cast<int>(who.size()), who.data(),
              OneLine(text).c_str());
  std::fflush(stdout);
}

// What a story expects, and what a person does in it with mouse and keyboard: so it needs nobody beside it.
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
