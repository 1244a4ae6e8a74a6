#include "sim/suite/Script.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "sim/suite/DdeServer.h"
#include "sim/suite/MessageServer.h"
#include "sim/suite/WindowList.h"

namespace fonklav::suite {

namespace {

constexpr std::string_view kSuite = "suite";
constexpr std::string_view kScreen = "screen";
constexpr std::string_view kSuiteToDialer = "suite  -> dialer";
constexpr std::string_view kDialerToSuite = "dialer -> suite ";
constexpr std::size_t kLongCommand = 200;
constexpr UINT kPingLimitMs = 5000;

}  // namespace

std::chrono::milliseconds Milliseconds(const std::string& text) {
  return std::chrono::milliseconds(std::strtol(text.c_str(), nullptr, 10));
}

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

Script::Script(std::string dialer, Speech speech) : dialerPath_(std::move(dialer)) {
  const Server::Listener listener{[this](const std::string& bytes) { OnReport(bytes); },
                                  [this](std::string_view what) {
    events_.emplace_back(what);
    Print(kSuite, what);
                                  }};
  if (speech == Speech::Library) {
    server_ = std::make_unique<DdeServer>(listener);
  } else {
    server_ = std::make_unique<MessageServer>(listener);
  }
}

const std::vector<Script::Entry>& Script::Commands() {
  static const std::vector<Entry> commands{{"start", &Script::Start},
                                           {"send", &Script::Send},
                                           {"set", &Script::Set},
                                           {"wait", &Script::Wait},
                                           {"ping", &Script::Ping},
                                           {"sleep", &Script::Sleep},
                                           {"hang", &Script::Hang},
                                           {"expect-exit", &Script::ExpectExit},
                                           {"answer", &Script::Answer},
                                           {"refuse-advise", &Script::RefuseAdvise},
                                           {"terminate", &Script::Terminate},
                                           {"windows", &Script::Windows},
                                           {"places", &Script::Places},
                                           {"readings", &Script::Readings},
                                           {"offline", &Script::Offline},
                                           {"misbehave", &Script::Misbehave},
                                           {"hold", &Script::Hold},
                                           {"release", &Script::Release},
                                           {"append", &Script::Append},
                                           {"knock", &Script::Knock},
                                           {"lock", &Script::Lock},
                                           {"cover", &Script::Cover},
                                           {"tell", &Script::Tell}};
  return commands;
}

bool Script::Run(const std::string& line) {
  const std::size_t blank = line.find(' ');
  const std::string name = line.substr(0, blank);
  if (name == "exit") return false;
  if (name.empty() || name.front() == '#') return true;
  for (const auto* commands : {&Commands(), &CheckCommands()}) {
    for (const Entry& entry : *commands) {
      if (entry.name != name) continue;
      entry.command(*this, blank == std::string::npos ? std::string() : line.substr(blank + 1));
      return true;
    }
  }
  Fail("unknown command " + name);
  return true;
}

void Script::Pump() {
  const HANDLE process = dialer_.Handle();
  MsgWaitForMultipleObjects(process != nullptr ? 1 : 0, &process, FALSE, 10, QS_ALLINPUT);
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageA(&message);
  // The library must not be called back into while it delivers a report: the item is cleared here.
  if (std::exchange(clearNow_, false)) server_->Publish("");
  if (const auto code = dialer_.TakeExit()) {
    dialerEnded_ = true;
    Print(kSuite, "dialer ended, exit code " + std::to_string(*code));
  }
}

void Script::Start(const std::string& arguments) {
  Print(kSuite, "starts the dialer: " + arguments);
  dialerEnded_ = answered_ = false;
  dialer_.Start(dialerPath_, arguments);
}

void Script::Send(const std::string& value) {
  clearWhenAcknowledged_ = true;
  Set(value);
}

void Script::Set(const std::string& value) {
  const bool isLong = value.size() > kLongCommand;
  Print(kSuiteToDialer,
        isLong ? value.substr(0, kLongCommand) + "... " + std::to_string(value.size()) + " bytes" : value);
  server_->Publish(value);
}

void Script::Wait(const std::string& millisecondsAndPrefix) {
  WaitFor(millisecondsAndPrefix, [] {});
}

void Script::Ping(const std::string& millisecondsAndPrefix) {
  const HWND window = DialogOf(dialer_.Id(), false);
  std::chrono::steady_clock::duration longest{};
  WaitFor(millisecondsAndPrefix, [&] {
    const auto asked = std::chrono::steady_clock::now();
    if (SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_NORMAL, kPingLimitMs, nullptr) == 0) Fail("the window hangs");
    longest = std::max(longest, std::chrono::steady_clock::now() - asked);
  });
  longestPing_ = std::chrono::ceil<std::chrono::milliseconds>(longest);
  Print(kSuite, "the window has answered within ms: " + std::to_string(longestPing_.count()));
}

void Script::WaitFor(const std::string& millisecondsAndPrefix, const std::function<void()>& meanwhile) {
  const std::string prefix = millisecondsAndPrefix.substr(millisecondsAndPrefix.find(' ') + 1);
  const auto arrived = [&] {
    meanwhile();
    while (waitedFor_ < reports_.size()) {
      if (reports_[waitedFor_++].starts_with(prefix)) return true;
    }
    return false;
  };
  if (!PumpUntil(Milliseconds(millisecondsAndPrefix), arrived)) Fail("no report began with " + prefix);
}

