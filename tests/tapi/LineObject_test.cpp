#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tapi/mTAPIFunctions.h"
#include "tests/tapi/TapiSystem.h"
#include "util/RunTimeError.h"

// The line object on good, poor and hostile telephony.
namespace fonklav::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kLocation = "location country=49 city=30 local=0 long=1\n";

TEST(Create, AsksEveryDeviceAndKeepsTheHighestVersion) {
  TapiSystem system(std::string("device version=0x00010004\ndevice version=0x00020002\n"
                                "refuse lineNegotiateAPIVersion 0x80000043 nth=3 times=1\ndevice\n") +
                    kLocation);
  ASSERT_TRUE(system.line->Create());
  EXPECT_TRUE(system.line->Idle());
  EXPECT_EQ(system.line->numLines(), 3);
  const std::array<std::int32_t, 3> versions{0x00010004, 0x00020002, 0};
  for (int device = 0; device < 3; ++device) {
    system.line->CurrentLineID(device);
    EXPECT_EQ(system.line->NegotiatedAPIVersion(), versions[static_cast<std::size_t>(device)]);
  }
  EXPECT_EQ(system.line->LastError(), static_cast<std::int32_t>(0x8000000C)) << "no version, no capabilities";
  EXPECT_EQ(system.line->OutsideLocalAccess(), "0");
  EXPECT_EQ(system.line->OutsideLongDistanceAccess(), "1");
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

TEST(Create, TheLaterOfTwoEntriesForTheCurrentLocationCounts) {
  TapiSystem system("device\nlocation id=7 local=1\nlocation id=7 local=2\nlocation id=8 local=3\n");
  ASSERT_TRUE(system.line->Create());
  EXPECT_EQ(system.line->OutsideLocalAccess(), "2");
}

struct LocationRow {
  const char* name;
  const char* patches;
  bool created;
  const char* access;
  bool overflow;
};

class HostileLocations : public testing::TestWithParam<LocationRow> {};

TEST_P(HostileLocations, StayInTheirBuffer) {
  TapiSystem system(std::string("device\nlocation id=1 local=0\n") + GetParam().patches);
  EXPECT_EQ(system.line->Create(), GetParam().created);
  EXPECT_EQ(system.line->OutsideLocalAccess(), GetParam().access);
  const std::vector<std::string> expected(GetParam().overflow ? 1 : 0, "CvbTAPILine.Create 6 Overflow");
  EXPECT_EQ(system.log->errors, expected);
}

// dwNeededSize stands at 4, dwNumLocations at 12, the list's size at 16 and offset at 20, the current ID at 24.
INSTANTIATE_TEST_SUITE_P(
    Rows, HostileLocations,
    testing::Values(LocationRow{"good", "", true, "0", false},
                    LocationRow{"needsMore", "patch translatecaps offset=4 value=6190\n", false, "", false},
                    LocationRow{"countAbsurd", "patch translatecaps offset=12 value=30000\n", true, "0", false},
                    LocationRow{"countOverflows", "patch translatecaps offset=12 value=0x8000\n", false, "", true},
                    LocationRow{"countNegative", "patch translatecaps offset=12 value=0xFFFFFFFF\n", false, "", false},
                    LocationRow{"listCutShort", "patch translatecaps offset=16 value=67\n", true, "", false},
                    LocationRow{"listSizeHuge", "patch translatecaps offset=16 value=0xFFFFFFFF\n", true, "", false},
                    LocationRow{"listOutside", "patch translatecaps offset=20 value=6180\n", true, "", false},
                    LocationRow{"listOffsetHuge", "patch translatecaps offset=20 value=0xFFFFFFF0\n", true, "", false},
                    LocationRow{"currentOverflows", "patch translatecaps offset=24 value=40000\n", false, "", true},
                    LocationRow{"currentNegative", "patch translatecaps offset=24 value=0xFFFFFFFF\n", true, "",
                                false}),
    [](const auto& row) { return row.param.name; });

struct CapsRow {
  const char* name;
  const char* patches;
  const char* lineName;
};

class HostileCaps : public testing::TestWithParam<CapsRow> {};

TEST_P(HostileCaps, ReadAsEmptyWhatLeavesTheBuffer) {
  TapiSystem system(std::string("device name=Line provider=P switch=S\n") + GetParam().patches + kLocation);
  ASSERT_TRUE(system.line->Create());
  EXPECT_EQ(system.line->LineName(), GetParam().lineName);
}

// The name's size stands at 32 and its offset at 36; the buffer is 2301 bytes long.
INSTANTIATE_TEST_SUITE_P(
    Rows, HostileCaps,
    testing::Values(CapsRow{"good", "", "Line"}, CapsRow{"offsetZero", "patch devcaps offset=36 value=0\n", ""},
                    CapsRow{"offsetAtTheEnd", "patch devcaps offset=36 value=2301\n", ""},
                    CapsRow{"offsetHuge", "patch devcaps offset=36 value=0xFFFFFFFF\n", ""},
                    CapsRow{"oneByteTooMany", "patch devcaps offset=36 value=2300\npatch devcaps offset=32 value=2\n",
                            ""},
                    CapsRow{"sizeZero", "patch devcaps offset=32 value=0\n", ""},
                    CapsRow{"sizeNegative", "patch devcaps offset=32 value=0x80000000\n", ""},
                    CapsRow{"sizeHuge", "patch devcaps offset=32 value=0x7FFFFFFF\n", ""},
                    CapsRow{"cutShort", "patch devcaps offset=32 value=2\n", "Li"}),
    [](const auto& row) { return row.param.name; });

TEST(CurrentLine, OutsideTheDevicesRaises380AndChangesNothing) {
  TapiSystem system(std::string("device name=A\ndevice name=B\n") + kLocation);
  ASSERT_TRUE(system.line->Create());
  system.line->CurrentLineID(1);
  for (const int id : {-1, 2, 0x7FFFFFFF}) {
    try {
      system.line->CurrentLineID(id);
      ADD_FAILURE() << id;
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), 380);
    }
  }
  EXPECT_EQ(system.line->CurrentLineID(), 1);
  EXPECT_EQ(system.line->LineName(), "B");
  EXPECT_THAT(system.log->errors, IsEmpty());
}

