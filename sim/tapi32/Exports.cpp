#include <windows.h>

#include "sim/TapiCodes.h"
#include "sim/tapi32/StandIn.h"

// The published functions, one to one onto the simulator. Their names without an A at the end are given by the module
// definition file: both stand for the 8-bit variant.

namespace {

using namespace fonklav;
using sim::LINEERR_INVALPOINTER;

LineSimulator& Simulator() { return StandIn::Instance(); }

/// The bytes that a caller's variably sized structure says it has.
std::span<std::byte> Bytes(void* structure) {
  if (structure == nullptr) return {};
  return {static_cast<std::byte*>(structure), *static_cast<const DWORD*>(structure)};
}

/// A copy of the system's picture: who asked for an icon may destroy what it got.
HICON IconFor(std::uintptr_t wanted) { return wanted == 0 ? nullptr : CopyIcon(LoadIconW(nullptr, IDI_APPLICATION)); }

std::uintptr_t Number(HWND window) { return reinterpret_cast<std::uintptr_t>(window); }

}  // namespace

extern "C" {

LONG WINAPI lineInitializeExA(HLINEAPP* app, HINSTANCE /*instance*/, LineCallback callback, LPCSTR name,
                              std::uint32_t* devices, std::uint32_t* version, LINEINITIALIZEEXPARAMS* params) {
  const bool given = app != nullptr && callback != nullptr && devices != nullptr && version != nullptr;
  if (!given || params == nullptr) return LINEERR_INVALPOINTER;
  return StandIn::Instance().Initialize(*app, callback, name, *devices, *version, *params);
}

LONG WINAPI lineShutdown(HLINEAPP app) { return StandIn::Instance().Shutdown(app); }

LONG WINAPI lineNegotiateAPIVersion(HLINEAPP app, DWORD device, DWORD low, DWORD high, std::uint32_t* version,
                                    LINEEXTENSIONID* extension) {
  if (version == nullptr || extension == nullptr) return LINEERR_INVALPOINTER;
  return Simulator().lineNegotiateAPIVersion(app, device, low, high, *version, *extension);
}

LONG WINAPI lineGetDevCapsA(HLINEAPP app, DWORD device, DWORD version, DWORD extVersion, void* caps) {
  return Simulator().lineGetDevCaps(app, device, version, extVersion, Bytes(caps));
}

LONG WINAPI lineGetTranslateCapsA(HLINEAPP app, DWORD version, void* caps) {
  return Simulator().lineGetTranslateCaps(app, version, Bytes(caps));
}

LONG WINAPI tapiGetLocationInfoA(LPSTR country, LPSTR city) {
  if (country == nullptr || city == nullptr) return sim::TAPIERR_REQUESTFAILED;
  return Simulator().tapiGetLocationInfo(std::span<char, 8>(country, 8), std::span<char, 8>(city, 8));
}

LONG WINAPI lineOpenA(HLINEAPP app, DWORD device, HLINE* line, DWORD version, DWORD extVersion, DWORD_PTR instance,
                      DWORD privileges, DWORD mediaModes, const void* /*params*/) {
  if (line == nullptr) return LINEERR_INVALPOINTER;
  return Simulator().lineOpen(app, device, *line, version, extVersion, instance, privileges, mediaModes);
}

LONG WINAPI lineClose(HLINE line) { return Simulator().lineClose(line); }

LONG WINAPI lineMakeCallA(HLINE line, HCALL* call, LPCSTR address, DWORD country, const void* /*params*/) {
  if (call == nullptr) return LINEERR_INVALPOINTER;
  return Simulator().lineMakeCall(line, *call, address, country);
}

LONG WINAPI lineDrop(HCALL call, LPCSTR /*userInfo*/, DWORD /*size*/) { return Simulator().lineDrop(call); }

LONG WINAPI lineDeallocateCall(HCALL call) { return Simulator().lineDeallocateCall(call); }

LONG WINAPI lineTranslateAddressA(HLINEAPP app, DWORD device, DWORD version, LPCSTR address, DWORD card, DWORD options,
                                  void* output) {
  return Simulator().lineTranslateAddress(app, device, version, address, card, options, Bytes(output));
}

LONG WINAPI lineConfigDialogA(DWORD device, HWND owner, LPCSTR deviceClass) {
  return Simulator().lineConfigDialog(device, Number(owner), deviceClass);
}

LONG WINAPI lineTranslateDialogA(HLINEAPP app, DWORD device, DWORD version, HWND owner, LPCSTR address) {
  return Simulator().lineTranslateDialog(app, device, version, Number(owner), address);
}

LONG WINAPI lineGetIconA(DWORD device, LPCSTR deviceClass, HICON* icon) {
  if (icon == nullptr) return LINEERR_INVALPOINTER;
  std::uintptr_t wanted = 0;
  const LONG result = Simulator().lineGetIcon(device, deviceClass, wanted);
  if (result == 0) *icon = IconFor(wanted);
  return result;
}

}  // extern "C"
