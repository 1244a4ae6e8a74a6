#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/TapiWire.h"
#include "util/Diagnostics.h"

namespace fonklav {

class CodePage;
class IconPainter;
class Telephony;
class mTAPIvb;

/// What a line object tells its owner, synchronously from inside the line callback. A handler may call the line object
/// again, and may release or replace it.
class LineEvents {
 public:
  LineEvents() = default;
  LineEvents(const LineEvents&) = delete;
  LineEvents& operator=(const LineEvents&) = delete;
  virtual ~LineEvents() = default;

  /// The answer to MakeCallAsynch: 0 or a LINEERR code.
  virtual void tapiline_MakeCallResult(std::int32_t errorCode) = 0;
  /// The answer to DropCallAsynch: 0 or a LINEERR code.
  virtual void tapiline_DropCallResult(std::int32_t errorCode) = 0;
  /// The network is taking the number (LINECALLSTATE_DIALING).
  virtual void tapiline_Dialing() = 0;
  /// The call stands (LINECALLSTATE_CONNECTED). May come before the answer to MakeCallAsynch.
  virtual void tapiline_Connected() = 0;
  /// The call has ended (LINECALLSTATE_IDLE). If telephony had told its handle, it has been given back and the line
  /// closed.
  virtual void tapiline_Idle() = 0;
  /// The far end has gone (LINECALLSTATE_DISCONNECTED). The line object has asked for the drop that leads to IDLE.
  virtual void tapiline_Disconnected() = 0;
};

/// What a line object works with. All of it outlives the object.
struct LineServices {
  Diagnostics& diagnostics;
  Telephony& telephony;
  IconPainter& icons;
  CodePage& codePage;
  mTAPIvb& callback;
  std::string title;  ///< the name under which the program registers with telephony
};

/// The one object through which the program talks to telephony: the registration, one current line with its
/// capabilities, one open line and one call. Telephony failures do not throw: an operation returns false, and the
/// LINEERR code stays in LastError. A missing library or function is a run-time error
/// in the log, and the operation returns what it holds by then.
///
/// It lives in a shared pointer, because a callback holds it while it runs. Its end gives back the call, the line and
/// the registration, in this order, and raises no event.
class CvbTAPILine : public std::enable_shared_from_this<CvbTAPILine> {
 public:
  /// A new object, known to the callback. Events go to `events` until Detach.
  [[nodiscard]] static std::shared_ptr<CvbTAPILine> Make(const LineServices& services, LineEvents& events);

  CvbTAPILine(const CvbTAPILine&) = delete;
  CvbTAPILine& operator=(const CvbTAPILine&) = delete;
  ~CvbTAPILine();

  /// Raises no event from now on: the owner has let go of the object.
  void Detach() { events_ = nullptr; }

  /// The text of a LINEERR code, "Unknown Error" for any other number.
  [[nodiscard]] std::string GetLineErrString(const std::int32_t& lParam) const;
  /// The text of a call state. A value that is not exactly one state has a text of its own that says so.
  [[nodiscard]] std::string GetLineStateString(std::int32_t state) const;

  /// Numbers of up to this many characters are dialed as they are.
  [[nodiscard]] std::int16_t InternalNrLength() const { return internalNrLength_; }
  void InternalNrLength(std::int16_t length) { internalNrLength_ = length; }
  /// The range of telephony versions that Create asks for, major version in the high word. After a successful Create
  /// HiAPI is the version that telephony itself reported.
  [[nodiscard]] std::int32_t LowAPI() const { return lowApi_; }
  void LowAPI(std::int32_t version) { lowApi_ = version; }
  [[nodiscard]] std::int32_t HiAPI() const { return static_cast<std::int32_t>(hiApi_); }
  void HiAPI(std::int32_t version) { hiApi_ = static_cast<std::uint32_t>(version); }
  /// The code of the last failing call; a later success does not clear it.
  [[nodiscard]] std::int32_t LastError() const { return lastError_; }
  /// GetLineErrString under the name by which the suite's programs ask.
  [[nodiscard]] std::string ErrorString(std::int32_t errCode) const;

  /// Reads country and area code of the current location; false where telephony tells none, or one of more than seven
  /// characters. An empty one passes.
  [[nodiscard]] bool CheckAreaCodes();
  /// Registers with telephony, negotiates a version with every device, reads the current line's capabilities and the
  /// location's access codes. True when there is a line and a location. An earlier registration is given back first.
  [[nodiscard]] bool Create();

  /// How many devices telephony has. They are numbered from 0 on, and those numbers are the line IDs.
  [[nodiscard]] std::int32_t numLines() const { return static_cast<std::int32_t>(numLines_); }
  /// The device that everything below is about; 0 before one was chosen.
  [[nodiscard]] std::int32_t CurrentLineID() const { return currentLineId_; }
  /// Makes a device the current line and reads its capabilities. Throws RunTimeError 380 when there is no such device.
  void CurrentLineID(std::int32_t newId);

