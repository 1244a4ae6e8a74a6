// A main program in one file. It offers the link, starts the dialer, has one number dialed and prints both sides of the
// conversation, its own behind "> ". docs/protocol.md walks through it.
//
//     main-program DIALER NUMBER [SECONDS]     dials; hangs up after SECONDS (60 without), if nobody has before
//     main-program DIALER settings             shows the dialer's window, until Ctrl+C ends both programs
#include <windows.h>
// ddeml.h needs the types of windows.h.
#include <ddeml.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr ULONGLONG kPatience = 15000;  // milliseconds: more than a busy computer needs for a start or an answer

struct Closer {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};

/// The DDE server and the dialer that it has started, on one thread. The link is served in Hear alone; a main program
/// with a window of its own has its message loop for that.
class MainProgram {
 public:
  MainProgram() {
    Current() = this;
    const UINT fault = DdeInitializeA(&dde_, &MainProgram::Callback, APPCLASS_STANDARD, 0);
    if (fault != DMLERR_NO_ERROR) throw std::runtime_error("the DDE library does not start");
    service_ = DdeCreateStringHandleA(dde_, "Rufmon Fonklav", CP_WINANSI);
    topic_ = DdeCreateStringHandleA(dde_, "RufmonFonklav", CP_WINANSI);
    item_ = DdeCreateStringHandleA(dde_, "txtDDE", CP_WINANSI);
    DdeNameService(dde_, service_, nullptr, DNS_REGISTER);
  }
  /// Ends the conversation, which is the dialer's end as well.
  ~MainProgram() {
    DdeDisconnect(conversation_);
    DdeUninitialize(dde_);
    WaitForSingleObject(dialer_.get(), kPatience);
  }

  /// Only now, with the name registered: the dialer looks for its server once.
  void Start(const std::string& dialer) {
    std::string line = '"' + dialer + "\" /run";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
      throw std::runtime_error("cannot start " + line);
    }
    CloseHandle(process.hThread);
    dialer_.reset(process.hProcess);
    dialerId_ = process.dwProcessId;
  }

  /// Gives a command; whether the dialer has recognised it.
  bool Tell(const std::string& command) {
    std::printf("> %s\n", command.c_str());
    AllowSetForegroundWindow(dialerId_);  // or a window that the command shows has no keyboard
    Publish(command);
    const bool recognised = !Hear({"cmd|quitt"}, kPatience).empty();
    Publish("");  // or the same command, given again, would be no change
    return recognised;
  }

  /// The next report that begins with one of these; empty when none has come in time, or the dialer has gone.
  std::string Hear(std::initializer_list<const char*> beginnings, ULONGLONG milliseconds) {
    for (const ULONGLONG begin = GetTickCount64(); GetTickCount64() - begin < milliseconds;) {
      while (heard_ < reports_.size()) {
        const std::string& report = reports_[heard_++];
        if (std::ranges::any_of(beginnings, [&](const char* text) { return report.starts_with(text); })) return report;
      }
      const HANDLE dialer = dialer_.get();
      if (MsgWaitForMultipleObjects(1, &dialer, FALSE, 50, QS_ALLINPUT) == WAIT_OBJECT_0) break;
      for (MSG message{}; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != FALSE;) DispatchMessageA(&message);
    }
    return {};
  }

 private:
  /// The library hands its callback nothing of ours, but calls it on the thread that has initialised the library.
  static MainProgram*& Current() {
    thread_local MainProgram* current = nullptr;
    return current;
  }

  void Publish(const std::string& value) {
    value_ = value;
    DdePostAdvise(dde_, topic_, item_);  // the library comes back for it with XTYP_ADVREQ
  }

  static HDDEDATA CALLBACK Callback(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second, HDDEDATA data,
                                    ULONG_PTR, ULONG_PTR) {
    MainProgram& self = *Current();
    const auto is = [](HSZ name, HSZ wanted) { return DdeCmpStringHandles(name, wanted) == 0; };
    const auto result = [](unsigned value) { return reinterpret_cast<HDDEDATA>(static_cast<ULONG_PTR>(value)); };
    if (type == XTYP_CONNECT) return result(is(first, self.topic_) && is(second, self.service_));
    if (type == XTYP_CONNECT_CONFIRM) self.conversation_ = conversation;
    if (type == XTYP_DISCONNECT) self.conversation_ = nullptr;
    if (type == XTYP_ADVSTART) return result(is(second, self.item_) && format == CF_TEXT);
    if (type == XTYP_ADVREQ) {
      auto* bytes = reinterpret_cast<BYTE*>(self.value_.data());
      return DdeCreateDataHandle(self.dde_, bytes, static_cast<DWORD>(self.value_.size() + 1), 0, second, CF_TEXT, 0);
    }
    if (type != XTYP_EXECUTE) return nullptr;
    self.Take(data);
    return result(DDE_FACK);
  }

  /// Keeps a report for Hear: the library is not asked for anything new while it delivers one.
  void Take(HDDEDATA data) {
    std::string bytes(DdeGetData(data, nullptr, 0, 0), '\0');
    DdeGetData(data, reinterpret_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()), 0);
    std::puts(reports_.emplace_back(bytes.c_str()).c_str());
  }

  DWORD dde_{}, dialerId_{};
  HSZ service_{}, topic_{}, item_{};
  HCONV conversation_{};
  std::unique_ptr<void, Closer> dialer_;
  std::string value_;
  std::vector<std::string> reports_;
  std::size_t heard_{};
};

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 3) throw std::runtime_error("usage: main-program DIALER NUMBER [SECONDS] | DIALER settings");
  SetConsoleOutputCP(GetACP());  // reports are bytes of the system's code page
  const std::string number = argv[2];
  const bool settings = number == "settings";
  MainProgram program;
  program.Start(argv[1]);
  if (program.Hear({"line|"}, kPatience).empty()) throw std::runtime_error("the dialer is silent");
  if (!program.Tell(settings ? number : "cmd|call|" + number)) return 1;
  if (settings) return program.Hear({}, INFINITE).empty() ? 0 : 1;  // ends with the dialer
  const std::initializer_list<const char*> over{"btnCall|1|Idle", "btnCall|0|Idle", "anz|"};
  std::string end = program.Hear(over, 1000ULL * std::stoul(argc > 3 ? argv[3] : "60"));
  if (end.empty() && program.Tell("cmd|hangup")) end = program.Hear(over, kPatience);
  program.Hear({"cmd|autohide"}, 1000);  // the last word on a call; on one that has failed there is no more
  return end.starts_with("btnCall|") ? 0 : 1;
} catch (const std::exception& fault) {
  std::fprintf(stderr, "main-program: %s\n", fault.what());
  return 2;
}