TEST(CurrentLine, BeforeAnyDeviceIsKnownItsPropertiesLogError9) {
  TapiSystem system("refuse lineInitializeEx 0x80000048\n");
  EXPECT_FALSE(system.line->Create());
  EXPECT_EQ(system.line->NegotiatedAPIVersion(), 0);
  EXPECT_FALSE(system.line->LineSupportsVoiceCalls());
  EXPECT_THAT(system.log->errors, ElementsAre("CvbTAPILine.NegotiatedAPIVersion 9 Subscript out of range"));
}

TEST(CurrentLine, AnAbsurdNumberOfDevicesEndsAtOnce) {
  TapiSystem system(std::string("repeat 40000 device\n") + kLocation);
  EXPECT_FALSE(system.line->Create());
  EXPECT_THAT(system.log->errors, ElementsAre("CvbTAPILine.Create 6 Overflow"));
  EXPECT_EQ(system.sim.CountOf("lineNegotiateAPIVersion"), 0U);
}

TEST(Callback, ALineThatIsReplacedWhileItsEventRunsEndsFromTheLoop) {
  TapiSystem system(std::string("device\ncall reply after=5\ncall state CONNECTED after=10\n") + kLocation);
  ASSERT_TRUE(system.Open());
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
  TapiSystem system(std::string("device\ncall reply after=5\n") + kLocation);
  ASSERT_TRUE(system.Open());
  EXPECT_TRUE(system.line->MakeCallAsynch("1"));
  system.Pump(10);
  std::string flags;
  system.events.onEvent = [&](const std::string& event) {
    flags += system.line->Idle() ? '1' : '0';
    // The handler pumps messages, and the end of the call arrives before it returns: the flag is the outer one's then.
    if (event == "Connected") system.line->LineProcHandler(0, LINE_CALLSTATE, LINECALLSTATE_IDLE, 0, 0);
  };
  for (const std::uint32_t state :
       {LINECALLSTATE_CONNECTED, LINECALLSTATE_IDLE, LINECALLSTATE_DIALING, LINECALLSTATE_DISCONNECTED}) {
    system.line->LineProcHandler(0, LINE_CALLSTATE, state, 0, 0);
  }
  EXPECT_THAT(system.events.heard,
              ElementsAre("MakeCallResult 0", "Connected", "Idle", "Idle", "Dialing", "Disconnected"));
  EXPECT_EQ(flags, "11011") << "each as it was before its own event";
  EXPECT_FALSE(system.line->Idle());
}