void Script::Sleep(const std::string& milliseconds) {
  PumpUntil(Milliseconds(milliseconds), [] { return false; });
}

void Script::Hang(const std::string& milliseconds) {
  Print(kSuite, "hangs for " + milliseconds + " ms");
  ::Sleep(static_cast<DWORD>(Milliseconds(milliseconds).count()));
}

void Script::ExpectExit(const std::string& milliseconds) {
  if (!PumpUntil(Milliseconds(milliseconds), [this] { return dialerEnded_; })) Fail("the dialer has not ended");
}

void Script::Answer(const std::string& how) {
  using Kind = Server::Answer;
  server_->AnswerWith(how == "refuse" ? Kind::Refuse : how == "busy" ? Kind::Busy : Kind::Accept);
}

void Script::RefuseAdvise(const std::string&) { server_->AcceptAdvise(false); }

void Script::Terminate(const std::string&) {
  Print(kSuite, "closes the conversation");
  if (!server_->Terminate()) Fail("there is no conversation to close");
}

void Script::Windows(const std::string&) {
  for (const std::string& line : WindowList(dialer_.Id())) Print(kScreen, line);
  Print(kScreen, "end");
}

void Script::Places(const std::string&) {
  for (const std::string& line : PlaceList(DialogOf(dialer_.Id(), true))) Print(kScreen, line);
  Print(kScreen, "end");
}

void Script::Readings(const std::string&) {
  for (const std::string& line : ReadingList(DialogOf(dialer_.Id(), true))) Print(kScreen, line);
  Print(kScreen, "end");
}

void Script::Offline(const std::string&) { server_->Withdraw(); }

void Script::Misbehave(const std::string& howAndDetail) {
  const std::size_t blank = howAndDetail.find(' ');
  const std::string detail = blank == std::string::npos ? "" : howAndDetail.substr(blank + 1);
  if (!server_->Misbehave(howAndDetail.substr(0, blank), detail)) Fail("cannot misbehave so: " + howAndDetail);
}

void Script::Hold(const std::string& path) {
  held_.push_back(OpenFileFor(path, GENERIC_READ | GENERIC_WRITE, 0));
  if (!held_.back()) Fail("cannot hold " + path);
}

void Script::Release(const std::string&) { held_.clear(); }

void Script::Append(const std::string& pathAndText) {
  const std::size_t blank = pathAndText.find(' ');
  const std::string path = pathAndText.substr(0, blank);
  const bool added = AppendLine(path, blank == std::string::npos ? "" : pathAndText.substr(blank + 1));
  if (!added) Fail("cannot append to " + path);
}

void Script::Knock(const std::string& path) {
  constexpr int times = 20;
  for (int time = 0; time < times; ++time) {
    if (!OpenFileFor(path, kAppend, FILE_SHARE_READ | FILE_SHARE_WRITE)) Fail("cannot append to " + path);
  }
}

void Script::Lock(const std::string& path) {
  held_.push_back(LockOf(path));
  if (!held_.back()) Fail("cannot lock " + path);
}

void Script::Cover(const std::string&) {
  // But for the lowest row: Wine 10 confines the mouse to a window as large as the screen, and never ends doing so.
  const int width = GetSystemMetrics(SM_CXSCREEN);
  const int height = GetSystemMetrics(SM_CYSCREEN) - 1;
  cover_.reset(
      CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, width, height, nullptr, nullptr, nullptr, nullptr));
  if (!cover_ || SetForegroundWindow(cover_.get()) == FALSE) Fail("cannot cover the screen");
}

void Script::Tell(const std::string& messageAndParameter) {
  const auto message = static_cast<UINT>(std::strtoul(messageAndParameter.c_str(), nullptr, 0));
  const std::string parameter = messageAndParameter.substr(messageAndParameter.find(' ') + 1);
  const HWND window = DialogOf(dialer_.Id(), true);
  if (window == nullptr) return Fail("the dialer shows no window");
  SendMessageA(window, message, static_cast<WPARAM>(std::strtoul(parameter.c_str(), nullptr, 0)), 0);
}

void Script::OnReport(const std::string& bytes) {
  Print(kDialerToSuite, bytes);
  reports_.push_back(bytes);
  if (bytes == "cmd|quitt" && std::exchange(clearWhenAcknowledged_, false)) clearNow_ = true;
}

bool Script::PumpUntil(std::chrono::milliseconds limit, const std::function<bool()>& met) {
  const auto end = std::chrono::steady_clock::now() + limit;
  bool done = met();
  while (!done && std::chrono::steady_clock::now() < end) {
    Pump();
    done = met();
  }
  return done;
}

void Script::Fail(const std::string& why) {
  Print(kSuite, "FAILED " + why);
  ok_ = false;
}

void Script::Print(std::string_view who, std::string_view text) const {
  const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin_);
  std::printf("%7lld ms  %-16.*s  %s\n", static_cast<long long>(now.count()), static_cast<int>(who.size()), who.data(),
              OneLine(text).c_str());
  std::fflush(stdout);
}

}  // namespace fonklav::suite
