#include <windows.h>

#include <ddeml.h>

#include <array>
#include <cstdio>
#include <span>
#include <thread>
#include <vector>

#include "platform/win32/Win32System.h"
#include "platform/win32/Win32Telephony.h"
#include "sim/suite/Server.h"
#include "util/RunTimeError.h"

// The facts of the machine, and what its own telephony says, by the product's adapter. Opens no line, dials nothing.
namespace fonklav {
namespace {

/// The room that the dialer has for the answer to lineGetTranslateCaps.
constexpr std::uint32_t kTranslateRoom = 6189;

struct Nobody final : LineMessageSink {
  void LineCallBackProc(std::uint32_t, std::uint32_t, std::uintptr_t, std::uintptr_t, std::uintptr_t,
                        std::uintptr_t) noexcept override {}
};

/// A window of this process that is seen is a dialog of telephony. It is closed, as there may be nobody to do so.
BOOL CALLBACK CloseDialog(HWND window, LPARAM) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId() || IsWindowVisible(window) == FALSE) return TRUE;
  std::puts("telephony opens a dialog");
  PostMessageW(window, WM_CLOSE, 0, 0);
  return TRUE;
}

/// Does something with telephony and tells what came of it: also whether messages were dispatched meanwhile.
template <typename Work>
bool Try(const char* what, Work work) {
  const UniqueWindow window{CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)};
  PostMessageW(window.Get(), WM_APP, 0, 0);
  const auto begin = GetTickCount64();
  const std::int32_t result = work();
  const auto took = GetTickCount64() - begin;
  MSG message;
  const bool waits = PeekMessageW(&message, window.Get(), WM_APP, WM_APP, PM_REMOVE) != FALSE;
  std::printf("%s: result %d after %llu ms%s\n", what, static_cast<int>(result), took,
              waits ? "" : ", messages were dispatched");
  return result == 0;
}

void TellOfDevice(Win32Telephony& telephony, HLINEAPP app, std::uint32_t device, std::uint32_t highest) {
  std::uint32_t version = 0;
  LINEEXTENSIONID extension{};
  telephony.lineNegotiateAPIVersion(app, device, TAPI_VERSION1_3, highest, version, extension);
  std::vector<LINEDEVCAPS> room(64);  // the strings stand behind the first
  const std::span bytes = std::as_writable_bytes(std::span(room));
  LINEDEVCAPS& caps = room.front();
  caps.dwTotalSize = static_cast<std::uint32_t>(bytes.size());
  const int result = telephony.lineGetDevCaps(app, device, version, 0, bytes);
  const char* const name = reinterpret_cast<const char*>(bytes.data()) + caps.dwLineNameOffset;
  std::printf("device %u: version 0x%X, capabilities %d, %u bytes, media 0x%X, %.200s\n", device, version, result,
              caps.dwNeededSize, caps.dwMediaModes, caps.dwLineNameOffset < bytes.size() - 200 ? name : "");
}

void Probe(std::uint32_t highest) {
  std::printf("asked for version 0x%X\n", highest);
  Win32Telephony telephony(GetModuleHandleW(nullptr));
  Nobody nobody;
  HLINEAPP app = 0;
  std::uint32_t devices = 0;
  std::uint32_t version = highest;
  LINEINITIALIZEEXPARAMS params{sizeof params, 0, 0, LINEINITIALIZEEXOPTION_USEHIDDENWINDOW, 0, 0};
  std::array<char, 8> country{};
  std::array<char, 8> city{};
  std::vector<LINETRANSLATECAPS> caps(kTranslateRoom / sizeof(LINETRANSLATECAPS) + 1);
  const auto room = std::as_writable_bytes(std::span(caps)).first(kTranslateRoom);
  caps.front().dwTotalSize = kTranslateRoom;
  Try("tapiGetLocationInfo", [&] { return telephony.tapiGetLocationInfo(country, city); });
  std::printf("country %.8s, area code %.8s\n", country.data(), city.data());
  if (!Try("lineInitializeEx",
           [&] { return telephony.lineInitializeEx(app, nobody, "check", devices, version, params); })) {
    return;
  }
  std::printf("%u devices, version 0x%X\n", devices, version);
  for (std::uint32_t device = 0; device < devices; ++device) TellOfDevice(telephony, app, device, highest);
  Try("lineGetTranslateCaps", [&] { return telephony.lineGetTranslateCaps(app, TAPI_VERSION1_4, room); });
  std::printf("needs %u bytes of %u\n", caps.front().dwNeededSize, kTranslateRoom);
  Try("lineShutdown", [&] { return telephony.lineShutdown(app); });
}

BOOL CALLBACK TellOfMonitor(HMONITOR, HDC, LPRECT area, LPARAM) {
  std::printf("monitor of %ld x %ld pixels\n", area->right - area->left, area->bottom - area->top);
  return TRUE;
}

void TellOfMachine() {
  const OsVersion version = Win32Process().SystemVersion();
  const bool wine = SystemFunction<void (*)()>(L"ntdll.dll", "wine_get_version") != nullptr;
  BOOL narrow = FALSE;
  IsWow64Process(GetCurrentProcess(), &narrow);
  HANDLE token = nullptr;
  OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
  const UniqueKernelHandle owned{token};
  TOKEN_ELEVATION elevation{};
  DWORD size = 0;
  GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size);
  const HDC screen = GetDC(nullptr);
  std::printf("%s, build %u%s\nprograms of %u bits%s, %s\nDPI %d, code page %u\n", OsDescription(version).c_str(),
              version.build, wine ? ", which is Wine" : "", static_cast<unsigned>(sizeof(void*) * 8),
              narrow != FALSE ? " on a system of 64" : "", elevation.TokenIsElevated != 0 ? "elevated" : "not elevated",
              GetDeviceCaps(screen, LOGPIXELSX), GetACP());
  ReleaseDC(nullptr, screen);
  EnumDisplayMonitors(nullptr, nullptr, &TellOfMonitor, 0);
}

HDDEDATA CALLBACK Deaf(UINT, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR) { return nullptr; }

/// Whether a main program of the suite answers on this desktop, or a dialer runs: the check and they would meet.
bool SomebodyIsThere() {
  DWORD dde = 0;
  DdeInitializeA(&dde, &Deaf, APPCMD_CLIENTONLY, 0);
  const HSZ service = DdeCreateStringHandleA(dde, suite::Server::kService, CP_WINANSI);
  const HSZ topic = DdeCreateStringHandleA(dde, suite::Server::kTopic, CP_WINANSI);
  const bool answers = DdeConnect(dde, service, topic, nullptr) != nullptr;
  DdeUninitialize(dde);
  return answers || Win32Process().OtherInstanceRunning();
}

}  // namespace
}  // namespace fonklav

int main() {
  using namespace fonklav;
  std::setbuf(stdout, nullptr);  // what it said before it hung is known
  SetProcessDPIAware();
  TellOfMachine();
  if (SomebodyIsThere()) {
    std::puts("The Rufmon main program or its dialer runs on this desktop: please end it and start the check again.");
    return 1;
  }
  const std::jthread watch([](const std::stop_token& stop) {
    for (; !stop.stop_requested(); Sleep(500)) EnumWindows(&CloseDialog, 0);
  });
  try {
    for (const std::uint32_t highest : {TAPI_VERSION3_0, TAPI_VERSION1_4}) Probe(highest);
  } catch (const RunTimeError& fault) {
    std::printf("no telephony: %s\n", fault.what());
  }
  return 0;
}
