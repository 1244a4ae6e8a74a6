#include "platform/win32/Win32Telephony.h"

namespace fonklav {
namespace {

// The argument types are part of each call: on 32-bit Windows these functions are __stdcall and take their arguments
// off the stack themselves, as many bytes as they were written for. The structures are ours, byte for byte those of
// <tapi.h>, whose constants are macros and would clash with ours; TapiWireCheck.cpp holds the two against each other.

using LineCallback = void(CALLBACK*)(DWORD, DWORD, DWORD_PTR, DWORD_PTR, DWORD_PTR, DWORD_PTR);

/// Who hears the line messages of this thread: the one piece of static state that can change. Telephony's callback is a
/// plain function, and what it is handed belongs to an open line (dwCallbackInstance), not to the registration. But
/// with LINEINITIALIZEEXOPTION_USEHIDDENWINDOW it is called on the thread that registered, from that thread's message
/// loop; so the thread itself carries the way back.
thread_local LineMessageSink* t_sink = nullptr;

void CALLBACK LineCallBackProc(DWORD device, DWORD message, DWORD_PTR instance, DWORD_PTR parameter1,
                               DWORD_PTR parameter2, DWORD_PTR parameter3) {
  if (t_sink != nullptr) t_sink->LineCallBackProc(device, message, instance, parameter1, parameter2, parameter3);
}

// DWORD is an unsigned long, std::uint32_t an unsigned int: of one size, and two types to the compiler.
DWORD Word(std::uint32_t number) { return number; }

DWORD* WordAt(std::uint32_t& number) { return reinterpret_cast<DWORD*>(&number); }

void* Memory(std::span<std::byte> bytes) { return bytes.data(); }

HWND Window(std::uintptr_t window) { return reinterpret_cast<HWND>(window); }

constexpr void* kNone = nullptr;

}  // namespace

Win32Telephony::~Win32Telephony() { t_sink = nullptr; }

std::int32_t Win32Telephony::lineInitializeEx(HLINEAPP& lineApp, LineMessageSink& sink, const char* friendlyName,
                                              std::uint32_t& numDevs, std::uint32_t& apiVersion,
                                              LINEINITIALIZEEXPARAMS& params) {
  const LineCallback callback = &LineCallBackProc;
  const std::int32_t result = library_.Call("lineInitializeExA", WordAt(lineApp), instance_, callback, friendlyName,
                                            WordAt(numDevs), WordAt(apiVersion), &params);
  if (result != 0) return result;
  registrations_.insert(lineApp);
  t_sink = &sink;
  return result;
}

std::int32_t Win32Telephony::lineShutdown(HLINEAPP lineApp) {
  const std::int32_t result = library_.Call("lineShutdown", Word(lineApp));
  // Refused or not, whoever listened may go now.
  registrations_.erase(lineApp);
  if (registrations_.empty()) t_sink = nullptr;
  return result;
}

std::int32_t Win32Telephony::lineNegotiateAPIVersion(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t low,
                                                     std::uint32_t high, std::uint32_t& apiVersion,
                                                     LINEEXTENSIONID& extensionId) {
  return library_.Call("lineNegotiateAPIVersion", Word(lineApp), Word(deviceId), Word(low), Word(high),
                       WordAt(apiVersion), &extensionId);
}

std::int32_t Win32Telephony::lineGetDevCaps(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                            std::uint32_t extVersion, std::span<std::byte> caps) {
  return library_.Call("lineGetDevCapsA", Word(lineApp), Word(deviceId), Word(apiVersion), Word(extVersion),
                       Memory(caps));
}

std::int32_t Win32Telephony::lineGetTranslateCaps(HLINEAPP lineApp, std::uint32_t apiVersion,
                                                  std::span<std::byte> caps) {
  return library_.Call("lineGetTranslateCapsA", Word(lineApp), Word(apiVersion), Memory(caps));
}

std::int32_t Win32Telephony::tapiGetLocationInfo(std::span<char, 8> countryCode, std::span<char, 8> cityCode) {
  return library_.Call("tapiGetLocationInfoA", countryCode.data(), cityCode.data());
}

std::int32_t Win32Telephony::lineOpen(HLINEAPP lineApp, std::uint32_t deviceId, HLINE& line, std::uint32_t apiVersion,
                                      std::uint32_t extVersion, std::uintptr_t callbackInstance,
                                      std::uint32_t privileges, std::uint32_t mediaModes) {
  return library_.Call("lineOpenA", Word(lineApp), Word(deviceId), WordAt(line), Word(apiVersion), Word(extVersion),
                       DWORD_PTR{callbackInstance}, Word(privileges), Word(mediaModes), kNone);
}

std::int32_t Win32Telephony::lineClose(HLINE line) { return library_.Call("lineClose", Word(line)); }

std::int32_t Win32Telephony::lineMakeCall(HLINE line, HCALL& call, const char* destAddress, std::uint32_t countryCode) {
  return library_.Call("lineMakeCallA", Word(line), WordAt(call), destAddress, Word(countryCode), kNone);
}

std::int32_t Win32Telephony::lineDrop(HCALL call) { return library_.Call("lineDrop", Word(call), kNone, Word(0)); }

std::int32_t Win32Telephony::lineDeallocateCall(HCALL call) { return library_.Call("lineDeallocateCall", Word(call)); }

std::int32_t Win32Telephony::lineTranslateAddress(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                                  const char* addressIn, std::uint32_t card,
                                                  std::uint32_t translateOptions, std::span<std::byte> output) {
  return library_.Call("lineTranslateAddressA", Word(lineApp), Word(deviceId), Word(apiVersion), addressIn, Word(card),
                       Word(translateOptions), Memory(output));
}

std::int32_t Win32Telephony::lineConfigDialog(std::uint32_t deviceId, std::uintptr_t owner, const char* deviceClass) {
  return library_.Call("lineConfigDialogA", Word(deviceId), Window(owner), deviceClass);
}

std::int32_t Win32Telephony::lineTranslateDialog(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                                 std::uintptr_t owner, const char* addressIn) {
  return library_.Call("lineTranslateDialogA", Word(lineApp), Word(deviceId), Word(apiVersion), Window(owner),
                       addressIn);
}

std::int32_t Win32Telephony::lineGetIcon(std::uint32_t deviceId, const char* deviceClass, std::uintptr_t& icon) {
  HICON handle = nullptr;
  const std::int32_t result = library_.Call("lineGetIconA", Word(deviceId), deviceClass, &handle);
  icon = reinterpret_cast<std::uintptr_t>(handle);
  return result;
}

}  // namespace fonklav
