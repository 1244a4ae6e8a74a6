#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// The published result codes and marks that the simulated telephony answers with, under their published names.
namespace fonklav::sim {

/// LINEERR codes are negative; the headers publish them as unsigned numbers.
constexpr std::int32_t Code(std::uint32_t published) { return static_cast<std::int32_t>(published); }

inline constexpr std::int32_t LINEERR_BADDEVICEID = Code(0x80000002);
inline constexpr std::int32_t LINEERR_CALLUNAVAIL = Code(0x80000005);
inline constexpr std::int32_t LINEERR_DIALBILLING = Code(0x80000008);
inline constexpr std::int32_t LINEERR_DIALDIALTONE = Code(0x80000009);
inline constexpr std::int32_t LINEERR_DIALPROMPT = Code(0x8000000A);
inline constexpr std::int32_t LINEERR_DIALQUIET = Code(0x8000000B);
inline constexpr std::int32_t LINEERR_INCOMPATIBLEAPIVERSION = Code(0x8000000C);
inline constexpr std::int32_t LINEERR_INCOMPATIBLEEXTVERSION = Code(0x8000000D);
inline constexpr std::int32_t LINEERR_INIFILECORRUPT = Code(0x8000000E);
inline constexpr std::int32_t LINEERR_INVALADDRESS = Code(0x80000010);
inline constexpr std::int32_t LINEERR_INVALAPPHANDLE = Code(0x80000014);
inline constexpr std::int32_t LINEERR_INVALCALLHANDLE = Code(0x80000018);
inline constexpr std::int32_t LINEERR_INVALCALLSTATE = Code(0x8000001C);
inline constexpr std::int32_t LINEERR_INVALCARD = Code(0x8000001E);
inline constexpr std::int32_t LINEERR_INVALDEVICECLASS = Code(0x80000023);
inline constexpr std::int32_t LINEERR_INVALLINEHANDLE = Code(0x8000002B);
inline constexpr std::int32_t LINEERR_INVALMEDIAMODE = Code(0x8000002F);
inline constexpr std::int32_t LINEERR_INVALPARAM = Code(0x80000032);
inline constexpr std::int32_t LINEERR_INVALPOINTER = Code(0x80000035);
inline constexpr std::int32_t LINEERR_INVALPRIVSELECT = Code(0x80000036);
inline constexpr std::int32_t LINEERR_STRUCTURETOOSMALL = Code(0x8000004D);
inline constexpr std::int32_t LINEERR_UNINITIALIZED = Code(0x80000050);
inline constexpr std::int32_t TAPIERR_REQUESTFAILED = -16;

inline constexpr std::uint32_t LINEDISCONNECTMODE_NORMAL = 0x1;

inline constexpr std::uint32_t LINECALLPRIVILEGE_MONITOR = 0x2;
inline constexpr std::uint32_t LINECALLPRIVILEGE_OWNER = 0x4;

inline constexpr std::uint32_t LINETRANSLATERESULT_CANONICAL = 0x1;
inline constexpr std::uint32_t LINETRANSLATERESULT_INTERNATIONAL = 0x2;
inline constexpr std::uint32_t LINETRANSLATERESULT_LONGDISTANCE = 0x4;
inline constexpr std::uint32_t LINETRANSLATERESULT_LOCAL = 0x8;

struct NamedState {
  std::string_view name;
  std::uint32_t state;
};

/// Call states as scenarios and logs write them.
inline constexpr std::array kCallStates{NamedState{"IDLE", 0x1},
                                        NamedState{"OFFERING", 0x2},
                                        NamedState{"ACCEPTED", 0x4},
                                        NamedState{"DIALTONE", 0x8},
                                        NamedState{"DIALING", 0x10},
                                        NamedState{"RINGBACK", 0x20},
                                        NamedState{"BUSY", 0x40},
                                        NamedState{"SPECIALINFO", 0x80},
                                        NamedState{"CONNECTED", 0x100},
                                        NamedState{"PROCEEDING", 0x200},
                                        NamedState{"ONHOLD", 0x400},
                                        NamedState{"CONFERENCED", 0x800},
                                        NamedState{"DISCONNECTED", 0x4000},
                                        NamedState{"UNKNOWN", 0x8000}};

}  // namespace fonklav::sim