  /// The version negotiated with the current line, 0 when none was.
  [[nodiscard]] std::int32_t NegotiatedAPIVersion() const;
  /// The four words of the extension identifier that the current line has reported; all 0 where it has no extensions.
  [[nodiscard]] std::int32_t ExtAPI_ID0() const;
  [[nodiscard]] std::int32_t ExtAPI_ID1() const;
  [[nodiscard]] std::int32_t ExtAPI_ID2() const;
  [[nodiscard]] std::int32_t ExtAPI_ID3() const;

  /// The current location's area code, as its user has entered it and CheckAreaCodes read it.
  [[nodiscard]] const std::string& AreaCode() const { return areaCode_; }
  void AreaCode(std::string code) { areaCode_ = std::move(code); }
  /// The country code, likewise.
  [[nodiscard]] const std::string& Country() const { return country_; }
  void Country(std::string code) { country_ = std::move(code); }
  /// What to dial for an outside line, as Create read it or the program has set it. It goes before every number that is
  /// no extension and does not begin with "+".
  [[nodiscard]] const std::string& OutsideLocalAccess() const { return outsideLocalAccess_; }
  void OutsideLocalAccess(std::string code) { outsideLocalAccess_ = std::move(code); }
  /// The same for long-distance calls. It is read and kept; no number gets it.
  [[nodiscard]] const std::string& OutsideLongDistanceAccess() const { return outsideLongDistanceAccess_; }
  void OutsideLongDistanceAccess(std::string code) { outsideLongDistanceAccess_ = std::move(code); }

  /// The capabilities last read, by the members of LINEDEVCAPS in the TAPI reference. A line whose capabilities could
  /// not be read keeps those of the line before. The texts are UTF-8 and end before the driver's first NUL.
  [[nodiscard]] const std::string& LineName() const { return caps_.lineName; }
  [[nodiscard]] const std::string& ProviderInfo() const { return caps_.providerInfo; }
  [[nodiscard]] const std::string& SwitchInfo() const { return caps_.switchInfo; }
  /// The number by which the system knows the line for as long as it is installed.
  [[nodiscard]] std::int32_t PermanentLineID() const { return caps_.permanentLineId; }
  /// One of STRINGFORMAT_…: what the driver says its strings are. They are read as 8-bit ones whatever it says.
  [[nodiscard]] std::int32_t StringFormat() const { return caps_.stringFormat; }
  [[nodiscard]] std::int32_t numAddresses() const { return caps_.numAddresses; }
  /// Bits per second of one call.
  [[nodiscard]] std::int32_t maxDataRate() const { return caps_.maxDataRate; }
  /// Sets of LINEBEARERMODE_…, LINEADDRESSMODE_… and LINEMEDIAMODE_… bits.
  [[nodiscard]] std::int32_t BearerModes() const { return caps_.bearerModes; }
  [[nodiscard]] std::int32_t AddressModes() const { return caps_.addressModes; }
  [[nodiscard]] std::int32_t mediamodes() const { return caps_.mediaModes; }
  /// How many frequencies a tone that the line generates may have, 0 where it generates none; a set of LINETONEMODE_….
  [[nodiscard]] std::int32_t GenerateToneMaxNumFreq() const { return caps_.generateToneMaxNumFreq; }
  [[nodiscard]] std::int32_t GenerateToneModes() const { return caps_.generateToneModes; }
  [[nodiscard]] std::int32_t numTerminals() const { return caps_.numTerminals; }
  /// Whether the line carries voice and its calls are a person's: what makes it one that can be ticked.
  [[nodiscard]] bool LineSupportsVoiceCalls() const;

  /// Opens the current line. False when telephony refuses, and also, with LastError as it was, when a line is open
  /// already.
  [[nodiscard]] bool OpenLine(std::uint32_t privileges = LINECALLPRIVILEGE_NONE,
                              std::uint32_t mediamodes = LINEMEDIAMODE_INTERACTIVEVOICE);
  /// Asks for a call on the open line; true when telephony took the request, whose outcome is an event. An empty
  /// number asks for a call without an address. False, with LastError as it was, when no line is open.
  [[nodiscard]] bool MakeCallAsynch(const std::string& phonenumber = {});
  /// Asks for the call to be dropped; true when telephony took the request, whose outcome is an event. False, with
  /// LastError as it was, when there is no call.
  [[nodiscard]] bool DropCallAsynch();
  /// Closes the open line, which counts as closed whatever telephony answers. False when it refuses, and also, with
  /// LastError as it was, when no line is open.
  bool CloseLine();

  /// The driver's own configuration dialog for the current line. `ownerHWnd` is a window handle or 0; an empty class
  /// stands for the driver's default.
  [[nodiscard]] bool ConfigDialog(std::uintptr_t ownerHWnd = 0, const std::string& deviceClass = {});
  /// The system's dialing rules, applied to a number if one is given.
  [[nodiscard]] bool DialingPropertiesDialog(std::uintptr_t ownerHWnd = 0, const std::string& phonenumber = {});
  /// Draws the current line's icon, in pixels of the device context.
  [[nodiscard]] bool PaintDevIcon(std::uintptr_t hdc, std::int32_t left = 0, std::int32_t top = 0,
                                  std::int32_t width = 0, std::int32_t height = 0);

