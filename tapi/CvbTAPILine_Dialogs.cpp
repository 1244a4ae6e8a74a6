#include "platform/Ports.h"
#include "platform/Telephony.h"
#include "tapi/CvbTAPILine.h"
#include "util/Procedure.h"

// What telephony shows by itself: its dialogs and the device's icon.
namespace fonklav {
namespace {

/// An optional string as telephony wants it: no string at all when it is empty.
const char* OrNone(const std::string& bytes) { return bytes.empty() ? nullptr : bytes.c_str(); }

}  // namespace

bool CvbTAPILine::ConfigDialog(std::uintptr_t ownerHWnd, const std::string& deviceClass) {
  return Procedure(services_.diagnostics, "CvbTAPILine.ConfigDialog", {ownerHWnd, deviceClass}, false,
                   [&](bool& shown) {
    const std::string bytes = services_.codePage.ToBytes(deviceClass);
    shown = Succeeded(
        services_.telephony.lineConfigDialog(static_cast<std::uint32_t>(currentLineId_), ownerHWnd, OrNone(bytes)));
  });
}

bool CvbTAPILine::DialingPropertiesDialog(std::uintptr_t ownerHWnd, const std::string& phonenumber) {
  return Procedure(services_.diagnostics, "CvbTAPILine.DialingPropertiesDialog", {ownerHWnd, phonenumber}, false,
                   [&](bool& shown) {
    const std::string bytes = services_.codePage.ToBytes(phonenumber);
    shown = Succeeded(services_.telephony.lineTranslateDialog(hLineApp_, static_cast<std::uint32_t>(currentLineId_),
                                                              static_cast<std::uint32_t>(highestApiVersion_), ownerHWnd,
                                                              OrNone(bytes)));
  });
}

bool CvbTAPILine::PaintDevIcon(std::uintptr_t hdc, std::int32_t left, std::int32_t top, std::int32_t width,
                               std::int32_t height) {
  return Procedure(services_.diagnostics, "CvbTAPILine.PaintDevIcon", {left, top, width, height}, false,
                   [&](bool& painted) {
    std::uintptr_t icon = 0;
    const auto device = static_cast<std::uint32_t>(currentLineId_);
    if (!Succeeded(services_.telephony.lineGetIcon(device, nullptr, icon))) return;
    services_.icons.DrawIcon(hdc, left, top, icon, width, height);
    if (icon != 0) services_.icons.DestroyIcon(icon);
    painted = icon != 0;
  });
}

}  // namespace fonklav
