#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/FormTexts.h"
#include "app/Layout.h"
#include "tests/app/Dialer.h"

// What a person does at the window: choosing a line, settings, panels, texts.
namespace fonklav::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kTwoLines = "device name=A version=0x00020000\ndevice name=B\nlocation local=9\n";

std::unique_ptr<Dialer> Started(const std::string& scenario, const std::string& stored = "A") {
  auto dialer = std::make_unique<Dialer>(scenario);
  if (!stored.empty()) dialer->StoreLine(stored);
  dialer->Start("/sett");
  dialer->TakeReports();
  return dialer;
}

std::string Ticks(Dialer& dialer) {
  std::string ticks;
  for (const auto& entry : dialer.Controls().lstTAPI.Entries()) ticks += entry.ticked ? 'x' : '-';
  return ticks;
}

TEST(Lines, TickingASecondLeavesOnlyThatOneAndBindsIt) {
  const auto dialer = Started(kTwoLines);
  dialer->Input().TickEntry(1, true);
  EXPECT_EQ(Ticks(*dialer), "-x");
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("Init2LastOK|1", "line|B"));
  dialer->Input().TickEntry(1, false);
  EXPECT_EQ(Ticks(*dialer), "-x") << "the only tick cannot be taken away";
  EXPECT_THAT(dialer->Settings(), Not(HasSubstr("TAPILine=B"))) << "nothing is stored before OK";
}

TEST(Lines, AReportLeavesTheTickedLineCurrent) {
  const auto dialer = Started(kTwoLines);
  dialer->Input().ClickEntry(1);
  EXPECT_THAT(dialer->Controls()[ControlId::txtLineInfo].Text(), HasSubstr("TAPI LINE: #1\r\nTAPI LINE NAME: B\r\n"));
  EXPECT_THAT(dialer->TakeReports(), IsEmpty());
  dialer->Command("cmd|call|0301234567");
  EXPECT_THAT(dialer->TakeReports(), testing::Contains("anzlog|Anmeldung >> A"));
  dialer->Input().ClickEntry(7);
  EXPECT_THAT(dialer->ErrorLog(), IsEmpty());
}

TEST(Lines, ThatDisappearNextToEachOtherGoOneARefresh) {
  auto dialer = Started("device name=A\ndevice name=B\ndevice name=C\nlocation\n", "C");
  EXPECT_EQ(dialer->Controls().lstTAPI.Count(), 3U);
  auto& devices = dialer->sim.Rules().devices;
  devices.erase(devices.begin(), devices.begin() + 2);
  dialer->Input().TimerTick(TimerId::Start1);  // the line stage again
  ASSERT_EQ(dialer->Controls().lstTAPI.Count(), 2U);
  EXPECT_EQ(dialer->Controls().lstTAPI.At(0).text, "B");
}

TEST(Settings, SaveWritesTheFourKeysAndHides) {
  const auto dialer = Started(kTwoLines);
  dialer->Input().TickEntry(1, true);
  dialer->Input().Edit(ControlId::txtSettVW, "0,");
  dialer->Input().Moved(607.5F, 1200);
  dialer->TakeReports();
  dialer->Input().Click(ControlId::cmdSave);
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("Init2LastOK|1", "line|B", "cmd|settchange"));
  EXPECT_EQ(dialer->Settings(),
            "[TAPIDial]\r\nTAPILine=B\r\nTAPIAmtVW=0,\r\n[Dimensions]\r\nTopTAPI=607.5\r\nLeftTAPI=1200\r\n");
  EXPECT_FALSE(dialer->Controls().form.Visible());
  EXPECT_EQ(dialer->View().unloads, 0);
}

TEST(Settings, CancelBringsTheSavedLineBackAndReportsItTwice) {
  const auto dialer = Started(kTwoLines);
  dialer->Input().TickEntry(1, true);
  dialer->Input().Edit(ControlId::txtSettVW, "77");
  dialer->TakeReports();
  dialer->Input().Click(ControlId::cmdExit);
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("Init2LastOK|1", "line|A", "Init2LastOK|1", "line|A"));
  EXPECT_EQ(Ticks(*dialer), "x-");
  EXPECT_EQ(dialer->Controls()[ControlId::txtSettVW].Text(), "");
}

