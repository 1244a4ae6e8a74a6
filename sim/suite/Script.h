#pragma once

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "sim/suite/DialerProcess.h"
#include "sim/suite/HeldFile.h"
#include "sim/suite/Server.h"

namespace fonklav::suite {

/// Runs the main program's part of a conversation, one command a line, and prints what is said on either side.
class Script {
 public:
  /// How the main program talks to its tools: through the system's DDE library, or by the DDE messages themselves.
  enum class Speech { Library, Messages };

  /// `dialer` is the program that the command start starts.
  Script(std::string dialer, Speech speech);

  /// Runs one line. False when it was "exit".
  bool Run(const std::string& line);
  /// Serves the link and watches the dialer for a moment.
  void Pump();
  /// Whether every wait so far was met and every command understood.
  [[nodiscard]] bool Ok() const { return ok_; }

 private:
  struct WindowCloser {
    void operator()(HWND window) const noexcept { DestroyWindow(window); }
  };
  using UniqueCover = std::unique_ptr<std::remove_pointer_t<HWND>, WindowCloser>;

  /// A command gets the rest of its line.
  using Command = void (Script::*)(const std::string& rest);
  struct Entry {
    std::string_view name;
    Command command;
  };
  static const std::vector<Entry>& Commands();

  void Start(const std::string& arguments);
  void Send(const std::string& value);
  void Set(const std::string& value);
  void Wait(const std::string& millisecondsAndPrefix);
  void Ping(const std::string& millisecondsAndPrefix);
  void Sleep(const std::string& milliseconds);
  void Hang(const std::string& milliseconds);
  void ExpectExit(const std::string& milliseconds);
  void Answer(const std::string& how);
  void RefuseAdvise(const std::string&);
  void Terminate(const std::string&);
  void Windows(const std::string&);
  void Places(const std::string&);
  void Readings(const std::string&);
  void Offline(const std::string&);
  void Misbehave(const std::string& howAndDetail);
  void Hold(const std::string& path);
  void Release(const std::string&);
  void Append(const std::string& pathAndText);
  void Knock(const std::string& path);
  void Lock(const std::string& path);
  void Cover(const std::string&);
  void Tell(const std::string& messageAndParameter);

  /// Pumps until a report begins so or the time is over, and does something else with every look at the reports.
  void WaitFor(const std::string& millisecondsAndPrefix, const std::function<void()>& meanwhile);
  void OnReport(const std::string& bytes);
  /// Pumps until `met` or the time is over; says whether it was met.
  bool PumpUntil(std::chrono::milliseconds limit, const std::function<bool()>& met);
  void Fail(const std::string& why);
  /// One line of output, at once: milliseconds since the start, who speaks, the text with its control
  /// characters and backslashes written as \xNN.
  void Print(std::string_view who, std::string_view text) const;

  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  std::string dialerPath_;
  DialerProcess dialer_;
  bool dialerEnded_{false};
  std::vector<std::string> reports_;
  std::size_t waitedFor_{0};  ///< reports before this one have been waited for already
  bool clearWhenAcknowledged_{false};
  bool clearNow_{false};
  bool ok_{true};
  std::vector<HeldFile> held_;  ///< files and locks that nobody else can have
  UniqueCover cover_;           ///< a window over the whole screen
  std::unique_ptr<Server> server_;
};

}  // namespace fonklav::suite
