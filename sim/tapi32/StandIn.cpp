#include <windows.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <utility>

#include "sim/LineSimulator.h"

// The published functions that a dialer calls, one to one onto the simulator. What a caller hands over to be written is
// taken to be there.

namespace fonklav {
namespace {

constexpr UINT kTickMs = 10;

using LineCallback = void(CALLBACK*)(DWORD, DWORD, DWORD_PTR, DWORD_PTR, DWORD_PTR, DWORD_PTR);

std::string Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// Windows below `parent`, the message-only ones where that is HWND_MESSAGE, that are this process's own.
std::size_t CountWindows(HWND parent) {
  std::size_t count = 0;
  for (HWND window = FindWindowExW(parent, nullptr, nullptr, nullptr); window != nullptr;
       window = FindWindowExW(parent, window, nullptr, nullptr)) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) count += 1 + CountWindows(window);
  }
  return count;
}

std::size_t CountAtoms() {
  std::size_t count = 0;
  std::array<wchar_t, 256> name{};
  for (unsigned atom = MAXINTATOM; atom <= 0xFFFF; ++atom) {
    if (GlobalGetAtomNameW(static_cast<ATOM>(atom), name.data(), static_cast<int>(name.size())) != 0) ++count;
  }
  return count;
}

/// What the process holds at this moment, as `holdings blocks=77 bytes=14408 windows=24 atoms=12`: busy blocks of all
/// its heaps and their bytes, its windows of every kind with their children, and the global atoms of the whole session.
std::string Holdings() {
  std::size_t blocks = 0;
  std::size_t bytes = 0;
  std::array<HANDLE, 64> heaps{};
  GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  for (const HANDLE heap : heaps) {
    if (heap == nullptr || HeapLock(heap) == FALSE) continue;
    // Nothing is allocated in here, or the count would count itself.
    for (PROCESS_HEAP_ENTRY entry{}; HeapWalk(heap, &entry) != FALSE;) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
      ++blocks;
      bytes += entry.cbData;
    }
    HeapUnlock(heap);
  }
  const std::size_t windows = CountWindows(nullptr) + CountWindows(HWND_MESSAGE);
  return "holdings blocks=" + std::to_string(blocks) + " bytes=" + std::to_string(bytes) +
         " windows=" + std::to_string(windows) + " atoms=" + std::to_string(CountAtoms());
}

/// The simulated telephony as a process sees it: the simulator on the system's clock, a timer that delivers on the
/// thread that uses telephony, and the log. Environment variables name the files; each may be missing.
class StandIn final : public LineSimulator, public LineMessageSink {
 public:
  /// The one of this process, made at its first use: the published functions have nothing else that could lead to it.
  static StandIn& Instance() {
    static StandIn standIn;
    return standIn;
  }

  LineCallback callback{nullptr};  ///< the one given last, for all registrations of the program

 private:
  StandIn() : LineSimulator({}) {
    const std::string logPath = Environment("FONKLAV_SIM_LOG");
    if (!logPath.empty()) log_.open(logPath, std::ios::app | std::ios::binary);
    SetLog([this](std::string_view line) { Log(line); });
    const bool counts = !Environment("FONKLAV_SIM_HOLDINGS").empty();
    inside = [this, counts](std::string_view function) {
      if (counts && function == "lineInitializeEx") Log(Holdings());
      ForgetCalls();  // the log has them, and what is held is to be the same however many there are in a tick
      MoveClock(Elapsed());
      if (timer_ == 0) timer_ = SetTimer(nullptr, 0, kTickMs, &OnTimer);
    };
    const std::string path = Environment("FONKLAV_SIM_SCENARIO");
    try {
      if (!path.empty()) Rules() = Scenario::Load(path);
    } catch (const ScenarioError& error) {
      // A telephony that cannot be initialised, and the log says why.
      Log("error in scenario: " + std::string(error.what()));
      Rules().Apply("refuse lineInitializeEx 0x80000048");
    }
  }

  [[nodiscard]] Milliseconds Elapsed() const { return Milliseconds(GetTickCount64() - begin_); }

  /// One message a tick, so that the program's other messages come between them as they do with the real library.
  static void CALLBACK OnTimer(HWND /*window*/, UINT /*message*/, UINT_PTR /*timer*/, DWORD /*time*/) {
    StandIn& standIn = Instance();
    // Before the program's next call nothing can come, and a program that sleeps is to be left asleep.
    const bool idle = standIn.WaitingMessages() == 0 || standIn.Registrations() == 0;
    if (idle) KillTimer(nullptr, std::exchange(standIn.timer_, 0));
    standIn.DeliverOne(standIn.Elapsed());
  }

  void Log(std::string_view line) {
    if (log_.is_open()) log_ << line << '\n' << std::flush;
  }