struct LimitRow {
  const char* file;
  float top;
};

TEST(Settings, PositionsAreAppliedAsReadAndDefaultTo600) {
  for (const LimitRow& row : {LimitRow{"", 600}, LimitRow{"TopTAPI=-90\r\n", -90}, LimitRow{"TopTAPI=abc\r\n", 0},
                              LimitRow{"TopTAPI=16777216\r\n", 16777216}}) {
    Dialer dialer(kTwoLines);
    dialer.files.files[FakeFileSystem::Key(Dialer::kSettings)] = std::string("[Dimensions]\r\n") + row.file;
    dialer.Start("/run");
    EXPECT_EQ(dialer.Controls().form.Top(), row.top) << row.file;
    EXPECT_EQ(dialer.Controls().form.Left(), 600);
  }
}

TEST(Settings, TheUsersCodeStandsInOnlyWhereTheLocationHasNone) {
  for (const auto& [location, dialed] :
       {std::pair{"location local=9\n", "90301234567"}, std::pair{"location local=\"\"\n", "00301234567"}}) {
    auto dialer = Started(std::string("device name=A\n") + location);
    dialer->Input().Edit(ControlId::txtSettVW, "0");
    dialer->Command("cmd|call|0301234567");
    EXPECT_THAT(dialer->sim.TextsOf("lineMakeCall").back(), testing::AnyOf("90301234567", "0301234567"))
        << "not before it was saved";
    dialer->Pump(100);
    dialer->Input().Click(ControlId::cmdHangUp);
    dialer->Pump(100);
    dialer->Input().Click(ControlId::cmdSave);
    dialer->Input().Click(ControlId::cmdWahl);
    EXPECT_EQ(dialer->sim.TextsOf("lineMakeCall").back(), dialed);
  }
}

TEST(Closing, HidesWhileLinkedAndSaysSoInTheDebugLog) {
  Dialer dialer(kTwoLines);
  dialer.files.files["c:\\rufmon\\rufmonspec.ini"] = "[Debug]\r\nLogTAPI=1\r\n";
  dialer.Start("/sett");
  dialer.Input().CloseRequested(UnloadMode::UserClosed);
  EXPECT_FALSE(dialer.Controls().form.Visible());
  EXPECT_EQ(dialer.View().unloads, 0);
  EXPECT_THAT(dialer.DebugLog(), HasSubstr("2015/03/07  09:05:31  TAPI FVT Start - Param=/sett\r\n"));
  EXPECT_THAT(dialer.DebugLog(), HasSubstr("TAPI FVT FormFonklav_QueryUnload - Param=0\r\n2015/03/07  09:05:31  "
                                           "TAPI FVT FormFonklav_QueryUnload - Cancel\r\n"));
  dialer.Input().CloseRequested(UnloadMode::SessionEnds);
  EXPECT_EQ(dialer.View().unloads, 1);
}

TEST(Panels, OneButtonTogglesItsOwnPanelAndTheOtherSwitches) {
  const auto dialer = Started(kTwoLines);
  auto& controls = dialer->Controls();
  const auto seen = [&] {
    return std::to_string(static_cast<int>(controls.form.Height())) +
           (controls[ControlId::frmInfo0].Visible() ? " info" : "") +
           (controls[ControlId::frmInfo1].Visible() ? " test" : "");
  };
  EXPECT_EQ(seen(), "3435 info");
  dialer->Input().Click(ControlId::cmdInfo1);
  EXPECT_EQ(seen(), "6690 test");
  EXPECT_THAT(dialer->View().focus, ElementsAre(ControlId::txtNumber));
  dialer->Input().Click(ControlId::cmdInfo1);
  EXPECT_EQ(seen(), "3435 test");
  dialer->Input().Click(ControlId::cmdInfo0);
  dialer->Input().Click(ControlId::cmdInfo1);
  EXPECT_EQ(seen(), "6690 test");
  dialer->Input().Resized(7080, 3435);
  dialer->Input().Click(ControlId::cmdInfo1);
  EXPECT_EQ(seen(), "6690 test") << "shrunk by hand, any press expands";
}

