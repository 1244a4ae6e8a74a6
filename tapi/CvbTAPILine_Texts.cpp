#include <array>
#include <string_view>

#include "tapi/CvbTAPILine.h"
#include "util/Procedure.h"

// Fixed English texts for logs, status lines and reports. They are not translated.
namespace fonklav {
namespace {

constexpr std::uint32_t kFirstLineError = 0x80000001;
constexpr std::string_view kUnknownError = "Unknown Error";

/// LINEERR_ texts from 0x80000001 on, in the published order. An empty text is "Unknown Error": two numbers are not in
/// use, and LINEERR_INVALDIALPARAMS (0x80000025) has deliberately none.
constexpr std::array<std::string_view, 86> kLineErrors{"Allocated",
                                                       "Bad Device ID",
                                                       "Bearer Mode Unavail",
                                                       "",
                                                       "Call UnAvail",
                                                       "Completion Overrun",
                                                       "Conference Full",
                                                       "Dial Billing",
                                                       "Dial Dialtone",
                                                       "Dial Prompt",
                                                       "Dial Quiet",
                                                       "Incompatible API Version",
                                                       "Incompatible Ext Version",
                                                       "Ini File Corrupt",
                                                       "In Use",
                                                       "Invalid Address",
                                                       "Invalid Address ID",
                                                       "Invalid Address Mode",
                                                       "Invalid Address State",
                                                       "Invalid App Handle",
                                                       "Invalid App Name",
                                                       "Invalid Bearer Mode",
                                                       "Invalid Call Completion Mode",
                                                       "Invalid Call Handle",
                                                       "Invalid Call Params",
                                                       "Invalid Call Privilege",
                                                       "Invalid Call Select",
                                                       "Invalid Call State",
                                                       "Invalid Call State List",
                                                       "Invalid Card",
                                                       "Invalid Completion ID",
                                                       "Invalid Conf Call Handle",
                                                       "Invalid Consult Call Handle",
                                                       "Invalid Country Code",
                                                       "Invalid Device Class",
                                                       "Invalid Device Handle",
                                                       "",
                                                       "Invalid Digit List",
                                                       "Invalid Digit Mode",
                                                       "Invalid Digits",
                                                       "Invalid Ext Version",
                                                       "Invalid Group ID",
                                                       "Invalid Line Handle",
                                                       "Invalid Line State",
                                                       "Invalid Location",
                                                       "Invalid Media List",
                                                       "Invalid Media Mode",
                                                       "Invalid Message ID",
                                                       "",
                                                       "Invalid Param",
                                                       "Invalid Park ID",
                                                       "Invalid Park Mode",
                                                       "Invalid Pointer",
                                                       "Invalid Priv Select",
                                                       "Invalid Rate",
                                                       "Invalid Request Mode",
                                                       "Invalid Terminal ID",
                                                       "Invalid Terminal Mode",
                                                       "Invalid Time Out",
                                                       "Invalid Tone",
                                                       "Invalid Tone List",
                                                       "Invalid Tone Mode",
                                                       "Invalid Transfer Mode",
                                                       "Line Mapper Failed",
                                                       "No Conference",
                                                       "No Device",
                                                       "No Driver",
                                                       "No Memory",
                                                       "No Request",
                                                       "Not Owner",
                                                       "Not Registered",
                                                       "Operation Failed",
                                                       "Operation Unavailable",
                                                       "Rate Unavailable",
                                                       "Resource Unavailable",
                                                       "Request Overrun",
                                                       "Structure Too Small",
                                                       "Target Not found",
                                                       "Target Self",
                                                       "Uninitialized",
                                                       "UserUser Info Too Big",
                                                       "Re-init",
                                                       "Address Blocked",
                                                       "Billing Rejected",
                                                       "Invalid Feature",
                                                       "No Multiple Instance"};

struct StateRow {
  std::uint32_t state;
  std::string_view text;
};

constexpr std::array kStates{
    StateRow{LINECALLSTATE_IDLE, "idle"},
    StateRow{LINECALLSTATE_OFFERING, "offering call"},
    StateRow{LINECALLSTATE_ACCEPTED, "accepted"},
    StateRow{LINECALLSTATE_DIALTONE, "dial-tone detected"},
    StateRow{LINECALLSTATE_DIALING, "dialing"},
    StateRow{LINECALLSTATE_RINGBACK, "ring-back detected"},
    StateRow{LINECALLSTATE_BUSY, "busy detected"},
    StateRow{LINECALLSTATE_SPECIALINFO, "network error"},
    StateRow{LINECALLSTATE_CONNECTED, "connected"},
    StateRow{LINECALLSTATE_PROCEEDING, "proceeding"},
    StateRow{LINECALLSTATE_ONHOLD, "on hold"},
    StateRow{LINECALLSTATE_CONFERENCED, "connected to conference"},
    StateRow{LINECALLSTATE_ONHOLDPENDCONF, "connecting to conference"},
    StateRow{LINECALLSTATE_ONHOLDPENDTRANSFER, "transferring"},
    StateRow{LINECALLSTATE_DISCONNECTED, "disconnected"},
    StateRow{LINECALLSTATE_UNKNOWN, "unknown call state"},
};

}  // namespace

std::string CvbTAPILine::GetLineErrString(const std::int32_t& lParam) const {
  return Procedure(services_.diagnostics, "CvbTAPILine.GetLineErrString", {lParam}, std::string{},
                   [&](std::string& text) {
    const std::uint32_t index = static_cast<std::uint32_t>(lParam) - kFirstLineError;
    text = index < kLineErrors.size() ? kLineErrors[index] : std::string_view{};
    if (text.empty()) text = kUnknownError;
  });
}

std::string CvbTAPILine::GetLineStateString(std::int32_t state) const {
  return Procedure(services_.diagnostics, "CvbTAPILine.GetLineStateString", {state}, std::string{},
                   [&](std::string& text) {
    text = "unknown value passed to GetLineStateString()";
    for (const StateRow& row : kStates) {
      if (row.state == static_cast<std::uint32_t>(state)) text = row.text;
    }
  });
}

std::string CvbTAPILine::ErrorString(std::int32_t errCode) const {
  return Procedure(services_.diagnostics, "CvbTAPILine.ErrorString", {errCode}, std::string{},
                   [&](std::string& text) { text = GetLineErrString(errCode); });
}

}  // namespace fonklav
