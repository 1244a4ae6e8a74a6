#include <gmock/gmock.h>

#include <cstring>

#include "tapi/mTAPIFunctions.h"
#include "tests/tapi/TapiSystem.h"
#include "util/RunTimeError.h"
#include "util/Text.h"

// The line object on good, poor and hostile telephony.
namespace fonklav::test {
namespace {

using namespace testing;

const std::string kLocation = "location country=49 city=30 local=0 long=1\n";
const std::string kDevice = "device\n" + kLocation;

/// Telephony that writes down every call made, with the sizes of the buffers that it is given, and that may claim to
/// have more devices than it has.
class Measured : public LineSimulator {
 public:
  explicit Measured(const std::string& scenario) : LineSimulator(Scenario::Parse(scenario)) {
    SetLog([this](std::string_view line) {
      if (line.starts_with("call ")) calls.push_back(std::string(line.substr(5)) + std::exchange(size_, {}));
    });
  }
  std::int32_t lineInitializeEx(HLINEAPP& app, LineMessageSink& sink, const char* name, std::uint32_t& devices,
                                std::uint32_t& version, LINEINITIALIZEEXPARAMS& params) override {
    const auto result = LineSimulator::lineInitializeEx(app, sink, name, devices, version, params);
    devices = claimed.value_or(devices);
    return result;
  }
  std::int32_t lineGetDevCaps(HLINEAPP app, std::uint32_t device, std::uint32_t version, std::uint32_t extension,
                              std::span<std::byte> caps) override {
    return Sized(caps), LineSimulator::lineGetDevCaps(app, device, version, extension, caps);
  }
  std::int32_t lineGetTranslateCaps(HLINEAPP app, std::uint32_t version, std::span<std::byte> caps) override {
    return Sized(caps), LineSimulator::lineGetTranslateCaps(app, version, caps);
  }
  std::int32_t lineTranslateAddress(HLINEAPP app, std::uint32_t device, std::uint32_t version, const char* address,
                                    std::uint32_t card, std::uint32_t options, std::span<std::byte> output) override {
    return Sized(output), LineSimulator::lineTranslateAddress(app, device, version, address, card, options, output);
  }

  std::optional<std::uint32_t> claimed;
  std::vector<std::string> calls;