  void LineCallBackProc(std::uint32_t hDevice, std::uint32_t message, std::uintptr_t instance, std::uintptr_t p1,
                        std::uintptr_t p2, std::uintptr_t p3) noexcept override {
    callback(hDevice, message, instance, p1, p2, p3);
  }

  ULONGLONG begin_ = GetTickCount64();
  std::ofstream log_;
  UINT_PTR timer_{0};
};

/// The bytes that a caller's variably sized structure says it has.
std::span<std::byte> Bytes(void* structure) {
  return {static_cast<std::byte*>(structure), *static_cast<const DWORD*>(structure)};
}

}  // namespace

extern "C" {

[[gnu::dllexport]] LONG WINAPI lineInitializeExA(HLINEAPP& app, HINSTANCE /*instance*/, LineCallback callback,
                                                 LPCSTR name, std::uint32_t& devices, std::uint32_t& version,
                                                 LINEINITIALIZEEXPARAMS& params) {
  StandIn& standIn = StandIn::Instance();
  standIn.callback = callback;
  return standIn.lineInitializeEx(app, standIn, name, devices, version, params);
}

[[gnu::dllexport]] LONG WINAPI lineShutdown(HLINEAPP app) { return StandIn::Instance().lineShutdown(app); }

[[gnu::dllexport]] LONG WINAPI lineNegotiateAPIVersion(HLINEAPP app, DWORD device, DWORD low, DWORD high,
                                                       std::uint32_t& version, LINEEXTENSIONID& extension) {
  return StandIn::Instance().lineNegotiateAPIVersion(app, device, low, high, version, extension);
}

[[gnu::dllexport]] LONG WINAPI lineGetDevCapsA(HLINEAPP app, DWORD device, DWORD version, DWORD extVersion,
                                               void* caps) {
  return StandIn::Instance().lineGetDevCaps(app, device, version, extVersion, Bytes(caps));
}

[[gnu::dllexport]] LONG WINAPI lineGetTranslateCapsA(HLINEAPP app, DWORD version, void* caps) {
  return StandIn::Instance().lineGetTranslateCaps(app, version, Bytes(caps));
}

[[gnu::dllexport]] LONG WINAPI tapiGetLocationInfoA(LPSTR country, LPSTR city) {
  return StandIn::Instance().tapiGetLocationInfo(std::span<char, 8>(country, 8), std::span<char, 8>(city, 8));
}

[[gnu::dllexport]] LONG WINAPI lineOpenA(HLINEAPP app, DWORD device, HLINE& line, DWORD version, DWORD extVersion,
                                         DWORD_PTR instance, DWORD privileges, DWORD mediaModes,
                                         const void* /*params*/) {
  return StandIn::Instance().lineOpen(app, device, line, version, extVersion, instance, privileges, mediaModes);
}

[[gnu::dllexport]] LONG WINAPI lineClose(HLINE line) { return StandIn::Instance().lineClose(line); }

[[gnu::dllexport]] LONG WINAPI lineMakeCallA(HLINE line, HCALL& call, LPCSTR address, DWORD country,
                                             const void* /*params*/) {
  return StandIn::Instance().lineMakeCall(line, call, address, country);
}

[[gnu::dllexport]] LONG WINAPI lineDrop(HCALL call, LPCSTR /*userInfo*/, DWORD /*size*/) {
  return StandIn::Instance().lineDrop(call);
}

[[gnu::dllexport]] LONG WINAPI lineDeallocateCall(HCALL call) { return StandIn::Instance().lineDeallocateCall(call); }

[[gnu::dllexport]] LONG WINAPI lineTranslateAddressA(HLINEAPP app, DWORD device, DWORD version, LPCSTR address,
                                                     DWORD card, DWORD options, void* output) {
  return StandIn::Instance().lineTranslateAddress(app, device, version, address, card, options, Bytes(output));
}

[[gnu::dllexport]] LONG WINAPI lineConfigDialogA(DWORD device, DWORD_PTR owner, LPCSTR deviceClass) {
  return StandIn::Instance().lineConfigDialog(device, owner, deviceClass);
}

[[gnu::dllexport]] LONG WINAPI lineTranslateDialogA(HLINEAPP app, DWORD device, DWORD version, DWORD_PTR owner,
                                                    LPCSTR address) {
  return StandIn::Instance().lineTranslateDialog(app, device, version, owner, address);
}

/// The icon is a copy of the system's picture: who asked for one may destroy what it got.
[[gnu::dllexport]] LONG WINAPI lineGetIconA(DWORD device, LPCSTR deviceClass, std::uintptr_t& icon) {
  const LONG result = StandIn::Instance().lineGetIcon(device, deviceClass, icon);
  if (result == 0 && icon != 0) icon = reinterpret_cast<std::uintptr_t>(CopyIcon(LoadIconW(nullptr, IDI_APPLICATION)));
  return result;
}

}  // extern "C"

}  // namespace fonklav
