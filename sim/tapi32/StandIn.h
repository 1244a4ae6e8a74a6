#pragma once

#include <windows.h>

#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "sim/LineSimulator.h"

namespace fonklav {

/// The published line callback as a function pointer.
using LineCallback = void(CALLBACK*)(DWORD hDevice, DWORD message, DWORD_PTR instance, DWORD_PTR p1, DWORD_PTR p2,
                                     DWORD_PTR p3);

/// The simulated telephony as a process sees it through the stand-in library: the simulator on the real clock, a hidden
/// window that delivers on the thread that initialised telephony, the log and the control file. Three environment
/// variables name its files: FONKLAV_SIM_SCENARIO, FONKLAV_SIM_LOG, FONKLAV_SIM_CONTROL; each may be missing.
class StandIn {
 public:
  StandIn();
  StandIn(const StandIn&) = delete;
  StandIn& operator=(const StandIn&) = delete;

  /// The one of this process; the exported functions have nothing else that could lead them to it.
  static StandIn& Instance();

  [[nodiscard]] LineSimulator& Simulator() { return *simulator_; }

  LONG Initialize(HLINEAPP& app, LineCallback callback, const char* name, std::uint32_t& devices,
                  std::uint32_t& version, LINEINITIALIZEEXPARAMS& params);
  LONG Shutdown(HLINEAPP app);

 private:
  struct WindowCloser {
    void operator()(HWND window) const { DestroyWindow(window); }
  };
  using Window = std::unique_ptr<std::remove_pointer_t<HWND>, WindowCloser>;

  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  static Window MakeWindow();

  void LoadScenario();
  void OnTimer(HWND window);
  void OnDeliver(HWND window);
  void PostIfDue(HWND window);
  void ReadControl();
  void RunControl(const std::string& line);
  void Log(std::string_view line);

  std::string controlPath_;
  std::streamoff controlRead_{0};
  unsigned ticks_{0};
  std::ofstream log_;
  std::map<HLINEAPP, std::unique_ptr<LineMessageSink>> sinks_;
  std::unique_ptr<LineSimulator> simulator_;
  Window window_;
};

}  // namespace fonklav