 private:
  void Sized(std::span<const std::byte> buffer) {
    std::uint32_t said = 0;
    std::memcpy(&said, buffer.data(), sizeof said);
    size_ = " " + std::to_string(buffer.size()) + " bytes, " + std::to_string(said) + " told";
  }
  std::string size_;
};

/// All that a line object can do on a call that it makes. Seen are the steps that failed, "-", or after which it keeps
/// another error, with that.
std::string Work(TapiSystem& system) {
  std::string seen;
  std::int32_t last = 0;
  const auto step = [&](const char* name, bool done) {
    const std::int32_t before = std::exchange(last, system.line->LastError());
    if (!done || before != last) seen += std::string(name) + (done ? "+ " : "- ");
    if (before != last) seen += HexText(static_cast<std::uint32_t>(last)) + " ";
  };
  step("codes", system.line->CheckAreaCodes());
  step("create", system.line->Create());
  if (system.line->numLines() > 1) system.line->CurrentLineID(1);
  step("open", system.line->OpenLine());
  step("notAgain", !system.line->OpenLine());
  step("call", system.line->MakeCallAsynch("0301234567"));
  system.Pump(10);
  step("drop", system.line->DropCallAsynch());
  system.Pump(20);
  step("closed", !system.line->IsOpen());
  step("config", system.line->ConfigDialog(5, "tapi/line") && system.line->ConfigDialog());
  step("rules", system.line->DialingPropertiesDialog(6, "12") && system.line->DialingPropertiesDialog());
  step("icon", system.line->PaintDevIcon(7, 1, 2, 16, 17) && system.line->PaintDevIcon(8));
  return seen;
}

TEST(LineObject, AsksTelephonyForThisAndNothingElse) {
  Measured telephony(
      "device name=A version=0x00010004\ndevice name=B version=0x00020002 icon=9\n"
      "device name=C version=0x00010004\nlocation country=49 city=30 local=9 id=3\n");
  TapiSystem system("", Stage::Made, &telephony);
  EXPECT_EQ(Work(system), "");
  EXPECT_THAT(system.icons.drawn, ElementsAre("7 1 2 9 16 17", "8 0 0 9 0 0"));
  EXPECT_THAT(system.icons.destroyed, ElementsAre(9U, 9U));
  system.line.reset();
  EXPECT_THAT(
      telephony.calls,
      ElementsAre(
          "tapiGetLocationInfo() = 0x0",
          std::string("lineInitializeEx(name=\"FonklavTAPI\" version=0x30000 size=") +
              (sizeof(void*) == 8 ? "0x1c" : "0x18") + " options=0x1) = 0x0",  // it holds a handle
          "lineNegotiateAPIVersion(app=0x10001 device=0x0 low=0x10003 high=0x30000) = 0x0",
          "lineNegotiateAPIVersion(app=0x10001 device=0x1 low=0x10003 high=0x30000) = 0x0",
          "lineNegotiateAPIVersion(app=0x10001 device=0x2 low=0x10003 high=0x30000) = 0x0",
          "lineGetDevCaps(app=0x10001 device=0x0 version=0x10004) = 0x0 2301 bytes, 2301 told",
          "lineGetTranslateCaps(app=0x10001 version=0x10004) = 0x0 6189 bytes, 6189 told",
          "lineGetDevCaps(app=0x10001 device=0x1 version=0x20002) = 0x0 2301 bytes, 2301 told",
          "lineOpen(app=0x10001 device=0x1 version=0x20002 instance=0x1 privileges=0x1 media=0x4) = 0x0",
          "lineTranslateAddress(app=0x10001 device=0x1 version=0x20002 address=\"90301234567\" card=0x0 options=0x0) = "
          "0x0 1064 bytes, 1064 told",
          "lineMakeCall(line=0x20001 address=\"90301234567\" country=0x0) = 1", "lineDrop(call=0x30001) = 2",
          "lineDeallocateCall(call=0x30001) = 0x0", "lineClose(line=0x20001) = 0x0",
          "lineConfigDialog(device=0x1 owner=0x5 class=\"tapi/line\") = 0x0",
          "lineConfigDialog(device=0x1 owner=0x0 class=null) = 0x0",
          "lineTranslateDialog(app=0x10001 device=0x1 version=0x20002 owner=0x6 address=\"12\") = 0x0",
          "lineTranslateDialog(app=0x10001 device=0x1 version=0x20002 owner=0x0 address=null) = 0x0",
          "lineGetIcon(device=0x1 class=null) = 0x0", "lineGetIcon(device=0x1 class=null) = 0x0",
          "lineDeallocateCall(call=0x30001) = 0x80000018", "lineShutdown(app=0x10001) = 0x0"));
}

TEST(LineObject, KeepsTheCodeOfWhatFailed) {
  // The function, and what is seen of it where it is refused and where telephony does not have it.
  using Row = std::tuple<const char*, const char*, const char*>;
  for (const auto& [function, refused, missing] :
       {Row{"tapiGetLocationInfo", "codes- ", ""},
        Row{"lineInitializeEx", "create- 0x80000048 open- call- drop- config- 0x80000050 rules- icon- ",
            "create- open- call- drop- config- 0x80000050 rules- icon- "},
        Row{"lineNegotiateAPIVersion", "create+ 0x8000000c open- call- drop- rules- ",
            "create- open- 0x8000000c call- drop- rules- "},
        Row{"lineGetDevCaps", "create+ 0x80000048 ", ""}, Row{"lineGetTranslateCaps", "create- ", "create- "},
        Row{"lineOpen", "open- 0x80000048 call- drop- ", "open- call- drop- "},
        Row{"lineTranslateAddress", "call+ 0x80000048 ", ""},
        Row{"lineMakeCall", "call- 0x80000048 drop- closed- ", "call- drop- closed- "},
        Row{"lineDrop", "drop- 0x80000048 closed- ", "drop- closed- "}, Row{"lineDeallocateCall", "", "closed- "},
        Row{"lineClose", "closed+ 0x80000048 ", ""}, Row{"lineConfigDialog", "config- 0x80000048 ", "config- "},
        Row{"lineTranslateDialog", "rules- 0x80000048 ", "rules- "},
        Row{"lineGetIcon", "icon- 0x80000048 ", "icon- "}}) {
    TapiSystem system(kDevice + "refuse " + function + " 0x80000048\n");
    EXPECT_EQ(Work(system), refused) << function;
    TapiSystem poor(kDevice);
    poor.sim.inside = Without(function);
    EXPECT_EQ(Work(poor), missing) << function;
    EXPECT_THAT(poor.log->errors, Contains(HasSubstr(" 453 "))) << function;
  }
  TapiSystem iconless("device icon=0\n" + kLocation);
  EXPECT_EQ(Work(iconless), "icon- ");
  EXPECT_THAT(iconless.icons.destroyed, IsEmpty()) << "no icon, nothing to give back";
}

TEST(Create, NegotiatesWithEachDeviceForItself) {
  TapiSystem system(
      "device version=0x00010004 ext0=1 ext1=2 ext2=3 ext3=4\ndevice version=0x00020002\n"
      "refuse lineNegotiateAPIVersion 0x80000043 nth=3 times=1\ndevice\n" +
          kLocation,
      Stage::Created);
  EXPECT_TRUE(system.line->Idle());
  std::vector<std::int32_t> versions;
  for (int device = 0; device < system.line->numLines(); ++device) {
    system.line->CurrentLineID(device);
    versions.push_back(system.line->NegotiatedAPIVersion());
  }
  EXPECT_THAT(versions, ElementsAre(0x00010004, 0x00020002, 0));
  EXPECT_EQ(system.line->OutsideLocalAccess() + system.line->OutsideLongDistanceAccess(), "01");
  system.line->CurrentLineID(0);
  const CvbTAPILine& line = *system.line;
  EXPECT_THAT((std::array{line.ExtAPI_ID0(), line.ExtAPI_ID1(), line.ExtAPI_ID2(), line.ExtAPI_ID3()}),
              ElementsAre(1, 2, 3, 4));
}

TEST(Create, WithoutALineOrALocationIsRegisteredAndFalse) {
  for (const char* scenario : {"location\n", "device\n"}) {
    TapiSystem system(scenario);
    EXPECT_FALSE(system.line->Create());
    EXPECT_EQ(system.line->LastError(), 0);
    EXPECT_EQ(system.sim.Registrations(), 1U);
    EXPECT_FALSE(system.line->Create());
    EXPECT_EQ(system.sim.Registrations(), 1U) << "the earlier registration is given back first";
    system.line.reset();
    EXPECT_EQ(system.sim.Registrations(), 0U);
  }
}

TEST(Create, HostileLocationsStayInTheirBuffer) {
  // dwNeededSize stands at 4, dwNumLocations at 12, the list's size at 16 and offset at 20, the current ID at 24.
  // Offset and value, whether the object is created, and the access code of the later of two entries for the location
  // or what the log says.
  using Row = std::tuple<const char*, bool, const char*>;
  const char* const overflow = "CvbTAPILine.Create 6 Overflow";
  const std::string locations = "device\nlocation id=1 local=9\nlocation id=1 local=0\nlocation id=8 local=3\n";
  for (const auto& [patch, created, access] :
       {Row{"0 value=0", true, "0"}, Row{"4 value=6189", true, "0"}, Row{"4 value=6190", false, ""},
        Row{"12 value=30000", true, "0"}, Row{"12 value=0x7FFF", true, "0"}, Row{"12 value=0x8000", false, overflow},
        Row{"12 value=0", false, ""}, Row{"12 value=1", true, "9"}, Row{"12 value=0xFFFFFFFF", false, ""},
        Row{"16 value=67", true, ""}, Row{"16 value=0xFFFFFFFF", true, ""}, Row{"20 value=6180", true, ""},
        Row{"20 value=0xFFFFFFF0", true, ""}, Row{"24 value=40000", false, overflow},
        Row{"24 value=0xFFFFFFFF", true, ""}}) {
    TapiSystem system(locations + "patch translatecaps offset=" + patch + "\n");
    EXPECT_EQ(system.line->Create(), created) << patch;
    std::string seen = system.line->OutsideLocalAccess();
    for (const std::string& error : system.log->errors) seen += error;
    EXPECT_EQ(seen, access) << patch;
  }
}

TEST(Create, HostileCapabilitiesReadAsEmptyWhereTheyLeaveTheBuffer) {
  // The name's size stands at 32 and its offset at 36; the buffer is 2301 bytes long.
  using Row = std::pair<const char*, const char*>;
  for (const auto& [patch, name] :
       {Row{"32 value=5", "Line"}, Row{"36 value=0", ""}, Row{"36 value=2301", ""}, Row{"36 value=0xFFFFFFFF", ""},
        Row{"36 value=2300\npatch devcaps offset=32 value=2", ""}, Row{"32 value=0", ""},
        Row{"32 value=0x80000000", ""}, Row{"32 value=0x7FFFFFFF", ""}, Row{"32 value=1", "L"}}) {
    TapiSystem system("device name=Line provider=P switch=S\n" + kLocation + "patch devcaps offset=" + patch,
                      Stage::Created);
    EXPECT_EQ(system.line->LineName(), name) << patch;
  }
  for (const auto& [length, name] : {std::pair{2001U, "Line"}, {2002U, ""}}) {
    TapiSystem system("device switch=S name=Line provider=" + std::string(length, 'P') + "\n" + kLocation,
                      Stage::Created);
    EXPECT_EQ(system.line->LineName(), name) << "what comes last does not fit";
  }
}

TEST(Create, MissingOrEndlessCodesAreNoCodes) {
  for (const auto& [codes, country, area, complete] : {std::tuple{"country=49 city=30", "49", "30", true},
                                                       {"country=1234567 city=7654321", "1234567", "7654321", true},
                                                       {"country=49 city=12345678", "49", "", false},
                                                       {"country=12345678 city=30", "", "30", false}}) {
    TapiSystem system(std::string("device\nlocation ") + codes);
    EXPECT_EQ(system.line->CheckAreaCodes(), complete) << codes;
    EXPECT_EQ(system.line->Country(), country);
    EXPECT_EQ(system.line->AreaCode(), area);
  }
}

TEST(Create, GoesByTheSignedNumberOfDevices) {
  for (const auto& [claimed, errors] : {std::pair{0U, 0U}, {0x80000000U, 0U}, {0xFFFFFFFFU, 0U}, {32769U, 1U}}) {
    Measured telephony(kDevice);
    telephony.claimed = claimed;
    TapiSystem system("", Stage::Made, &telephony);
    EXPECT_FALSE(system.line->Create());
    EXPECT_EQ(system.line->numLines(), 0);
    EXPECT_THAT(telephony.TextsOf("lineNegotiateAPIVersion"), IsEmpty());
    EXPECT_THAT(system.log->errors, SizeIs(errors)) << claimed;
  }
  TapiSystem most("repeat 32768 device\n" + kLocation, Stage::Created);
  EXPECT_EQ(most.line->numLines(), 32768);
}

TEST(CurrentLine, KeepsWhatItHasWithoutCapabilitiesAndOutsideTheDevices) {
  TapiSystem system(
      "device name=A rate=1\ndevice name=B rate=2\n" + kLocation + "refuse lineGetDevCaps 0x80000048 nth=2 times=1\n",
      Stage::Created);
  system.line->CurrentLineID(1);
  EXPECT_EQ(system.line->CurrentLineID(), 1);
  EXPECT_EQ(system.line->LineName(), "A") << "of the line before";
  EXPECT_EQ(system.line->maxDataRate(), 1);
  system.line->CurrentLineID(1);
  for (const int id : {-1, 2, 0x7FFFFFFF}) {
    EXPECT_THAT([&] { system.line->CurrentLineID(id); }, Throws<RunTimeError>(Property(&RunTimeError::Number, 380)));
  }
  EXPECT_EQ(system.line->CurrentLineID(), 1);
  EXPECT_EQ(system.line->LineName(), "B");
  EXPECT_THAT(system.log->errors, IsEmpty());
}

TEST(CurrentLine, BeforeAnyDeviceIsKnownIsError9) {
  TapiSystem system("refuse lineInitializeEx 0x80000048\n");
  const CvbTAPILine& line = *system.line;
  EXPECT_FALSE(line.Idle() || line.IsOpen());
  EXPECT_THAT(
      (std::array{line.LastError(), line.numLines(), line.CurrentLineID(), line.PermanentLineID(), line.StringFormat(),
                  line.numAddresses(), line.maxDataRate(), line.BearerModes(), line.AddressModes(), line.mediamodes(),
                  line.GenerateToneMaxNumFreq(), line.GenerateToneModes(), line.numTerminals()}),
      Each(0));
  EXPECT_FALSE(system.line->Create());
  EXPECT_EQ(system.line->NegotiatedAPIVersion(), 0);
  EXPECT_FALSE(system.line->LineSupportsVoiceCalls());
  EXPECT_FALSE(system.line->OpenLine());
  EXPECT_THAT(system.sim.TextsOf("lineOpen"), IsEmpty());
  EXPECT_THAT(system.log->errors, ElementsAre("CvbTAPILine.NegotiatedAPIVersion 9 Subscript out of range",
                                              "CvbTAPILine.OpenLine 9 Subscript out of range"));
}

TEST(Callback, ALineThatIsReplacedWhileItsEventRunsEndsFromTheLoop) {
  TapiSystem system("device\ncall reply after=5\ncall state CONNECTED after=10\n" + kLocation, Stage::Open);
  system.events.onEvent = [&](const std::string& event) {
    if (event != "Connected") return;
    system.line->Detach();
    system.line = system.MakeLine();
    EXPECT_TRUE(system.line->Create());
    EXPECT_EQ(system.sim.Registrations(), 2U) << "the old object is still inside its callback";
  };
  EXPECT_TRUE(system.line->MakeCallAsynch("1"));
  system.sim.Advance(std::chrono::milliseconds(20));
  EXPECT_EQ(system.loop.posted.size(), 1U);
  system.loop.Run();
  EXPECT_EQ(system.sim.Registrations(), 1U);
  EXPECT_EQ(system.sim.LiveCalls(), 0U);
  EXPECT_THAT(system.events.heard, ElementsAre("MakeCallResult 0", "Connected"));
}

TEST(Callback, TheIdleFlagFollowsItsEvent) {
  TapiSystem system(kDevice, Stage::Calling);
  std::string flags;
  system.events.onEvent = [&](const std::string& event) {
    flags += system.line->Idle() ? '1' : '0';
    // The handler pumps messages, and the end of the call arrives before it returns: the flag is the outer one's then.
    if (event == "Connected") system.State(LINECALLSTATE_IDLE);
  };
  for (const std::uint32_t state :
       {LINECALLSTATE_CONNECTED, LINECALLSTATE_IDLE, LINECALLSTATE_DIALING, LINECALLSTATE_DISCONNECTED}) {
    system.State(state);
  }
  EXPECT_THAT(system.events.heard,
              ElementsAre("MakeCallResult 0", "Connected", "Idle", "Idle", "Dialing", "Disconnected"));
  EXPECT_EQ(flags, "11011") << "each as it was before its own event";
  EXPECT_FALSE(system.line->Idle());
}

TEST(Trace, ShowsNumbersWithASignAndTheTextOfAFailedOpen) {
  TapiSystem system(kDevice + "refuse lineOpen 0x80000048\n", Stage::Created);
  system.log->steps.clear();
  system.callback.LineCallBackProc(0x80000001, LINE_REPLY, 1, 3, 0x80000048, 0);
  EXPECT_THAT(system.log->steps, IsEmpty()) << "nothing unless tracing is on";
  system.diagnostics.traceMode = true;
  system.callback.LineCallBackProc(0x80000001, LINE_REPLY, 1, 3, 0x80000048, 0);
  EXPECT_THAT(system.log->numbers, ElementsAre(-2147483647, 12, 3, -2147483576, 0));
  EXPECT_FALSE(system.line->OpenLine());
  EXPECT_THAT(system.log->steps,
              ElementsAre("mTAPIvb.LineCallBackProc", "CvbTAPILine.LineProcHandler", "CvbTAPILine.OpenLine",
                          "CvbTAPILine.ErrorString", "CvbTAPILine.GetLineErrString"));
}

TEST(End, GivesBackOneByOneWhateverFails) {
  for (const char* missing : {"lineDeallocateCall", "lineClose", "lineShutdown"}) {
    TapiSystem system(kDevice, Stage::Calling);
    system.sim.ForgetCalls();
    system.sim.inside = Without(missing);
    system.line.reset();
    std::vector<std::string> expected{"lineDeallocateCall", "lineClose", "lineShutdown"};
    std::erase(expected, missing);
    std::vector<std::string> called;
    for (const auto& call : system.sim.Calls()) called.push_back(call.function);
    EXPECT_EQ(called, expected);
    EXPECT_THAT(system.log->errors, ElementsAre(HasSubstr(" 453 ")));
  }
}

TEST(End, TellsWhetherTheLineWasClosed) {
  for (const auto& [fault, missing, closed] :
       {std::tuple{"", "", true}, {"refuse lineClose 0x80000048", "", false}, {"", "lineClose", false}}) {
    TapiSystem system(kDevice + fault, Stage::Open);
    system.sim.inside = Without(missing);
    EXPECT_EQ(system.line->CloseLine(), closed) << fault << missing;
    EXPECT_FALSE(system.line->CloseLine()) << "there is none any more";
  }
}

TEST(End, ThatTelephonyRefusesKeepsTheCellOfTheCall) {
  TapiSystem system(kDevice + "call reply after=20\nrefuse lineClose 0x80000048\nrefuse lineShutdown 0x80000048\n",
                    Stage::Open);
  ASSERT_TRUE(system.line->MakeCallAsynch("1"));
  system.line.reset();
  ASSERT_EQ(system.sim.WaitingMessages(), 1U);
  system.Pump(20);  // the reply writes the handle: the sanitizer sees where
  EXPECT_THAT(system.events.heard, IsEmpty());
}

TEST(Callback, OnlyTheRequestThatIsOutIsAnswered) {
  TapiSystem system("device\ncall nothing\n" + kLocation, Stage::Open);
  const auto reply = [&](std::uint32_t request, std::int32_t result) {
    system.line->LineProcHandler(0, LINE_REPLY, request, static_cast<std::uint32_t>(result), 0);
  };
  reply(0, 0);
  reply(1, 0);
  EXPECT_THAT(system.events.heard, IsEmpty());
  EXPECT_TRUE(system.line->MakeCallAsynch("1"));
  reply(2, 0);
  reply(1, -5);
  reply(1, 0);
  EXPECT_THAT(system.events.heard, ElementsAre("MakeCallResult -5"));
  EXPECT_EQ(system.sim.OpenLines(), 0U) << "a refused call closes the line first";
}

TEST(Callback, StatesWithoutAMeaningForUsPass) {
  TapiSystem system(kDevice, Stage::Open);
  for (std::uint32_t bit = 0; bit < 32; ++bit) system.State(1U << bit);
  system.State(LINECALLSTATE_CONNECTED | LINECALLSTATE_DIALING);
  system.line->LineProcHandler(0, LINE_LINEDEVSTATE, LINECALLSTATE_IDLE, 0, 0);
  EXPECT_THAT(system.events.heard, ElementsAre("Idle", "Dialing", "Connected", "Disconnected"));
}

TEST(Texts, OfErrorsAndStates) {
  TapiSystem system("");
  for (const std::uint32_t code : {0U, 1U, 0x80000000U, 0x80000004U, 0x80000025U, 0x80000031U, 0x80000057U, ~0U}) {
    EXPECT_EQ(system.line->ErrorString(static_cast<std::int32_t>(code)), "Unknown Error") << std::hex << code;
  }
  using Row = std::pair<std::uint32_t, const char*>;
  for (const auto& [code, text] :
       {Row{0x80000001, "Allocated"}, Row{0x80000005, "Call UnAvail"}, Row{0x80000024, "Invalid Device Handle"},
        Row{0x80000026, "Invalid Digit List"}, Row{0x80000032, "Invalid Param"}, Row{0x8000004E, "Target Not found"},
        Row{0x80000056, "No Multiple Instance"}}) {
    EXPECT_EQ(system.line->ErrorString(static_cast<std::int32_t>(code)), text);
  }
  // From the lowest bit on; a number that is no single state of these has no text.
  const std::vector<std::string> states = Split(
      "idle|offering call|accepted|dial-tone detected|dialing|ring-back detected|busy detected|network error|connected|"
      "proceeding|on hold|connected to conference|connecting to conference|transferring|disconnected|unknown call "
      "state",
      "|");
  for (std::int32_t state = 1; const std::string& text : states) {
    EXPECT_EQ(system.line->GetLineStateString(state), text);
    state <<= 1;
  }
  for (const int state : {0, 3, 0x110, 0x10000, -1}) {
    EXPECT_EQ(system.line->GetLineStateString(state), "unknown value passed to GetLineStateString()") << state;
  }
}

/// A registered line object, the table of its lines, and what is told of them.
struct Reporting : TapiSystem {
  explicit Reporting(const std::string& devices) : TapiSystem("device " + devices + "\n" + kLocation, Stage::Created) {}
  std::string Report(std::int16_t device = 0) { return functions.GetLineInfo(*line, device); }

