#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/TapiWire.h"

namespace fonklav {

/// Receives the line messages of a telephony registration, on the program's one thread, while it pumps messages. A
/// driver may do that inside the functions of telephony as well.
class LineMessageSink {
 public:
  LineMessageSink() = default;
  LineMessageSink(const LineMessageSink&) = delete;
  LineMessageSink& operator=(const LineMessageSink&) = delete;
  virtual ~LineMessageSink() = default;

  /// The published line callback. `dwCallbackInstance` is what lineOpen was given, 0 for messages that belong to no
  /// open line. Lets nothing be thrown into telephony.
  virtual void LineCallBackProc(std::uint32_t hDevice, std::uint32_t dwMsg, std::uintptr_t dwCallbackInstance,
                                std::uintptr_t dwParam1, std::uintptr_t dwParam2, std::uintptr_t dwParam3) noexcept = 0;
};

/// The Windows telephony functions that the program uses, under their published names and with their results: 0 is
/// success, a positive number the identifier of an asynchronous request, a negative number a LINEERR code. Strings are
/// bytes of the system's code page. A null pointer for a string stands for "none". Every operation throws RunTimeError
/// 53 when the telephony library is missing and 453 when it lacks the function.
class Telephony {
 public:
  Telephony() = default;
  Telephony(const Telephony&) = delete;
  Telephony& operator=(const Telephony&) = delete;
  virtual ~Telephony() = default;

  /// Registers the program; line messages go to `sink`, which must live as long as the registration. `apiVersion` is
  /// the highest version known on entry and the highest offered on return.
  virtual std::int32_t lineInitializeEx(HLINEAPP& lineApp, LineMessageSink& sink, const char* friendlyName,
                                        std::uint32_t& numDevs, std::uint32_t& apiVersion,
                                        LINEINITIALIZEEXPARAMS& params) = 0;
  /// Gives a registration back. Its sink may go afterwards, whatever the result.
  virtual std::int32_t lineShutdown(HLINEAPP lineApp) = 0;
  /// `apiVersion` receives the highest version between `low` and `high` that the device speaks.
  virtual std::int32_t lineNegotiateAPIVersion(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t low,
                                               std::uint32_t high, std::uint32_t& apiVersion,
                                               LINEEXTENSIONID& extensionId) = 0;
  /// `caps` begins with a LINEDEVCAPS whose dwTotalSize says how many of its bytes may be written.
  virtual std::int32_t lineGetDevCaps(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                      std::uint32_t extVersion, std::span<std::byte> caps) = 0;
  /// `caps` begins with a LINETRANSLATECAPS whose dwTotalSize says how many of its bytes may be written.
  virtual std::int32_t lineGetTranslateCaps(HLINEAPP lineApp, std::uint32_t apiVersion, std::span<std::byte> caps) = 0;
  /// Country code and area code of the current location, zero-terminated where they fit. Both buffers are 8 bytes long,
  /// as telephony is told no length.
  virtual std::int32_t tapiGetLocationInfo(std::span<char, 8> countryCode, std::span<char, 8> cityCode) = 0;
  /// Opens a line into `line`. `callbackInstance` comes back with each of its line messages.
  virtual std::int32_t lineOpen(HLINEAPP lineApp, std::uint32_t deviceId, HLINE& line, std::uint32_t apiVersion,
                                std::uint32_t extVersion, std::uintptr_t callbackInstance, std::uint32_t privileges,
                                std::uint32_t mediaModes) = 0;
  /// Closes a line and lets go of the calls on it.
  virtual std::int32_t lineClose(HLINE line) = 0;
  /// `call` is written when the request's reply is processed, so it must stay where it is until the reply came or the
  /// line was closed.
  virtual std::int32_t lineMakeCall(HLINE line, HCALL& call, const char* destAddress, std::uint32_t countryCode) = 0;
  /// Hangs up. The call's handle stays good until lineDeallocateCall.
  virtual std::int32_t lineDrop(HCALL call) = 0;
  /// Gives a call's handle back. Telephony refuses it where it knows no such call.
  virtual std::int32_t lineDeallocateCall(HCALL call) = 0;
  /// `output` begins with a LINETRANSLATEOUTPUT whose dwTotalSize says how many of its bytes may be written.
  virtual std::int32_t lineTranslateAddress(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                            const char* addressIn, std::uint32_t card, std::uint32_t translateOptions,
                                            std::span<std::byte> output) = 0;
  /// Shows the driver's dialog and returns when it is closed. `owner` is a window handle or 0.
  virtual std::int32_t lineConfigDialog(std::uint32_t deviceId, std::uintptr_t owner, const char* deviceClass) = 0;
  /// Shows the system's dialing rules and returns when they are closed.
  virtual std::int32_t lineTranslateDialog(HLINEAPP lineApp, std::uint32_t deviceId, std::uint32_t apiVersion,
                                           std::uintptr_t owner, const char* addressIn) = 0;
  /// `icon` receives the handle of the device's icon.
  virtual std::int32_t lineGetIcon(std::uint32_t deviceId, const char* deviceClass, std::uintptr_t& icon) = 0;
};

}  // namespace fonklav
