#pragma once

#include <windows.h>

#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "sim/LineSimulator.h"

namespace fonklav {

/// The published line callback as a function pointer.
using LineCallback = void(CALLBACK*)(DWORD hDevice, DWORD message, DWORD_PTR instance, DWORD_PTR p1, DWORD_PTR p2,
                                     DWORD_PTR p3);

/// The simulated telephony as a process sees it through the stand-in library: the simulator on the system's clock, a
/// hidden window that delivers on the thread that initialised telephony, the log and the control file. Environment
/// variables name the files: FONKLAV_SIM_SCENARIO, FONKLAV_SIM_LOG, FONKLAV_SIM_CONTROL; each may be missing.
class StandIn final : public LineSimulator {
 public:
  /// The one of this process; the exported functions have nothing else that could lead them to it.
  static StandIn& Instance();

  LONG Initialize(HLINEAPP& app, LineCallback callback, const char* name, std::uint32_t& devices,
                  std::uint32_t& version, LINEINITIALIZEEXPARAMS& params);
  LONG Shutdown(HLINEAPP app);

 protected:
  void OnEntry(std::string_view function) override;

 private:
  struct WindowCloser {
    void operator()(HWND window) const { DestroyWindow(window); }
  };
  using Window = std::unique_ptr<std::remove_pointer_t<HWND>, WindowCloser>;

  StandIn();

  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  Window MakeWindow();

  [[nodiscard]] Milliseconds Elapsed() const { return Milliseconds(GetTickCount64() - begin_); }
  void LoadScenario();
  void OnTimer();
  void ReadControl();
  void Log(std::string_view line);

  ULONGLONG begin_ = GetTickCount64();
  std::string controlPath_;
  std::streamoff controlRead_{0};
  unsigned ticks_{0};
  std::ofstream log_;
  std::map<HLINEAPP, std::unique_ptr<LineMessageSink>> sinks_;
  Window window_;
};

}  // namespace fonklav
