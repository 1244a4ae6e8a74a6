#pragma once

#include <cstddef>
#include <cstdint>

// The telephony structures and constants that this program exchanges with TAPI, byte for byte as <tapi.h> has them,
// under their published names: the portable core reads them, and <tapi.h> is there on Windows only. The Windows side
// asserts on both architectures that the two are equal.
//
// A variable-length structure begins with three sizes: dwTotalSize, how many bytes the caller has room for;
// dwNeededSize, how many the whole answer takes; dwUsedSize, how many were written. What has no fixed length stands
// behind the fixed part and is named by a pair of Size and Offset, counted from the structure's first byte.
namespace fonklav {

using HLINEAPP = std::uint32_t;  ///< handles are 32 bits on every architecture
using HLINE = std::uint32_t;
using HCALL = std::uint32_t;

// As <tapi.h> packs its structures: no padding, also before a handle of 64 bits.
#pragma pack(push, 1)

/// How the program registers, for lineInitializeEx.
struct LINEINITIALIZEEXPARAMS {
  std::uint32_t dwTotalSize;
  std::uint32_t dwNeededSize;
  std::uint32_t dwUsedSize;
  std::uint32_t dwOptions;
  std::uintptr_t hEvent;  ///< a union of two handles: the one member whose size depends on the architecture
  std::uint32_t dwCompletionKey;
};
static_assert(sizeof(LINEINITIALIZEEXPARAMS) == 20 + sizeof(void*));

/// Which extensions to TAPI a device has; all zeros for none.
struct LINEEXTENSIONID {
  std::uint32_t dwExtensionID0;
  std::uint32_t dwExtensionID1;
  std::uint32_t dwExtensionID2;
  std::uint32_t dwExtensionID3;
};
static_assert(sizeof(LINEEXTENSIONID) == 16);

/// What a line can do, from lineGetDevCaps.
struct LINEDEVCAPS {
  std::uint32_t dwTotalSize;
  std::uint32_t dwNeededSize;
  std::uint32_t dwUsedSize;
  std::uint32_t dwProviderInfoSize;
  std::uint32_t dwProviderInfoOffset;
  std::uint32_t dwSwitchInfoSize;
  std::uint32_t dwSwitchInfoOffset;
  std::uint32_t dwPermanentLineID;
  std::uint32_t dwLineNameSize;
  std::uint32_t dwLineNameOffset;
  std::uint32_t dwStringFormat;
  std::uint32_t dwAddressModes;
  std::uint32_t dwNumAddresses;
  std::uint32_t dwBearerModes;
  std::uint32_t dwMaxRate;
  std::uint32_t dwMediaModes;
  std::uint32_t dwGenerateToneModes;
  std::uint32_t dwGenerateToneMaxNumFreq;
  std::uint32_t dwGenerateDigitModes;
  std::uint32_t dwMonitorToneMaxNumFreq;
  std::uint32_t dwMonitorToneMaxNumEntries;
  std::uint32_t dwMonitorDigitModes;
  std::uint32_t dwGatherDigitsMinTimeout;
  std::uint32_t dwGatherDigitsMaxTimeout;
  std::uint32_t dwMedCtlDigitMaxListSize;
  std::uint32_t dwMedCtlMediaMaxListSize;
  std::uint32_t dwMedCtlToneMaxListSize;
  std::uint32_t dwMedCtlCallStateMaxListSize;
  std::uint32_t dwDevCapFlags;
  std::uint32_t dwMaxNumActiveCalls;
  std::uint32_t dwAnswerMode;
  std::uint32_t dwRingModes;
  std::uint32_t dwLineStates;
  std::uint32_t dwUUIAcceptSize;
  std::uint32_t dwUUIAnswerSize;
  std::uint32_t dwUUIMakeCallSize;
  std::uint32_t dwUUIDropSize;
  std::uint32_t dwUUISendUserUserInfoSize;
  std::uint32_t dwUUICallInfoSize;
  std::uint32_t minDialParams[4];
  std::uint32_t maxDialParams[4];
  std::uint32_t defaultDialParams[4];
  std::uint32_t dwNumTerminals;
  std::uint32_t dwTerminalCapsSize;
  std::uint32_t dwTerminalCapsOffset;
  std::uint32_t dwTerminalTextEntrySize;
  std::uint32_t dwTerminalTextSize;
  std::uint32_t dwTerminalTextOffset;
  std::uint32_t dwDevSpecificSize;
  std::uint32_t dwDevSpecificOffset;
};
/// The part that every version from 1.3 on has; later versions append members that this program does not read.
static_assert(sizeof(LINEDEVCAPS) == 236);
static_assert(offsetof(LINEDEVCAPS, dwLineNameOffset) == 36 && offsetof(LINEDEVCAPS, dwBearerModes) == 52);
static_assert(offsetof(LINEDEVCAPS, dwMediaModes) == 60 && offsetof(LINEDEVCAPS, dwDevCapFlags) == 112);
static_assert(offsetof(LINEDEVCAPS, dwNumTerminals) == 204);

/// The user's locations and calling cards, from lineGetTranslateCaps. Locations are a list of LINELOCATIONENTRY.
struct LINETRANSLATECAPS {
  std::uint32_t dwTotalSize;
  std::uint32_t dwNeededSize;
  std::uint32_t dwUsedSize;
  std::uint32_t dwNumLocations;
  std::uint32_t dwLocationListSize;
  std::uint32_t dwLocationListOffset;
  std::uint32_t dwCurrentLocationID;
  std::uint32_t dwNumCards;
  std::uint32_t dwCardListSize;
  std::uint32_t dwCardListOffset;
  std::uint32_t dwCurrentPreferredCardID;
};
static_assert(sizeof(LINETRANSLATECAPS) == 44);

/// One location. Its offsets count from the LINETRANSLATECAPS that it stands in, not from itself.
struct LINELOCATIONENTRY {
  std::uint32_t dwPermanentLocationID;
  std::uint32_t dwLocationNameSize;
  std::uint32_t dwLocationNameOffset;
  std::uint32_t dwCountryCode;
  std::uint32_t dwCityCodeSize;
  std::uint32_t dwCityCodeOffset;
  std::uint32_t dwPreferredCardID;
  std::uint32_t dwLocalAccessCodeSize;
  std::uint32_t dwLocalAccessCodeOffset;
  std::uint32_t dwLongDistanceAccessCodeSize;
  std::uint32_t dwLongDistanceAccessCodeOffset;
  std::uint32_t dwTollPrefixListSize;
  std::uint32_t dwTollPrefixListOffset;
  std::uint32_t dwCountryID;
  std::uint32_t dwOptions;
  std::uint32_t dwCancelCallWaitingSize;
  std::uint32_t dwCancelCallWaitingOffset;
};
static_assert(sizeof(LINELOCATIONENTRY) == 17 * 4);

/// A number by the dialing rules, from lineTranslateAddress: as it is dialed, and as it is shown.
struct LINETRANSLATEOUTPUT {
  std::uint32_t dwTotalSize;
  std::uint32_t dwNeededSize;
  std::uint32_t dwUsedSize;
  std::uint32_t dwDialableStringSize;
  std::uint32_t dwDialableStringOffset;
  std::uint32_t dwDisplayableStringSize;
  std::uint32_t dwDisplayableStringOffset;
  std::uint32_t dwCurrentCountry;
  std::uint32_t dwDestCountry;
  std::uint32_t dwTranslateResults;
};
static_assert(sizeof(LINETRANSLATEOUTPUT) == 40);

#pragma pack(pop)

// Versions have the major number in the high word.
inline constexpr std::uint32_t TAPI_VERSION1_3 = 0x00010003;
inline constexpr std::uint32_t TAPI_VERSION1_4 = 0x00010004;
inline constexpr std::uint32_t TAPI_VERSION3_0 = 0x00030000;

inline constexpr std::uint32_t LINEINITIALIZEEXOPTION_USEHIDDENWINDOW = 1;

// Line messages.
inline constexpr std::uint32_t LINE_CALLSTATE = 2;
inline constexpr std::uint32_t LINE_CLOSE = 3;
inline constexpr std::uint32_t LINE_LINEDEVSTATE = 8;
inline constexpr std::uint32_t LINE_REPLY = 12;

inline constexpr std::uint32_t LINECALLSTATE_IDLE = 0x1;
inline constexpr std::uint32_t LINECALLSTATE_OFFERING = 0x2;
inline constexpr std::uint32_t LINECALLSTATE_ACCEPTED = 0x4;
inline constexpr std::uint32_t LINECALLSTATE_DIALTONE = 0x8;
inline constexpr std::uint32_t LINECALLSTATE_DIALING = 0x10;
inline constexpr std::uint32_t LINECALLSTATE_RINGBACK = 0x20;
inline constexpr std::uint32_t LINECALLSTATE_BUSY = 0x40;
inline constexpr std::uint32_t LINECALLSTATE_SPECIALINFO = 0x80;
inline constexpr std::uint32_t LINECALLSTATE_CONNECTED = 0x100;
inline constexpr std::uint32_t LINECALLSTATE_PROCEEDING = 0x200;
inline constexpr std::uint32_t LINECALLSTATE_ONHOLD = 0x400;
inline constexpr std::uint32_t LINECALLSTATE_CONFERENCED = 0x800;
inline constexpr std::uint32_t LINECALLSTATE_ONHOLDPENDCONF = 0x1000;
inline constexpr std::uint32_t LINECALLSTATE_ONHOLDPENDTRANSFER = 0x2000;
inline constexpr std::uint32_t LINECALLSTATE_DISCONNECTED = 0x4000;
inline constexpr std::uint32_t LINECALLSTATE_UNKNOWN = 0x8000;

inline constexpr std::uint32_t LINECALLPRIVILEGE_NONE = 0x1;

inline constexpr std::uint32_t LINEBEARERMODE_VOICE = 0x1;
inline constexpr std::uint32_t LINEBEARERMODE_SPEECH = 0x2;
inline constexpr std::uint32_t LINEBEARERMODE_MULTIUSE = 0x4;
inline constexpr std::uint32_t LINEBEARERMODE_DATA = 0x8;
inline constexpr std::uint32_t LINEBEARERMODE_ALTSPEECHDATA = 0x10;
inline constexpr std::uint32_t LINEBEARERMODE_NONCALLSIGNALING = 0x20;

inline constexpr std::uint32_t LINEADDRESSMODE_ADDRESSID = 0x1;
inline constexpr std::uint32_t LINEADDRESSMODE_DIALABLEADDR = 0x2;

inline constexpr std::uint32_t LINEMEDIAMODE_UNKNOWN = 0x2;
inline constexpr std::uint32_t LINEMEDIAMODE_INTERACTIVEVOICE = 0x4;
inline constexpr std::uint32_t LINEMEDIAMODE_AUTOMATEDVOICE = 0x8;
inline constexpr std::uint32_t LINEMEDIAMODE_DATAMODEM = 0x10;
inline constexpr std::uint32_t LINEMEDIAMODE_G3FAX = 0x20;
inline constexpr std::uint32_t LINEMEDIAMODE_TDD = 0x40;
inline constexpr std::uint32_t LINEMEDIAMODE_G4FAX = 0x80;
inline constexpr std::uint32_t LINEMEDIAMODE_DIGITALDATA = 0x100;
inline constexpr std::uint32_t LINEMEDIAMODE_TELETEX = 0x200;
inline constexpr std::uint32_t LINEMEDIAMODE_VIDEOTEX = 0x400;
inline constexpr std::uint32_t LINEMEDIAMODE_TELEX = 0x800;
inline constexpr std::uint32_t LINEMEDIAMODE_MIXED = 0x1000;
inline constexpr std::uint32_t LINEMEDIAMODE_ADSI = 0x2000;

inline constexpr std::uint32_t LINETONEMODE_CUSTOM = 0x1;
inline constexpr std::uint32_t LINETONEMODE_RINGBACK = 0x2;
inline constexpr std::uint32_t LINETONEMODE_BUSY = 0x4;
inline constexpr std::uint32_t LINETONEMODE_BEEP = 0x8;
inline constexpr std::uint32_t LINETONEMODE_BILLING = 0x10;

inline constexpr std::uint32_t STRINGFORMAT_ASCII = 1;
inline constexpr std::uint32_t STRINGFORMAT_DBCS = 2;
inline constexpr std::uint32_t STRINGFORMAT_UNICODE = 3;
inline constexpr std::uint32_t STRINGFORMAT_BINARY = 4;

}  // namespace fonklav