  LineState lines;
  mTAPIFunctions functions{diagnostics, lines};
};

TEST(Report, NamesEverySetBitInItsOrder) {
  EXPECT_EQ(Reporting("name=Line provider=Prov switch=Sw id=42 format=1 addresses=2 rate=64000 bearer=0x3F "
                      "addressmodes=3 media=0x7FFE tones=0x1F tonefreq=3 terminals=5")
                .Report(),
            "TAPI LINE: #0\r\nTAPI LINE NAME: Line\r\nTAPI PROVIDER INFO: Prov\r\nTAPI SWITCH INFO: Sw\r\n"
            "Permanent Line ID: 42\r\nString Format: STRINGFORMAT_ASCII\r\n"
            "Number of addresses associated with this line: 2\r\nMax data rate: 64000\r\n"
            "Bearer Modes supported:\r\n\tLINEBEARERMODE_VOICE\r\n\tLINEBEARERMODE_SPEECH\r\n\tLINEBEARERMODE_DATA\r\n"
            "\tLINEBEARERMODE_ALTSPEECHDATA\r\n\tLINEBEARERMODE_MULTIUSE\r\n\tLINEBEARERMODE_NONCALLSIGNALING\r\n"
            "Address Modes supported:\r\n\tLINEADDRESSMODE_ADDRESSID\r\n\tLINEADDRESSMODE_DIALABLEADDR\r\n"
            "Media Modes supported:\r\n\tLINEMEDIAMODE_ADSI\r\n\tLINEMEDIAMODE_AUTOMATEDVOICE\r\n"
            "\tLINEMEDIAMODE_DATAMODEM\r\n\tLINEMEDIAMODE_DIGITALDATA\r\n\tLINEMEDIAMODE_G3FAX\r\n"
            "\tLINEMEDIAMODE_G4FAX\r\n\tLINEMEDIAMODE_INTERACTIVEVOICE\r\n\tLINEMEDIAMODE_MIXED\r\n"
            "\tLINEMEDIAMODE_TDD\r\n\tLINEMEDIAMODE_TELETEX\r\n\tLINEMEDIAMODE_TELEX\r\n\tLINEMEDIAMODE_UNKNOWN\r\n"
            "\tLINEMEDIAMODE_VIDEOTEX\r\nLine Tone Generation supported: True\r\n\tLINETONEMODE_BEEP\r\n"
            "\tLINETONEMODE_BILLING\r\n\tLINETONEMODE_BUSY\r\n\tLINETONEMODE_CUSTOM\r\n\tLINETONEMODE_RINGBACK\r\n"
            "Number of terminals for this line: 5");
}

TEST(Report, NamesTheFormatOfStringsAndEachBitByItself) {
  for (const auto& [format, name] : {std::pair{1, "ASCII"}, {2, "DBCS"}, {3, "UNICODE"}, {4, "BINARY"}}) {
    EXPECT_THAT(Reporting("format=" + std::to_string(format)).Report(),
                HasSubstr(std::string("String Format: STRINGFORMAT_") + name + "\r\n"));
  }
  for (const auto& [bits, begin, end, prefix] : {std::tuple{"bearer=", 0, 6, "\tLINEBEARERMODE_"},
                                                 {"addressmodes=", 0, 2, "\tLINEADDRESSMODE_"},
                                                 {"media=", 1, 14, "\tLINEMEDIAMODE_"},
                                                 {"tonefreq=1 tones=", 0, 5, "\tLINETONEMODE_"}}) {
    for (int bit = begin; bit < end; ++bit) {
      EXPECT_EQ(Split(Reporting(bits + std::to_string(1 << bit)).Report(), prefix).size(), 2U) << prefix << bit;
    }
  }
}

TEST(Report, LeavesOutWhatTheLineDoesNotSay) {
  Reporting system("name=Line format=0 bearer=0 addressmodes=0 media=0 tones=0x1F");
  EXPECT_EQ(system.Report(-1), "<No Valid TAPI Line Selected>");
  EXPECT_THAT(system.Report(),
              HasSubstr("Permanent Line ID: 1\r\nNumber of addresses associated with this line: 1\r\n"
                        "Max data rate: 64000\r\nBearer Modes supported:\r\nAddress Modes supported:\r\n"
                        "Media Modes supported:\r\nLine Tone Generation supported: False\r\nNumber of terminals"));
  EXPECT_EQ(system.Report(1), "");
  EXPECT_THAT(system.log->errors, ElementsAre("GetLineInfo 380 Invalid property value"));
}

TEST(LineTable, HoldsTheVoiceLinesOnlyAndWithoutTheirNuls) {
  Reporting system("name=Data media=0x10\ndevice name=A\ndevice name=Speech bearer=2\ndevice name=B");
  system.functions.GetTAPIInterfaces(*system.line);
  EXPECT_THAT(system.lines.table, ElementsAre(FieldsAre(1, "A"), FieldsAre(3, "B")));
  EXPECT_EQ(system.functions.GetLineID("B"), 3);
  for (const char* nobody : {"b", "", "A2"}) EXPECT_EQ(system.functions.GetLineID(nobody), -1) << nobody;
  system.functions.GetTAPIInterfaces(*TapiSystem(kDevice).line);
  EXPECT_THAT(system.lines.table, SizeIs(2)) << "a line object that knows of no line changes nothing";

  Reporting mute("media=0x10");
  system.functions.GetTAPIInterfaces(*mute.line);
  EXPECT_THAT(system.lines.table, ElementsAre(FieldsAre(_, ""))) << "without a voice line one empty record";
}

}  // namespace
}  // namespace fonklav::test
