#include "sim/tapi32/StandIn.h"

#include "sim/ScenarioLine.h"
#include "sim/tapi32/Holdings.h"

namespace fonklav {

namespace {

constexpr UINT_PTR kTick = 1;
constexpr UINT kTickMs = 10;
constexpr unsigned kTicksPerControl = 5;  // opening a file is dear, and nobody says two things within 50 ms
constexpr const wchar_t* kWindowClass = L"FonklavLineSimulator";

std::string Environment(const char* name) {
  std::string value(MAX_PATH, '\0');
  const DWORD needed = GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size()));
  if (needed > value.size()) {
    value.resize(needed);
    GetEnvironmentVariableA(name, value.data(), needed);
  }
  value.resize(needed);
  return value.c_str();
}

class CallbackSink final : public LineMessageSink {
 public:
  explicit CallbackSink(LineCallback callback) : callback_(callback) {}

  void LineCallBackProc(std::uint32_t hDevice, std::uint32_t dwMsg, std::uintptr_t dwCallbackInstance,
                        std::uintptr_t dwParam1, std::uintptr_t dwParam2, std::uintptr_t dwParam3) noexcept override {
    callback_(hDevice, dwMsg, dwCallbackInstance, dwParam1, dwParam2, dwParam3);
  }

 private:
  LineCallback callback_;
};

}  // namespace

StandIn& StandIn::Instance() {
  // The published functions carry no context, so the process has one stand-in, made at its first use.
  static StandIn standIn;
  return standIn;
}

StandIn::StandIn() : LineSimulator({}), controlPath_(Environment("FONKLAV_SIM_CONTROL")) {
  const std::string logPath = Environment("FONKLAV_SIM_LOG");
  if (!logPath.empty()) log_.open(logPath, std::ios::app | std::ios::binary);
  SetLog([this](std::string_view line) { Log(line); });
  LoadScenario();
}

/// A scenario that cannot be read makes a telephony that cannot be initialised, and the log says why.
void StandIn::LoadScenario() {
  const std::string path = Environment("FONKLAV_SIM_SCENARIO");
  try {
    if (!path.empty()) Rules() = Scenario::Load(path);
  } catch (const ScenarioError& error) {
    Log("error in scenario: " + std::string(error.what()));
    Rules().Apply("refuse lineInitializeEx 0x80000048");
  }
}

StandIn::Window StandIn::MakeWindow() {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = &WindowProc;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.lpszClassName = kWindowClass;
  RegisterClassW(&windowClass);  // a second registration fails, and the first still holds
  Window window(
      CreateWindowExW(0, kWindowClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, windowClass.hInstance, nullptr));
  if (!window) return window;
  SetWindowLongPtrW(window.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetTimer(window.get(), kTick, kTickMs, nullptr);
  return window;
}

void StandIn::OnEntry(std::string_view /*function*/) {
  MoveClock(Elapsed());
  if (window_ && controlPath_.empty()) SetTimer(window_.get(), kTick, kTickMs, nullptr);
}

LONG StandIn::Initialize(HLINEAPP& app, LineCallback callback, const char* name, std::uint32_t& devices,
                         std::uint32_t& version, LINEINITIALIZEEXPARAMS& params) {
  auto sink = std::make_unique<CallbackSink>(callback);
  const LONG result = lineInitializeEx(app, *sink, name, devices, version, params);
  if (result != 0) return result;
  sinks_[app] = std::move(sink);
  if (!window_) window_ = MakeWindow();
  return 0;
}

LONG StandIn::Shutdown(HLINEAPP app) {
  const LONG result = lineShutdown(app);
  if (result == 0) sinks_.erase(app);
  if (sinks_.empty()) window_.reset();
  return result;
}

LRESULT CALLBACK StandIn::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  auto* const standIn = reinterpret_cast<StandIn*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (standIn == nullptr || message != WM_TIMER) return DefWindowProcW(window, message, wParam, lParam);
  standIn->OnTimer();
  return 0;
}

/// One message a tick, so that the program's other messages come between them as they do with the real library. The
/// receiver may shut down, and the window goes with it: delivering comes last.
void StandIn::OnTimer() {
  if (!controlPath_.empty() && ++ticks_ % kTicksPerControl == 0) ReadControl();
  ForgetCalls();  // the log has them
  // Before the program's next call nothing can come, and a program that sleeps is to be left asleep.
  if (controlPath_.empty() && WaitingMessages() == 0) KillTimer(window_.get(), kTick);
  DeliverOne(Elapsed());
}

/// Runs the lines that have come since the last look; a line counts when its end is written.
void StandIn::ReadControl() {
  std::ifstream file(controlPath_, std::ios::binary);
  if (!file.seekg(controlRead_)) return;
  for (std::string line; std::getline(file, line) && !file.eof(); controlRead_ = file.tellg()) {
    Log("control " + line);
    try {
      MoveClock(Elapsed());
      if (line == "holdings") {
        Log(Holdings());
      } else {
        Command(line);
      }
    } catch (const ScenarioError& error) {
      Log("error in control: " + std::string(error.what()));
    }
  }
}

void StandIn::Log(std::string_view line) {
  if (log_.is_open()) log_ << line << '\n' << std::flush;
}

}  // namespace fonklav