  /// The dialable form of a number by the location's dialing rules, empty when it cannot be translated.
  [[nodiscard]] std::string TransformPhoneNumber(const std::string& number);
  /// Its first step: blanks at the ends go, "/" counts as a blank, and of each run of blanks every fourth stays, from
  /// the first on: up to four become one. That a longer run keeps some is deliberate.
  [[nodiscard]] static std::string FoldBlanks(std::string_view number);
  /// Its second: "49 30 1234567" becomes "+49(30)1234567". Deliberately simple: the first two blanks become the
  /// brackets whatever stands between them, and without a second blank the rest of the number is lost.
  [[nodiscard]] static std::string BracketAreaCode(std::string_view number);

  /// True from Create on, and again when a call has ended; false while one is connected or being cleared.
  [[nodiscard]] bool Idle() const { return idle_; }
  /// Whether a line is open, with or without a call, or telephony is at it.
  [[nodiscard]] bool IsOpen() const { return hLine_ != 0 || opening_; }

  /// One line message; called by the callback only.
  void LineProcHandler(std::uint32_t hDevice, std::uint32_t dwMsg, std::uint32_t dwParam1, std::uint32_t dwParam2,
                       std::uint32_t dwParam3);

 private:
  struct Capabilities {
    std::string lineName;
    std::string providerInfo;
    std::string switchInfo;
    std::int32_t permanentLineId{0};
    std::int32_t stringFormat{0};
    std::int32_t numAddresses{0};
    std::int32_t maxDataRate{0};
    std::int32_t bearerModes{0};
    std::int32_t addressModes{0};
    std::int32_t mediaModes{0};
    std::int32_t generateToneMaxNumFreq{0};
    std::int32_t generateToneModes{0};
    std::int32_t numTerminals{0};
  };

  CvbTAPILine(const LineServices& services, LineEvents& events);

  /// Asks telephony to let the program in, and how many devices there are. False when it refuses or has none.
  [[nodiscard]] bool Register();
  void NegotiateVersions();
  void NegotiateVersion(std::size_t device);
  /// Reads the current line's capabilities; on a failure they stay as they are.
  void GetLineDevCaps();
  /// Reads the access codes and says how many locations there are.
  [[nodiscard]] std::int16_t ReadLocations();
  void TakeAccessCodes(std::span<const std::byte> translateCaps, const LINETRANSLATECAPS& header);
  void GetTAPIStructString(std::span<const std::byte> structure, std::uint32_t offset, std::uint32_t size,
                           std::string& text) const;
  /// Stores what stands before the buffer's NUL; false, and nothing stored, for a buffer without one.
  [[nodiscard]] bool TakeLocationCode(std::string_view buffer, std::string& code) const;
  [[nodiscard]] std::int32_t ExtensionWord(const char* name, std::uint32_t LINEEXTENSIONID::*word) const;
  [[nodiscard]] bool GetlineTranslateAddress(const std::string& number, std::string& dialable,
                                             std::string& displayable);

  void HandleReply(std::uint32_t requestId, std::int32_t result);
  void HandleCallState(std::uint32_t state);
  void HandleIdle();
  void HandleDisconnected();
  /// Gives back the call, the line and the registration. False where telephony has ever refused to shut down: it may
  /// still have the address of the call's handle.
  [[nodiscard]] bool Release();

  /// Stores the code of a failed call and says whether it was one.
  bool Succeeded(std::int32_t result);
  /// Stores what an asynchronous call answered: its request identifier, or the error.
  bool Accepted(std::int32_t result, std::uint32_t& requestId);

  LineServices services_;
  LineEvents* events_;          ///< not owned; null once the owner has let go
  std::uintptr_t instance_{0};  ///< the number by which the callback finds this object

  HLINEAPP hLineApp_{0};
  std::vector<std::uint32_t> apiVersions_;  ///< by device; 0 where nothing could be agreed upon
  std::vector<LINEEXTENSIONID> extensionIds_;
  std::int32_t highestApiVersion_{0};
  std::int32_t lowApi_{static_cast<std::int32_t>(TAPI_VERSION1_3)};
  std::uint32_t hiApi_{TAPI_VERSION3_0};
  std::int32_t lastError_{0};
  std::uint32_t numLines_{0};
  std::int32_t currentLineId_{0};
  Capabilities caps_;
  std::string areaCode_;
  std::string country_;
  std::string outsideLocalAccess_;
  std::string outsideLongDistanceAccess_;
  HLINE hLine_{0};
  std::shared_ptr<HCALL> hCall_{
      std::make_shared<HCALL>(0)};      ///< telephony writes it with the reply to the call request
  std::uint32_t makeCallRequestId_{0};  ///< of the request whose reply is still to come; 0 is none
  std::uint32_t dropRequestId_{0};
  bool stillRegistered_{false};  ///< telephony has refused a shutdown, and may write to hCall_ for ever
  bool idle_{false};
  bool opening_{false};  ///< telephony has been asked for a line, and may let messages in before it gives one
  std::int16_t internalNrLength_{3};
};

}  // namespace fonklav
