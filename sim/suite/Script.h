#pragma once

#include <windows.h>

#include <chrono>
#include <deque>
#include <vector>

#include "platform/win32/Win32FileSystem.h"
#include "sim/suite/Server.h"

namespace fonklav::suite {

/// The text with control characters and backslashes written as \xNN, so that it stays one line whatever a program says.
std::string OneLine(std::string_view text);

/// Runs the main program's part of a conversation, one command a line, and prints what is said on either side.
class Script {
 public:
  /// `dialer` is the program that the command start starts.
  explicit Script(std::string dialer);

  /// Runs one line. False when it was "exit".
  bool Run(const std::string& line);
  /// Serves the link and watches the dialer for a moment.
  void Pump();
  /// Whether everything so far that was waited for has happened, and every command was understood.
  [[nodiscard]] bool Ok() const { return ok_; }

 private:
  using Clock = std::chrono::steady_clock;

  void AddStoryCommands();
  void Sleep(long milliseconds);
  /// Pumps until `met`, for as long as a person would wait.
  void Until(const std::string& what, const std::function<bool()>& met);
  /// Whether something that begins so has come since the last one that was waited for.
  bool Heard(const std::string& prefix);
  void OnReport(const std::string& bytes);
  void OnEvent(std::string_view what);
  void Fail(const std::string& why);
  /// Prints each window that the dialer shows, as `told`, and an end.
  void Show(const std::function<std::string(HWND)>& told) const;
  /// One line of output, at once: milliseconds since the start, who speaks, the text as one line.
  void Print(std::string_view who, std::string_view text) const;

  Clock::time_point begin_ = Clock::now();
  std::map<std::string, std::function<void(const std::string& rest)>> commands_;  ///< by name; with the rest of a line
  std::string dialerPath_;
  UniqueKernelHandle dialer_;  ///< the one that was started last, until its end was noticed
  DWORD dialerId_{};
  std::vector<std::string> heard_;   ///< the reports, and what else has happened
  std::size_t waitedFor_{0};         ///< what was heard before this one has been waited for already
  std::deque<std::string> reports_;  ///< those that nothing was compared with yet
  std::string box_;                  ///< the text of a message box that is answered wherever it appears
  bool answered_{false};             ///< it was
  bool clearWhenAcknowledged_{false};
  bool ok_{true};
  std::vector<UniqueFile> held_;  ///< files that nobody else can open
  Win32FileSystem files_;         ///< as another dialer's
  std::unique_ptr<FileLock> lock_;
  UniqueWindow cover_;  ///< over the whole screen
  std::map<std::string, DWORD> handles_;
  Server server_;
};

}  // namespace fonklav::suite
