#include "sim/suite/Script.h"

#include <cstdio>
#include <system_error>

#include "sim/suite/WindowList.h"

namespace fonklav::suite {

namespace {

constexpr std::size_t kLongCommand = 200;  ///< of a longer one, its beginning is printed
constexpr UINT kPingLimitMs = 5000;

/// The first word of a line, and what follows it.
std::pair<std::string, std::string> FirstWord(const std::string& line) {
  const std::size_t blank = line.find(' ');
  return {line.substr(0, blank), blank == std::string::npos ? "" : line.substr(blank + 1)};
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

}  // namespace fonklav::suite
