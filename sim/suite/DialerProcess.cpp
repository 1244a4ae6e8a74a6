#include "sim/suite/DialerProcess.h"

#include <stdexcept>
#include <utility>

namespace fonklav::suite {

DialerProcess::~DialerProcess() {
  if (handle_ != nullptr) CloseHandle(handle_);
}

void DialerProcess::Start(const std::string& program, const std::string& arguments) {
  std::string commandLine = '"' + program + '"' + (arguments.empty() ? "" : " ") + arguments;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process) ==
      FALSE) {
    throw std::runtime_error("cannot start " + commandLine + ", error " + std::to_string(GetLastError()));
  }
  CloseHandle(process.hThread);
  if (handle_ != nullptr) CloseHandle(handle_);
  handle_ = process.hProcess;
  id_ = process.dwProcessId;
}

std::optional<DWORD> DialerProcess::TakeExit() {
  if (handle_ == nullptr || WaitForSingleObject(handle_, 0) != WAIT_OBJECT_0) return std::nullopt;
  DWORD code = 0;
  GetExitCodeProcess(handle_, &code);
  CloseHandle(std::exchange(handle_, nullptr));
  return code;
}

}  // namespace fonklav::suite