TEST(Callback, TracesItsNumbersWithASign) {
  TapiSystem system(std::string("device\n") + kLocation);
  ASSERT_TRUE(system.Open());
  system.log->steps.clear();
  system.callback.LineCallBackProc(0x80000001, LINE_REPLY, 1, 3, 0x80000048, 0);
  EXPECT_THAT(system.log->steps, IsEmpty()) << "nothing unless tracing is on";
  system.diagnostics.traceMode = true;
  system.callback.LineCallBackProc(0x80000001, LINE_REPLY, 1, 3, 0x80000048, 0);
  EXPECT_THAT(system.log->steps, ElementsAre("mTAPIvb.LineCallBackProc", "CvbTAPILine.LineProcHandler"));
  EXPECT_THAT(system.log->numbers, ElementsAre(-2147483647, 12, 3, -2147483576, 0));
}

TEST(Open, WithoutARegistrationIsItsOwnFaultAndAsksTelephonyForNothing) {
  TapiSystem system("refuse lineInitializeEx 0x80000048\n");
  EXPECT_FALSE(system.line->Create());
  EXPECT_FALSE(system.line->OpenLine());
  EXPECT_THAT(system.log->errors, ElementsAre("CvbTAPILine.OpenLine 9 Subscript out of range"));
  EXPECT_EQ(system.sim.CountOf("lineOpen"), 0U);
  EXPECT_EQ(system.line->LastError(), static_cast<std::int32_t>(0x80000048));
}

TEST(Open, ThatFailsLooksItsTextUp) {
  TapiSystem system(std::string("device\nrefuse lineOpen 0x80000048\n") + kLocation);
  ASSERT_TRUE(system.line->Create());
  system.diagnostics.traceMode = true;
  system.log->steps.clear();
  EXPECT_FALSE(system.line->OpenLine());
  EXPECT_THAT(system.log->steps,
              ElementsAre("CvbTAPILine.OpenLine", "CvbTAPILine.ErrorString", "CvbTAPILine.GetLineErrString"));
}

TEST(End, GivesBackOneByOneWhateverFails) {
  for (const char* missing : {"lineDeallocateCall", "lineClose", "lineShutdown"}) {
    TapiSystem system(std::string("device\ncall reply after=5\n") + kLocation);
    ASSERT_TRUE(system.Open());
    EXPECT_TRUE(system.line->MakeCallAsynch("1"));
    system.Pump(10);
    system.sim.ForgetCalls();
    system.sim.SetFunctionMissing(missing);
    system.line.reset();
    std::vector<std::string> given;
    for (const auto& call : system.sim.Calls()) given.push_back(call.function);
    std::vector<std::string> expected{"lineDeallocateCall", "lineClose", "lineShutdown"};
    std::erase(expected, missing);
    EXPECT_EQ(given, expected);
    EXPECT_EQ(system.log->errors.size(), 1U);
    EXPECT_THAT(system.log->errors.front(), HasSubstr(" 453 "));
  }
}

TEST(Callback, MessagesForNobodyPassInSilence) {
  TapiSystem system(std::string("device\n") + kLocation);
  ASSERT_TRUE(system.Open());
  system.line.reset();
  for (const std::uintptr_t instance : {std::uintptr_t{0}, std::uintptr_t{1}, std::uintptr_t{99}, ~std::uintptr_t{0}}) {
    system.callback.LineCallBackProc(1, LINE_CALLSTATE, instance, LINECALLSTATE_IDLE, 0, 0);
  }
  EXPECT_THAT(system.events.heard, IsEmpty());
  EXPECT_THAT(system.log->errors, IsEmpty());
}

