#pragma once

#include <windows.h>

#include <set>

#include "platform/Telephony.h"
#include "platform/win32/Handles.h"
#include "platform/win32/SystemFunction.h"

namespace fonklav {

/// The system's telephony library, loaded when it is first wanted and from the system folder only: LoadLibrary by a
/// bare name looks beside the program first, and a file of that name there must never get to run. Loaded at run time
/// and not imported, because a computer without telephony should get a message and not a program that Windows does not
/// start.
class TelephonyLibrary {
 public:
  /// One of the library's functions, and the line that wants it: the error log names that line.
  struct FunctionName {
    FunctionName(const char* text, int where = __builtin_LINE()) : name(text), line(where) {}
    const char* name;
    int line;
  };

  /// Calls the library's function with exactly these argument types. Throws RunTimeError 53 when the library is missing
  /// and 453 when it lacks the function.
  template <typename... Args>
  std::int32_t Call(FunctionName wanted, Args... args) {
    const auto function = FunctionOf<LONG(WINAPI*)(Args...)>(Loaded(wanted), wanted.name);
    if (function == nullptr) ThrowMissing(wanted);
    return function(args...);
  }

 private:
  HMODULE Loaded(const FunctionName& wanted);
  [[noreturn]] static void ThrowMissing(const FunctionName& wanted);

  UniqueModule module_;
};

/// The system's telephony functions. Where there are two forms it is the A form, whose strings are bytes of the code
/// page; those without strings have one form and no letter.
class Win32Telephony final : public Telephony {
 public:
  /// `instance` is the program's module, by which telephony knows who registers.
  explicit Win32Telephony(HINSTANCE instance) : instance_(instance) {}
  Win32Telephony(const Win32Telephony&) = delete;
  Win32Telephony& operator=(const Win32Telephony&) = delete;
  ~Win32Telephony() override;

  std::int32_t lineInitializeEx(HLINEAPP& lineApp, LineMessageSink& sink, const char* friendlyName,
                                std::uint32_t& numDevs, std::uint32_t& apiVersion,
                                LINEINITIALIZEEXPARAMS& params) override;
  std::int32_t lineShutdown(HLINEAPP lineApp) override;
  std::int32_t lineNegotiateAPIVersion(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t low, std::uint32_t high,
                                       std::uint32_t& apiVersion, LINEEXTENSIONID& extensionId) override;
  std::int32_t lineGetDevCaps(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                              std::uint32_t extVersion, std::span<std::byte> caps) override;
  std::int32_t lineGetTranslateCaps(HLINEAPP lineApp, std::uint32_t apiVersion, std::span<std::byte> caps) override;
  std::int32_t tapiGetLocationInfo(std::span<char, 8> countryCode, std::span<char, 8> cityCode) override;
  std::int32_t lineOpen(HLINEAPP lineApp, std::uint32_t deviceId, HLINE& line, std::uint32_t apiVersion,
                        std::uint32_t extVersion, std::uintptr_t callbackInstance, std::uint32_t privileges,
                        std::uint32_t mediaModes) override;
  std::int32_t lineClose(HLINE line) override;
  std::int32_t lineMakeCall(HLINE line, HCALL& call, const char* destAddress, std::uint32_t countryCode) override;
  std::int32_t lineDrop(HCALL call) override;
  std::int32_t lineDeallocateCall(HCALL call) override;
  std::int32_t lineTranslateAddress(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                    const char* addressIn, std::uint32_t card, std::uint32_t translateOptions,
                                    std::span<std::byte> output) override;
  std::int32_t lineConfigDialog(std::uint32_t deviceId, std::uintptr_t owner, const char* deviceClass) override;
  std::int32_t lineTranslateDialog(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                   std::uintptr_t owner, const char* addressIn) override;
  std::int32_t lineGetIcon(std::uint32_t deviceId, const char* deviceClass, std::uintptr_t& icon) override;

 private:
  HINSTANCE instance_;
  TelephonyLibrary library_;
  std::set<HLINEAPP> registrations_;  ///< what lineInitializeEx gave; while there is one, line messages may come
};

}  // namespace fonklav
