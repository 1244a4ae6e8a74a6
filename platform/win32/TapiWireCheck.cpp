// Holds the program's own telephony structures and constants against the system's, for the architecture that is being
// compiled. Nothing in here runs. Ours come first: the system's constants are macros and replace our names from its
// header on.
#include "platform/TapiWire.h"

#include <array>

namespace fonklav {
namespace {

constexpr std::array<std::uint32_t, 52> kOurs{
    LINEINITIALIZEEXOPTION_USEHIDDENWINDOW,
    LINE_CALLSTATE,
    LINE_CLOSE,
    LINE_LINEDEVSTATE,
    LINE_REPLY,
    LINECALLSTATE_IDLE,
    LINECALLSTATE_OFFERING,
    LINECALLSTATE_ACCEPTED,
    LINECALLSTATE_DIALTONE,
    LINECALLSTATE_DIALING,
    LINECALLSTATE_RINGBACK,
    LINECALLSTATE_BUSY,
    LINECALLSTATE_SPECIALINFO,
    LINECALLSTATE_CONNECTED,
    LINECALLSTATE_PROCEEDING,
    LINECALLSTATE_ONHOLD,
    LINECALLSTATE_CONFERENCED,
    LINECALLSTATE_ONHOLDPENDCONF,
    LINECALLSTATE_ONHOLDPENDTRANSFER,
    LINECALLSTATE_DISCONNECTED,
    LINECALLSTATE_UNKNOWN,
    LINECALLPRIVILEGE_NONE,
    LINEBEARERMODE_VOICE,
    LINEBEARERMODE_SPEECH,
    LINEBEARERMODE_MULTIUSE,
    LINEBEARERMODE_DATA,
    LINEBEARERMODE_ALTSPEECHDATA,
    LINEBEARERMODE_NONCALLSIGNALING,
    LINEADDRESSMODE_ADDRESSID,
    LINEADDRESSMODE_DIALABLEADDR,
    LINEMEDIAMODE_UNKNOWN,
    LINEMEDIAMODE_INTERACTIVEVOICE,
    LINEMEDIAMODE_AUTOMATEDVOICE,
    LINEMEDIAMODE_DATAMODEM,
    LINEMEDIAMODE_G3FAX,
    LINEMEDIAMODE_TDD,
    LINEMEDIAMODE_G4FAX,
    LINEMEDIAMODE_DIGITALDATA,
    LINEMEDIAMODE_TELETEX,
    LINEMEDIAMODE_VIDEOTEX,
    LINEMEDIAMODE_TELEX,
    LINEMEDIAMODE_MIXED,
    LINEMEDIAMODE_ADSI,
    LINETONEMODE_CUSTOM,
    LINETONEMODE_RINGBACK,
    LINETONEMODE_BUSY,
    LINETONEMODE_BEEP,
    LINETONEMODE_BILLING,
    STRINGFORMAT_ASCII,
    STRINGFORMAT_DBCS,
    STRINGFORMAT_UNICODE,
    STRINGFORMAT_BINARY,
};

}  // namespace
}  // namespace fonklav

#include <windows.h>

#include <tapi.h>