TEST(Callback, OnlyTheRequestThatIsOutIsAnswered) {
  TapiSystem system(std::string("device\ncall nothing\n") + kLocation);
  ASSERT_TRUE(system.Open());
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

TEST(Callback, IdleTwiceIsToldTwiceAndTheStaleHandleDoesNoHarm) {
  TapiSystem system(std::string("device\ncall reply after=5\n") + kLocation);
  ASSERT_TRUE(system.Open());
  EXPECT_TRUE(system.line->MakeCallAsynch("1"));
  system.Pump(10);
  system.line->LineProcHandler(0, LINE_CALLSTATE, LINECALLSTATE_IDLE, 0, 0);
  system.line->LineProcHandler(0, LINE_CALLSTATE, LINECALLSTATE_IDLE, 0, 0);
  EXPECT_THAT(system.events.heard, ElementsAre("MakeCallResult 0", "Idle", "Idle"));
  EXPECT_FALSE(system.line->DropCallAsynch());
  EXPECT_EQ(system.line->LastError(), static_cast<std::int32_t>(0x80000018));
}

TEST(Callback, StatesWithoutAMeaningForUsPass) {
  TapiSystem system(std::string("device\n") + kLocation);
  ASSERT_TRUE(system.Open());
  for (std::uint32_t bit = 0; bit < 32; ++bit) system.line->LineProcHandler(0, LINE_CALLSTATE, 1U << bit, 0, 0);
  system.line->LineProcHandler(0, LINE_CALLSTATE, LINECALLSTATE_CONNECTED | LINECALLSTATE_DIALING, 0, 0);
  system.line->LineProcHandler(0, LINE_LINEDEVSTATE, LINECALLSTATE_IDLE, 0, 0);
  EXPECT_THAT(system.events.heard, ElementsAre("Idle", "Dialing", "Connected", "Disconnected"));
}

TEST(Texts, OfErrorsAndStates) {
  TapiSystem system("");
  const std::vector<std::pair<std::uint32_t, const char*>> errors{{0, "Unknown Error"},
                                                                  {1, "Unknown Error"},
                                                                  {0x80000000, "Unknown Error"},
                                                                  {0x80000001, "Allocated"},
                                                                  {0x80000004, "Unknown Error"},
                                                                  {0x80000005, "Call UnAvail"},
                                                                  {0x80000024, "Invalid Device Handle"},
                                                                  {0x80000025, "Unknown Error"},
                                                                  {0x80000026, "Invalid Digit List"},
                                                                  {0x80000031, "Unknown Error"},
                                                                  {0x80000032, "Invalid Param"},
                                                                  {0x80000048, "Operation Failed"},
                                                                  {0x8000004E, "Target Not found"},
                                                                  {0x80000052, "Re-init"},
                                                                  {0x80000056, "No Multiple Instance"},
                                                                  {0x80000057, "Unknown Error"},
                                                                  {0xFFFFFFFF, "Unknown Error"}};
  for (const auto& [code, text] : errors) {
    EXPECT_EQ(system.line->ErrorString(static_cast<std::int32_t>(code)), text) << std::hex << code;
  }
  const std::string unknown = "unknown value passed to GetLineStateString()";
  EXPECT_EQ(system.line->GetLineStateString(0), unknown);
  EXPECT_EQ(system.line->GetLineStateString(0x110), unknown);
  EXPECT_EQ(system.line->GetLineStateString(0x100), "connected");
  EXPECT_EQ(system.line->GetLineStateString(0x8000), "unknown call state");
  EXPECT_EQ(system.line->GetLineStateString(0x10000), unknown);
}

TEST(Report, NamesEverySetBitInItsOrder) {
  TapiSystem system(std::string("device name=Line provider=Prov switch=Sw id=42 format=1 addresses=2 rate=64000 "
                                "bearer=0x3F addressmodes=3 media=0x7FFE tones=0x1F tonefreq=3 terminals=5\n") +
                    kLocation);
  ASSERT_TRUE(system.line->Create());
  LineState lines;
  const mTAPIFunctions functions(system.diagnostics, lines);
  EXPECT_EQ(functions.GetLineInfo(*system.line, 0),
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

TEST(Report, LeavesOutWhatTheLineDoesNotSay) {
  TapiSystem system(std::string("device name=Line format=0 bearer=0 addressmodes=0 media=0 tones=0x1F\n") + kLocation);
  ASSERT_TRUE(system.line->Create());
  LineState lines;
  const mTAPIFunctions functions(system.diagnostics, lines);
  EXPECT_EQ(functions.GetLineInfo(*system.line, -1), "<No Valid TAPI Line Selected>");
  EXPECT_THAT(functions.GetLineInfo(*system.line, 0),
              HasSubstr("Permanent Line ID: 1\r\nNumber of addresses associated with this line: 1\r\n"
                        "Max data rate: 64000\r\nBearer Modes supported:\r\nAddress Modes supported:\r\n"
                        "Media Modes supported:\r\nLine Tone Generation supported: False\r\nNumber of terminals"));
  EXPECT_EQ(functions.GetLineInfo(*system.line, 1), "");
  EXPECT_THAT(system.log->errors, ElementsAre("GetLineInfo 380 Invalid property value"));
}

TEST(Dialogs, HandOverWhatTheyAreGiven) {
  TapiSystem system(std::string("device\n") + kLocation);
  ASSERT_TRUE(system.line->Create());
  EXPECT_TRUE(system.line->ConfigDialog(5, "tapi/line"));
  EXPECT_TRUE(system.line->ConfigDialog());
  EXPECT_THAT(system.sim.TextsOf("lineConfigDialog"), ElementsAre("tapi/line", "(null)"));
  EXPECT_TRUE(system.line->DialingPropertiesDialog(5, "123"));
  EXPECT_TRUE(system.line->DialingPropertiesDialog());
  EXPECT_THAT(system.sim.TextsOf("lineTranslateDialog"), ElementsAre("123", "(null)"));
  EXPECT_TRUE(system.line->PaintDevIcon(7, 1, 2, 16, 17));
  ASSERT_EQ(system.icons.drawn.size(), 1U);
  EXPECT_EQ(system.icons.destroyed, std::vector<std::uintptr_t>{system.icons.drawn.front().icon});
}

TEST(Dialogs, FailuresStayCodes) {
  TapiSystem system(std::string("device icon=0\nrefuse lineConfigDialog 0x80000023\n") + kLocation);
  ASSERT_TRUE(system.line->Create());
  EXPECT_FALSE(system.line->ConfigDialog(0, "nonsense"));
  EXPECT_EQ(system.line->LastError(), static_cast<std::int32_t>(0x80000023));
  EXPECT_FALSE(system.line->PaintDevIcon(7)) << "no icon, nothing painted";
  EXPECT_THAT(system.icons.destroyed, IsEmpty());
}

TEST(LineTable, HoldsTheVoiceLinesOnlyAndWithoutTheirNuls) {
  TapiSystem system(std::string("device name=Data media=0x10\ndevice name=A\ndevice name=Speech bearer=2\n"
                                "device name=B\n") +
                    kLocation);
  ASSERT_TRUE(system.line->Create());
  LineState lines;
  mTAPIFunctions functions(system.diagnostics, lines);
  functions.GetTAPIInterfaces(*system.line);
  ASSERT_EQ(lines.table.size(), 2U);
  EXPECT_EQ(lines.table[0].Name, "A");
  EXPECT_EQ(lines.table[1].ID, 3);
  EXPECT_EQ(functions.GetLineID("B"), 3);
  EXPECT_EQ(functions.GetLineID("b"), -1);
  EXPECT_EQ(functions.GetLineID(""), -1);
  EXPECT_EQ(functions.GetLineID("A2"), -1);
}

TEST(LineTable, WithoutAVoiceLineIsOneEmptyRecord) {
  TapiSystem system(std::string("device media=0x10\n") + kLocation);
  ASSERT_TRUE(system.line->Create());
  LineState lines;
  lines.table.assign(3, {1, "old"});
  mTAPIFunctions(system.diagnostics, lines).GetTAPIInterfaces(*system.line);
  ASSERT_EQ(lines.table.size(), 1U);
  EXPECT_EQ(lines.table[0].Name, "");
}

}  // namespace
}  // namespace fonklav::test