TEST(Number, TheDialButtonFollowsTheTypedText) {
  const auto dialer = Started(kTwoLines);
  for (const auto& [text, enabled] : {std::pair{"12", true}, std::pair{"12a", false}, std::pair{"*100#", true}}) {
    dialer->Input().KeyPress(ControlId::txtNumber, 'a');
    dialer->Input().Edit(ControlId::txtNumber, text);
    EXPECT_EQ(dialer->Controls()[ControlId::cmdWahl].Enabled(), enabled) << text;
  }
  const auto unbound = Started(kTwoLines, "Z");
  unbound->Input().Edit(ControlId::txtNumber, "12");
  EXPECT_FALSE(unbound->Controls()[ControlId::cmdWahl].Enabled()) << "typing asks for a bound line";
}

TEST(Number, ClearingTheStatusBoxTellsNobody) {
  const auto dialer = Started(kTwoLines);
  dialer->Command("cmd|hangup");
  dialer->TakeReports();
  dialer->Input().Click(ControlId::cmdLogClear);
  EXPECT_EQ(dialer->Controls()[ControlId::txtTestStatus].Text(), "");
  EXPECT_THAT(dialer->TakeReports(), IsEmpty());
}

TEST(Texts, ComeFromTheFileKeyByKey) {
  Dialer dialer(kTwoLines);
  std::string file = "[Data]\r\n";
  for (std::size_t row = 0; row < kFormTexts.size(); row += 2) {
    file += std::string(kFormTexts[row].text.key) + "=T" + std::to_string(row) + "\r\n";
    if (row + 1 < kFormTexts.size()) file += std::string(kFormTexts[row + 1].text.key) + "=\r\n";
  }
  file += "Button_OK=&Go<CR><TAB><cr>\r\nSettings_ToolTip_Prefix=tip\r\nDisplay_Menu_Settings=Settings\r\n";
  dialer.files.files["c:\\rufmon\\base\\language_44.ini"] = file;
  dialer.files.files["c:\\programdata\\rufmon\\data\\rufmon.ini"] = "[General]\r\nLanguage=44\r\n";
  dialer.StoreLine("gone");
  dialer.Start("/run");
  const auto& controls = dialer.Controls();
  EXPECT_EQ(controls[ControlId::cmdHangUp].Text(), "T0");
  EXPECT_EQ(controls[ControlId::cmdWahl].Text(), "T8");
  EXPECT_EQ(controls[ControlId::lbLineIDActive].Text(), "T6 gone nicht verfügbar!");
  EXPECT_EQ(controls[ControlId::cmdSave].Text(), "&Go\r\n\t<cr>");
  EXPECT_EQ(controls[ControlId::cmdExit].Text(), LayoutOf(ControlId::cmdExit).text);
  EXPECT_EQ(controls.ToolTip(), "tip");
  EXPECT_EQ(controls.form.Caption(), "Rufmon -  TAPI Wählhilfe Settings");
}

TEST(Texts, WithoutAFileAreGerman) {
  const auto dialer = Started(kTwoLines);
  EXPECT_EQ(dialer->Controls().form.Caption(), "Rufmon -  TAPI Wählhilfe Einstellungen");
  EXPECT_EQ(dialer->Controls()[ControlId::cmdExit].Text(), "A&bbrechen");
  EXPECT_EQ(dialer->Controls()[ControlId::cmdWahl].Text(), "Wählen");
  EXPECT_EQ(dialer->Controls().ToolTip(), "00, 0 oder NICHTS vor nationalen Nummern, abhängig vom CAPI-Hersteller");
}

}  // namespace
}  // namespace fonklav::test
