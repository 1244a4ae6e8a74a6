#include "tests/app/Dialer.h"

// From the command line to the bound line, with everything that can be missing.
namespace fonklav::test {
namespace {

using namespace testing;

TEST(CommandLine, IsJudged) {
  // The argument, whether the program starts with it, and the number that it is.
  using Row = std::tuple<const char*, bool, const char*>;
  for (const auto& [argument, starts, number] :
       {Row{"/run", true, ""}, Row{"/sett", true, ""}, Row{"0301234567", true, "0301234567"},
        Row{"*100#", true, "*100#"}, Row{" 123 ", true, " 123 "}, Row{"", false, ""}, Row{"/SETT", false, ""},
        Row{"/sett ", false, ""}, Row{"/run /sett", false, ""}, Row{"0 30 123", false, ""}}) {
    SCOPED_TRACE(argument);
    Dialer dialer(kLine);
    dialer.StoreLine("ISDN-Line1");
    dialer.process.otherRunning = true;  // that is another user's, or another suite's, and no reason to end
    EXPECT_EQ(dialer.Start(argument), starts);
    EXPECT_EQ(dialer.Controls().form.Visible(), std::string_view(argument) == "/sett");
    EXPECT_EQ(dialer.Text(ControlId::txtNumber), number);
    EXPECT_EQ(dialer.Buttons(), *number != 0 ? "[Dial]" : "[]");
    EXPECT_THAT(dialer.sim.TextsOf("lineMakeCall"), IsEmpty());
    EXPECT_EQ(dialer.boxes.shown.empty(), starts);
    if (starts) continue;
    EXPECT_THAT(dialer.boxes.shown,
                ElementsAre(FieldsAre("Ein Direktaufruf dieses Tools ist nicht vorgesehen!", 64, _)));
    EXPECT_THAT(dialer.sim.Calls(), IsEmpty());
    EXPECT_THAT(dialer.dde.asked, IsEmpty());
  }
}

TEST(CommandLine, IsNotLookedAtWhereTheSuitesFoldersAreUnknown) {
  Dialer dialer(kLine);
  dialer.File("C:\\Rufmon\\Rufmonpaths.ini") = "[Paths]\r\nProgramData=D:\\Daten\r\n";
  dialer.profile.brokenKey = "BookPath";
  EXPECT_FALSE(dialer.Start("/run"));
  EXPECT_THAT(dialer.boxes.shown, SizeIs(1));
}

const std::string kWrong = "Fehlende oder falsche TAPI-Version!";
const std::string kWrongTold = "line|" + kWrong + "\nlog|" + kWrong + "\n[]";
const std::string kNone = "Kein TAPI-Ger\xE4t ausgew\xE4hlt!";
const std::string kNoneTold = "Init2LastOK|0\nline|" + kNone + "\n";
const std::string kGone = "Ger\xE4t Fritz nicht verf\xFCgbar!";
const std::string kChecked = "Check area codes\nCheck area codes - OK\n";
const std::string kMade = kChecked + "Create line - OK\nSetLine - ";
const std::string kFailed = "TAPI check - Lower version Message=" + kWrong + "\n";
const std::string kTried = "\r\nPr\xFC\x66\x65 auf TAPI 1.3 - 1.4...";

/// A start whose line stage runs twice, before the link and after it.
struct StartRow {
  const char* name;
  std::string scenario;
  const char* stored;
  std::string heard;    ///< of the second run
  std::string caption;  ///< of the active line, in bytes
  const char* ticks;
  std::string debug;   ///< of the first run; the second is without what is told but once
  std::string status;  ///< what the box holds, in bytes
  std::size_t boxes{0};
  Matcher<std::vector<std::string>> errors{IsEmpty()};
};

const StartRow kStarts[] = {
    {"bound", kLine, "ISDN-Line1", "Init2LastOK|1\nline|ISDN-Line1\n[]", "ISDN-Line1", "x", kMade + "ISDN-Line1\n", ""},
    {"nothingStored", kLine, "", kNoneTold + "[]", kNone, "-", kMade + kNone + "\n", ""},
    {"storedLineGone", kLine, "Fritz", "Init2LastOK|0\nline|" + kGone + "\nlog|" + kGone + "\n[]", kGone, "-",
     kMade + kGone + "\n", ""},
    {"theLastLineHasNoVersionAndSeemsToSpeak", std::string(kLine) + "device name=B version=0x00010002\n", "",
     kNoneTold + "btnCall|0|SetLine\n[]", kNone, "-", kMade + kNone + "\n", ""},
    {"theLastLineHasNoVersionAndNoVoice", std::string(kLine) + "device name=C media=0x10\ndevice version=0x00010002\n",
     "", kNoneTold + "[]", kNone, "-", kMade + kNone + "\n", ""},
    {"aStoredNameFindsTheFirstThatBeginsWithItAndTicksItself",
     "device name=\"ISDN 10\"\ndevice name=\"ISDN 1\"\nlocation\n", "ISDN 1", "Init2LastOK|1\nline|ISDN 10\n[]",
     "ISDN 10", "-x", kMade + "ISDN 10\n", ""},
    {"onlyTapi14", std::string("tapi version=0x00010004\n") + kLine, "ISDN-Line1", "Init2LastOK|1\nline|ISDN-Line1\n[]",
     "ISDN-Line1", "x",
     kChecked + "TAPI check - Message=Incompatible API Version\nCreate line - OK Lower version\nSetLine - ISDN-Line1\n",
     "Incompatible API Version" + kTried},
    {"noUsableTapi", std::string(kLine) + "refuse lineInitializeEx 0x8000000C\n", "ISDN-Line1", kWrongTold, kWrong, "",
     kChecked + "TAPI check - Message=Incompatible API Version\n" + kFailed,
     "Incompatible API Version" + kTried + kWrong + kWrong},
    {"noLine", "location\n", "ISDN-Line1", kWrongTold, kWrong, "",
     kChecked + "TAPI check - Message=Unknown Error\n" + kFailed, "Unknown Error" + kTried + kWrong + kWrong},
    {"noCodes", std::string(kLine) + "refuse tapiGetLocationInfo 0x80000048\n", "ISDN-Line1", "[]", "LineID", "",
     "Check area codes\nCheck area codes - Fail\n", "", 1},
    {"noLibrary", "", "", kWrongTold, kWrong, "", kChecked + "TAPI check - Message=Unknown Error\n" + kFailed,
     "Unknown Error" + kTried + kWrong + kWrong, 0,
     AllOf(SizeIs(6), Contains("CvbTAPILine.CheckAreaCodes, Line:n + 53 + File not found"),
           Contains("CvbTAPILine.Create, Line:n + 53 + File not found Params(N:65539, N:65540)"))},
};

TEST(Startup, ReportsWhatItFindsAndWhatItMisses) {
  for (const StartRow& row : kStarts) {
    SCOPED_TRACE(row.name);
    Dialer dialer(row.scenario);
    dialer.errors = row.errors;
    dialer.Switch("LogTAPI=1\r\n");
    if (row.scenario.empty()) dialer.sim.inside = [](auto) { throw RunTimeError(ErrorNumber::FileNotFound); };
    if (*row.stored != 0) dialer.StoreLine(row.stored);
    dialer.Start("/run");
    EXPECT_EQ(dialer.Stage(), row.heard);
    EXPECT_EQ(dialer.Text(ControlId::lbLineIDActive), dialer.codePage.ToText(row.caption));
    EXPECT_EQ(dialer.Ticks(), row.ticks);
    EXPECT_EQ(dialer.Text(ControlId::txtTestStatus), dialer.codePage.ToText(row.status));
    EXPECT_EQ(dialer.boxes.shown.size(), row.boxes);
    EXPECT_FALSE(dialer.Controls().tmStart[0].Enabled() || dialer.Controls().tmStart[1].Enabled());
    EXPECT_EQ(dialer.Controls().tmStart[2].Enabled(), *row.stored != 0 && row.heard.starts_with("Init2LastOK"));
    const std::string again = std::regex_replace(row.debug, std::regex("TAPI check - Message=.*\n"), "");
    std::string steps;
    for (const std::string& step : dialer.Steps()) steps += step + "\n";
    // The first run fills the list, and the tick that it sets there binds the line once more.
    const std::string ticked = dialer.Ticks().find('x') == std::string::npos ? "" : "SetLine - " + row.caption + "\n";
    EXPECT_EQ(steps, "Start - Param=/run\n" + row.debug + ticked + "Init DDE\nDDE LinkOpen\n" + again);
  }
}

TEST(Startup, TelephonyOfTheFirstFamilyIsAskedAgainInItsOwnVersions) {
  Dialer dialer(std::string("tapi version=0x00010004\n") + kLine);
  dialer.Start("/run");
  const auto high = HasSubstr(" version=0x30000 ");
  const auto low = HasSubstr(" version=0x10004 ");
  EXPECT_THAT(ArgumentsOf(dialer.sim, "lineInitializeEx"), ElementsAre(high, low, high, low));
  EXPECT_THAT(ArgumentsOf(dialer.sim, "lineNegotiateAPIVersion"),
              Each(EndsWith("device=0x0 low=0x10003 high=0x10004")));
}

TEST(Startup, MissingAreaCodesAreShownOnceAndAskTelephonyForNothing) {
  Dialer dialer(std::string(kLine) + "refuse tapiGetLocationInfo 0x80000048\n");
  // The message lets others in: it must not stand on top of itself.
  dialer.boxes.whileShown = [&] { dialer.Input().TimerTick(TimerId::Start1); };
  dialer.Start("/run");
  dialer.Command("unload");
  EXPECT_THAT(dialer.boxes.shown, ElementsAre(FieldsAre(HasSubstr("Telefon und Modem"), 48, _)));
  EXPECT_THAT(dialer.sim.TextsOf("lineInitializeEx"), IsEmpty());
  dialer.dde.Sink().OnTerminate();
  EXPECT_EQ(dialer.view.unloads, 1) << "without a report that could fail, the flag alone tells";
}

TEST(LostLine, LeavesNothingThatLooksLikeOne) {
  const std::string bound = "Init2LastOK|1\nline|ISDN-Line1\n";
  const std::string retried = "log|Operation Failed\nlog|" + kTried.substr(2) + "\n";
  // What telephony has become after a good start, what is heard of it, and the caption of the active line.
  const std::tuple<const char*, std::string, std::string> rows[] = {
      {"refuse tapiGetLocationInfo 0x80000048", "[]", "LineID"},
      {"refuse lineInitializeEx 0x80000048", retried + kWrongTold, kWrong}};
  for (const auto& [fault, heard, caption] : rows) {
    for (const bool cancelled : {false, true}) {
      SCOPED_TRACE(fault);
      const auto dialer = Ready(kLine, "ISDN-Line1", "/sett");
      dialer->Input().Edit(ControlId::txtNumber, "0301234567");
      EXPECT_EQ(dialer->Buttons(), "[Dial]");
      dialer->sim.Rules().Apply(fault);
      if (cancelled) dialer->Input().Click(ControlId::cmdExit);
      if (!cancelled) dialer->Command("unload");
      EXPECT_EQ(dialer->Stage(), (cancelled ? "" : "cmd|quitt\n") + heard);
      EXPECT_EQ(dialer->Ticks(), "");
      EXPECT_EQ(dialer->Text(ControlId::lbLineIDActive), caption);
      dialer->Input().Edit(ControlId::txtNumber, "12345");
      EXPECT_EQ(dialer->Buttons(), "[]") << "no line is bound";
      // The command goes its way all the same, and finds no line to open.
      dialer->Command("cmd|call|0301234567");
      EXPECT_THAT(dialer->Stage(), EndsWith("btnCall|0|cmdWahl_Click 1\n[]"));
      EXPECT_EQ(dialer->sim.OpenLines(), 0U);
      dialer->errors =
          ElementsAre(HasSubstr("OpenLine, Line:n + 9 +"), HasSubstr("NegotiatedAPIVersion, Line:n + 9 +"));
      // Telephony has come back: the next stage finds everything again. It fills an empty list, and so does the Cancel.
      dialer->sim.Rules() = Scenario::Parse(kLine);
      dialer->Command("unload");
      EXPECT_EQ(dialer->Stage(), "cmd|quitt\n" + bound + bound + bound + "[Dial]");
      EXPECT_EQ(dialer->Ticks(), "x");
    }
  }
}

}  // namespace
}  // namespace fonklav::test