namespace fonklav {
namespace {

constexpr std::array<std::uint32_t, 52> kTheirs{
    LINEINITIALIZEEXOPTION_USEHIDDENWINDOW,
    LINE_CALLSTATE,
    LINE_CLOSE,
    LINE_LINEDEVSTATE,
    LINE_REPLY,
    LINECALLSTATE_IDLE,
    LINECALLSTATE_OFFERING,
    LINECALLSTATE_ACCEPTED,
    LINECALLSTATE_DIALTONE,
    LINECALLSTATE_DIALING,
    LINECALLSTATE_RINGBACK,
    LINECALLSTATE_BUSY,
    LINECALLSTATE_SPECIALINFO,
    LINECALLSTATE_CONNECTED,
    LINECALLSTATE_PROCEEDING,
    LINECALLSTATE_ONHOLD,
    LINECALLSTATE_CONFERENCED,
    LINECALLSTATE_ONHOLDPENDCONF,
    LINECALLSTATE_ONHOLDPENDTRANSFER,
    LINECALLSTATE_DISCONNECTED,
    LINECALLSTATE_UNKNOWN,
    LINECALLPRIVILEGE_NONE,
    LINEBEARERMODE_VOICE,
    LINEBEARERMODE_SPEECH,
    LINEBEARERMODE_MULTIUSE,
    LINEBEARERMODE_DATA,
    LINEBEARERMODE_ALTSPEECHDATA,
    LINEBEARERMODE_NONCALLSIGNALING,
    LINEADDRESSMODE_ADDRESSID,
    LINEADDRESSMODE_DIALABLEADDR,
    LINEMEDIAMODE_UNKNOWN,
    LINEMEDIAMODE_INTERACTIVEVOICE,
    LINEMEDIAMODE_AUTOMATEDVOICE,
    LINEMEDIAMODE_DATAMODEM,
    LINEMEDIAMODE_G3FAX,
    LINEMEDIAMODE_TDD,
    LINEMEDIAMODE_G4FAX,
    LINEMEDIAMODE_DIGITALDATA,
    LINEMEDIAMODE_TELETEX,
    LINEMEDIAMODE_VIDEOTEX,
    LINEMEDIAMODE_TELEX,
    LINEMEDIAMODE_MIXED,
    LINEMEDIAMODE_ADSI,
    LINETONEMODE_CUSTOM,
    LINETONEMODE_RINGBACK,
    LINETONEMODE_BUSY,
    LINETONEMODE_BEEP,
    LINETONEMODE_BILLING,
    STRINGFORMAT_ASCII,
    STRINGFORMAT_DBCS,
    STRINGFORMAT_UNICODE,
    STRINGFORMAT_BINARY,
};
static_assert(kOurs == kTheirs);

// Sizes. The system's device capabilities grow with each version; ours end where the oldest ends.
static_assert(sizeof(LINEINITIALIZEEXPARAMS) == sizeof(::LINEINITIALIZEEXPARAMS));
static_assert(sizeof(LINEEXTENSIONID) == sizeof(::LINEEXTENSIONID));
static_assert(sizeof(LINETRANSLATECAPS) == sizeof(::LINETRANSLATECAPS));
static_assert(sizeof(LINELOCATIONENTRY) == sizeof(::LINELOCATIONENTRY));
static_assert(sizeof(LINETRANSLATEOUTPUT) == sizeof(::LINETRANSLATEOUTPUT));
static_assert(sizeof(LINEDEVCAPS) == offsetof(::LINEDEVCAPS, dwLineFeatures));
static_assert(sizeof(HLINEAPP) == sizeof(::HLINEAPP) && sizeof(HLINE) == sizeof(::HLINE));
static_assert(sizeof(HCALL) == sizeof(::HCALL));

/// Whether the members of one structure, as offsets of ours and of theirs in turn, stand at the same places.
template <std::size_t Count>
constexpr bool SamePlaces(const std::array<std::size_t, Count>& offsets) {
  for (std::size_t index = 0; index + 1 < Count; index += 2) {
    if (offsets[index] != offsets[index + 1]) return false;
  }
  return true;
}

static_assert(SamePlaces<10>({
    offsetof(LINEINITIALIZEEXPARAMS, dwTotalSize),
    offsetof(::LINEINITIALIZEEXPARAMS, dwTotalSize),
    offsetof(LINEINITIALIZEEXPARAMS, dwNeededSize),
    offsetof(::LINEINITIALIZEEXPARAMS, dwNeededSize),
    offsetof(LINEINITIALIZEEXPARAMS, dwUsedSize),
    offsetof(::LINEINITIALIZEEXPARAMS, dwUsedSize),
    offsetof(LINEINITIALIZEEXPARAMS, dwOptions),
    offsetof(::LINEINITIALIZEEXPARAMS, dwOptions),
    offsetof(LINEINITIALIZEEXPARAMS, dwCompletionKey),
    offsetof(::LINEINITIALIZEEXPARAMS, dwCompletionKey),
}));
static_assert(SamePlaces<8>({
    offsetof(LINEEXTENSIONID, dwExtensionID0),
    offsetof(::LINEEXTENSIONID, dwExtensionID0),
    offsetof(LINEEXTENSIONID, dwExtensionID1),
    offsetof(::LINEEXTENSIONID, dwExtensionID1),
    offsetof(LINEEXTENSIONID, dwExtensionID2),
    offsetof(::LINEEXTENSIONID, dwExtensionID2),
    offsetof(LINEEXTENSIONID, dwExtensionID3),
    offsetof(::LINEEXTENSIONID, dwExtensionID3),
}));
static_assert(SamePlaces<38>({
    offsetof(LINEDEVCAPS, dwTotalSize),
    offsetof(::LINEDEVCAPS, dwTotalSize),
    offsetof(LINEDEVCAPS, dwProviderInfoSize),
    offsetof(::LINEDEVCAPS, dwProviderInfoSize),
    offsetof(LINEDEVCAPS, dwProviderInfoOffset),
    offsetof(::LINEDEVCAPS, dwProviderInfoOffset),
    offsetof(LINEDEVCAPS, dwSwitchInfoSize),
    offsetof(::LINEDEVCAPS, dwSwitchInfoSize),
    offsetof(LINEDEVCAPS, dwSwitchInfoOffset),
    offsetof(::LINEDEVCAPS, dwSwitchInfoOffset),
    offsetof(LINEDEVCAPS, dwPermanentLineID),
    offsetof(::LINEDEVCAPS, dwPermanentLineID),
    offsetof(LINEDEVCAPS, dwLineNameSize),
    offsetof(::LINEDEVCAPS, dwLineNameSize),
    offsetof(LINEDEVCAPS, dwLineNameOffset),
    offsetof(::LINEDEVCAPS, dwLineNameOffset),
    offsetof(LINEDEVCAPS, dwStringFormat),
    offsetof(::LINEDEVCAPS, dwStringFormat),
    offsetof(LINEDEVCAPS, dwAddressModes),
    offsetof(::LINEDEVCAPS, dwAddressModes),
    offsetof(LINEDEVCAPS, dwNumAddresses),
    offsetof(::LINEDEVCAPS, dwNumAddresses),
    offsetof(LINEDEVCAPS, dwBearerModes),
    offsetof(::LINEDEVCAPS, dwBearerModes),
    offsetof(LINEDEVCAPS, dwMaxRate),
    offsetof(::LINEDEVCAPS, dwMaxRate),
    offsetof(LINEDEVCAPS, dwMediaModes),
    offsetof(::LINEDEVCAPS, dwMediaModes),
    offsetof(LINEDEVCAPS, dwGenerateToneModes),
    offsetof(::LINEDEVCAPS, dwGenerateToneModes),
    offsetof(LINEDEVCAPS, dwGenerateToneMaxNumFreq),
    offsetof(::LINEDEVCAPS, dwGenerateToneMaxNumFreq),
    offsetof(LINEDEVCAPS, dwDevCapFlags),
    offsetof(::LINEDEVCAPS, dwDevCapFlags),
    offsetof(LINEDEVCAPS, dwNumTerminals),
    offsetof(::LINEDEVCAPS, dwNumTerminals),
    offsetof(LINEDEVCAPS, dwDevSpecificOffset),
    offsetof(::LINEDEVCAPS, dwDevSpecificOffset),
}));
static_assert(SamePlaces<14>({
    offsetof(LINETRANSLATECAPS, dwTotalSize),
    offsetof(::LINETRANSLATECAPS, dwTotalSize),
    offsetof(LINETRANSLATECAPS, dwNeededSize),
    offsetof(::LINETRANSLATECAPS, dwNeededSize),
    offsetof(LINETRANSLATECAPS, dwUsedSize),
    offsetof(::LINETRANSLATECAPS, dwUsedSize),
    offsetof(LINETRANSLATECAPS, dwNumLocations),
    offsetof(::LINETRANSLATECAPS, dwNumLocations),
    offsetof(LINETRANSLATECAPS, dwLocationListSize),
    offsetof(::LINETRANSLATECAPS, dwLocationListSize),
    offsetof(LINETRANSLATECAPS, dwLocationListOffset),
    offsetof(::LINETRANSLATECAPS, dwLocationListOffset),
    offsetof(LINETRANSLATECAPS, dwCurrentLocationID),
    offsetof(::LINETRANSLATECAPS, dwCurrentLocationID),
}));
static_assert(SamePlaces<10>({
    offsetof(LINELOCATIONENTRY, dwPermanentLocationID),
    offsetof(::LINELOCATIONENTRY, dwPermanentLocationID),
    offsetof(LINELOCATIONENTRY, dwLocalAccessCodeSize),
    offsetof(::LINELOCATIONENTRY, dwLocalAccessCodeSize),
    offsetof(LINELOCATIONENTRY, dwLocalAccessCodeOffset),
    offsetof(::LINELOCATIONENTRY, dwLocalAccessCodeOffset),
    offsetof(LINELOCATIONENTRY, dwLongDistanceAccessCodeSize),
    offsetof(::LINELOCATIONENTRY, dwLongDistanceAccessCodeSize),
    offsetof(LINELOCATIONENTRY, dwLongDistanceAccessCodeOffset),
    offsetof(::LINELOCATIONENTRY, dwLongDistanceAccessCodeOffset),
}));
static_assert(SamePlaces<16>({
    offsetof(LINETRANSLATEOUTPUT, dwTotalSize),
    offsetof(::LINETRANSLATEOUTPUT, dwTotalSize),
    offsetof(LINETRANSLATEOUTPUT, dwNeededSize),
    offsetof(::LINETRANSLATEOUTPUT, dwNeededSize),
    offsetof(LINETRANSLATEOUTPUT, dwUsedSize),
    offsetof(::LINETRANSLATEOUTPUT, dwUsedSize),
    offsetof(LINETRANSLATEOUTPUT, dwDialableStringSize),
    offsetof(::LINETRANSLATEOUTPUT, dwDialableStringSize),
    offsetof(LINETRANSLATEOUTPUT, dwDialableStringOffset),
    offsetof(::LINETRANSLATEOUTPUT, dwDialableStringOffset),
    offsetof(LINETRANSLATEOUTPUT, dwDisplayableStringSize),
    offsetof(::LINETRANSLATEOUTPUT, dwDisplayableStringSize),
    offsetof(LINETRANSLATEOUTPUT, dwDisplayableStringOffset),
    offsetof(::LINETRANSLATEOUTPUT, dwDisplayableStringOffset),
    offsetof(LINETRANSLATEOUTPUT, dwTranslateResults),
    offsetof(::LINETRANSLATEOUTPUT, dwTranslateResults),
}));
static_assert(offsetof(LINEINITIALIZEEXPARAMS, hEvent) == offsetof(::LINEINITIALIZEEXPARAMS, Handles));

}  // namespace
}  // namespace fonklav
