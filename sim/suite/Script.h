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

std::chrono::milliseconds Milliseconds(const std::string& text);

/// The text with control characters and backslashes written as \xNN, so that it stays one line whatever a program says.
std::string OneLine(std::string_view text);

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
  using Command = std::function<void(Script&, const std::string& rest)>;
  struct Entry {
    std::string_view name;
    Command command;
  };
  static const std::vector<Entry>& Commands();
  static const std::vector<Entry>& CheckCommands();

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

  void Expect(const std::string& report);
  void Settle();
  void Started(const std::string& possible);
  void WaitForEvent(const std::string& prefix);
  void Found(const std::string& fileAndPattern);
  void GivenBack(const std::string& log);
  void Has(const std::string& controlAndPattern);
  void Click(const std::string& place);
  void Keys(const std::string& names);
  void Dials(const std::string& count);

  /// Pumps until a report begins so or the time is over, and does something else with every look at the reports.
  void WaitFor(const std::string& millisecondsAndPrefix, const std::function<void()>& meanwhile);
  /// Pumps until `met`, for as long as a person would wait.
  void Until(const std::string& what, const std::function<bool()>& met);
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
  std::size_t waitedFor_{0};         ///< reports before this one have been waited for already
  std::size_t compared_{0};          ///< reports before this one were as expected
  std::vector<std::string> events_;  ///< what has happened on the link
  std::ptrdiff_t heardOf_{0};        ///< events before this one have been waited for already
  std::chrono::milliseconds longestPing_{};
  std::string box_;       ///< the text of a message box that is answered wherever it appears
  bool answered_{false};  ///< it was
  bool clearWhenAcknowledged_{false};
  bool clearNow_{false};
  bool ok_{true};
  std::vector<HeldFile> held_;  ///< files and locks that nobody else can have
  UniqueCover cover_;           ///< a window over the whole screen
  std::unique_ptr<Server> server_;
};

}  // namespace fonklav::suite
