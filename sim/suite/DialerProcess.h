#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace fonklav::suite {

/// The dialer as the main program starts it. It is watched, never ended: it has to end by itself.
class DialerProcess {
 public:
  DialerProcess() = default;
  DialerProcess(const DialerProcess&) = delete;
  DialerProcess& operator=(const DialerProcess&) = delete;
  ~DialerProcess();

  /// Starts `program` with `arguments` exactly as they stand, blanks and all. Throws std::runtime_error on failure.
  void Start(const std::string& program, const std::string& arguments);
  /// What to wait for; null before Start and after the end was noticed.
  [[nodiscard]] HANDLE Handle() const { return handle_; }
  /// Of the process that was started last.
  [[nodiscard]] DWORD Id() const { return id_; }
  /// The exit code, once, when the process has ended since the last call.
  std::optional<DWORD> TakeExit();

 private:
  HANDLE handle_{};
  DWORD id_{};
};

}  // namespace fonklav::suite
