#pragma once

#include "platform/TapiWire.h"

/// The published result codes that the simulated telephony answers with, under their published names.
namespace fonklav::sim {

/// LINEERR codes are negative; the headers publish them as unsigned numbers.
constexpr std::int32_t Code(std::uint32_t published) { return static_cast<std::int32_t>(published); }

inline constexpr std::int32_t LINEERR_BADDEVICEID = Code(0x80000002);
inline constexpr std::int32_t LINEERR_CALLUNAVAIL = Code(0x80000005);
inline constexpr std::int32_t LINEERR_INCOMPATIBLEAPIVERSION = Code(0x8000000C);
inline constexpr std::int32_t LINEERR_INCOMPATIBLEEXTVERSION = Code(0x8000000D);
inline constexpr std::int32_t LINEERR_INIFILECORRUPT = Code(0x8000000E);
inline constexpr std::int32_t LINEERR_INVALADDRESS = Code(0x80000010);
inline constexpr std::int32_t LINEERR_INVALAPPHANDLE = Code(0x80000014);
inline constexpr std::int32_t LINEERR_INVALCALLHANDLE = Code(0x80000018);
inline constexpr std::int32_t LINEERR_INVALCALLSTATE = Code(0x8000001C);
inline constexpr std::int32_t LINEERR_INVALDEVICECLASS = Code(0x80000023);
inline constexpr std::int32_t LINEERR_INVALLINEHANDLE = Code(0x8000002B);
inline constexpr std::int32_t LINEERR_INVALPARAM = Code(0x80000032);
inline constexpr std::int32_t LINEERR_INVALPOINTER = Code(0x80000035);
inline constexpr std::int32_t LINEERR_INVALPRIVSELECT = Code(0x80000036);
inline constexpr std::int32_t LINEERR_STRUCTURETOOSMALL = Code(0x8000004D);
inline constexpr std::int32_t LINEERR_UNINITIALIZED = Code(0x80000050);
inline constexpr std::int32_t TAPIERR_REQUESTFAILED = -16;

inline constexpr std::uint32_t LINEDISCONNECTMODE_NORMAL = 0x1;
inline constexpr std::uint32_t TAPI_VERSION2_0 = 0x00020000;

/// Thrown where a function is refused: what it answers.
struct Refused {
  std::int32_t code;
};

inline void Require(bool met, std::int32_t otherwise) {
  if (!met) throw Refused{otherwise};
}

}  // namespace fonklav::sim
