#include <algorithm>

#include "app/FormTexts.h"
#include "app/Layout.h"
#include "app/modSaveSetting.h"
#include "tapi/mTAPIFunctions.h"
#include "tests/app/Dialer.h"
#include "tests/config/ConfigSystem.h"

// What a person does at the window, and what the form hands to the window that shows it.
namespace fonklav::test {
namespace {

using namespace testing;

constexpr const char* kTwoLines = "device name=A version=0x00020000\ndevice name=B\nlocation local=9\n";

std::unique_ptr<Dialer> Started(const std::string& scenario, const std::string& stored = "A") {
  return Ready(scenario, stored, "/sett");
}

TEST(Lines, AReportLeavesTheTickedLineCurrent) {
  const auto dialer = Started(kTwoLines);
  dialer->Input().ClickEntry(1);
  EXPECT_THAT(dialer->Text(ControlId::txtLineInfo), HasSubstr("TAPI LINE: #1\r\nTAPI LINE NAME: B\r\n"));
  EXPECT_THAT(dialer->TakeReports(), IsEmpty());
  dialer->Command("cmd|call|0301234567");
  EXPECT_THAT(dialer->TakeReports(), Contains("anzlog|Anmeldung >> A"));
  dialer->Input().ClickEntry(2);
}

TEST(Lines, ThatDisappearNextToEachOtherGoOneARefresh) {
  auto dialer = Started("device name=A\ndevice name=B\ndevice name=C\nlocation\n", "C");
  EXPECT_EQ(dialer->Controls().lstTAPI.Count(), 3U);
  auto& devices = dialer->sim.Rules().devices;
  devices.erase(devices.begin(), devices.begin() + 2);
  dialer->Input().TimerTick(TimerId::Start1);  // the line stage again
  ASSERT_EQ(dialer->Controls().lstTAPI.Count(), 2U);
  EXPECT_EQ(dialer->Controls().lstTAPI.At(0).text, "B");
  dialer->Input().ClickEntry(1);
  dialer->Input().ClickEntry(0);
  EXPECT_EQ(dialer->Text(ControlId::txtLineInfo), "<No Valid TAPI Line Selected>") << "and no report on another one";
}

TEST(Lines, OneTickStaysWhicheverIsSet) {
  const auto dialer = Started("device name=A\ndevice name=B\ndevice name=C\nlocation\n");
  for (const auto& [entry, ticks] : {std::pair{2U, "--x"}, {1U, "-x-"}, {0U, "x--"}, {2U, "--x"}}) {
    for (const bool tick : {true, false}) {
      dialer->Input().TickEntry(entry, tick);
      EXPECT_EQ(dialer->Ticks(), ticks) << "the only tick cannot be taken away";
    }
  }
}

TEST(Settings, TheNewTickIsBoundAtOnceAndStoredBySaveAndBroughtBackByCancel) {
  const auto dialer = Started(kTwoLines);
  const auto& form = dialer->Controls().form;
  const std::string before = dialer->Settings();
  dialer->Input().TickEntry(1, true);
  EXPECT_EQ(dialer->Ticks(), "-x");
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("Init2LastOK|1", "line|B"));
  dialer->Input().Edit(ControlId::txtSettVW, "0,");
  dialer->Input().Moved(607.5F, 1200);
  dialer->TakeReports();
  EXPECT_EQ(dialer->Settings(), before) << "nothing is stored before OK";
  dialer->Input().Click(ControlId::cmdSave);
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("Init2LastOK|1", "line|B", "cmd|settchange"));
  EXPECT_EQ(dialer->Settings(),
            "[TAPIDial]\r\nTAPILine=B\r\nTAPIAmtVW=0,\r\n[Dimensions]\r\nTopTAPI=607.5\r\nLeftTAPI=1200\r\n");
  EXPECT_FALSE(form.Visible());

  dialer->Command("settings");
  dialer->profile.WriteString("TAPIDial", "TAPIAmtVW", "0w,", Dialer::kSettings);
  dialer->Input().TickEntry(0, true);
  dialer->Input().Edit(ControlId::txtSettVW, "77");
  dialer->TakeReports();
  dialer->Input().Click(ControlId::cmdExit);
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("Init2LastOK|1", "line|B", "Init2LastOK|1", "line|B"));
  EXPECT_EQ(dialer->Ticks(), "-x");
  EXPECT_EQ(dialer->Text(ControlId::txtSettVW), "0w,") << "as it is stored, number or not";
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(dialer->view.unloads, 0);
}

TEST(Settings, SaveWithoutATickKeepsTheStoredName) {
  const auto dialer = Started(kTwoLines, "gone");
  dialer->Input().Click(ControlId::cmdSave);
  EXPECT_THAT(dialer->TakeReports(), ElementsAre("Init2LastOK|0", "line|Ger\xE4t gone nicht verf\xFCgbar!",
                                                 "log|Ger\xE4t gone nicht verf\xFCgbar!", "cmd|settchange"));
  EXPECT_THAT(dialer->Settings(), HasSubstr("TAPILine=gone\r\n"));
}

TEST(Settings, ANameOfNoLineThatIsStoredMeanwhileTakesTheLineAway) {
  const auto dialer = Started(kTwoLines);
  dialer->StoreLine("gone");
  dialer->Command("unload");
  EXPECT_THAT(dialer->TakeReports(), Contains("Init2LastOK|0"));
  dialer->Input().Edit(ControlId::txtNumber, "12");
  EXPECT_EQ(dialer->Buttons(), "[]");
}

TEST(Settings, PositionsAreAppliedAsReadAndDefaultTo600) {
  for (const auto& [line, top] : {std::pair{"", 600.0F}, std::pair{"TopTAPI=-90\r\n", -90.0F},
                                  std::pair{"TopTAPI=abc\r\n", 0.0F}, std::pair{"TopTAPI=16777216\r\n", 16777216.0F}}) {
    Dialer dialer(kTwoLines);
    dialer.File(Dialer::kSettings) = std::string("[Dimensions]\r\n") + line;
    dialer.Start("/run");
    EXPECT_EQ(dialer.Controls().form.Top(), top) << line;
    EXPECT_EQ(dialer.Controls().form.Left(), 600);
  }
}

TEST(Settings, LimitsForLogsAreKeptWithinTheirRange) {
  for (const auto& [count, backups, kept] : {std::tuple{"", "", "25 9"},
                                             {"10", "0", "10 0"},
                                             {"1000", "9", "1000 9"},
                                             {"9", "-1", "10 0"},
                                             {"1001", "10", "1000 9"}}) {
    ConfigSystem system;
    EXPECT_TRUE(system.Init());
    system.File(Dialer::kSettings) =
        std::string("[General]\r\nLogCount=") + count + "\r\nBackupCount=" + backups + "\r\n";
    FormControls controls;
    LineState lines;
    DialSettings settings;
    LogLimits limits{0, 0};
    modSaveSetting(system.diagnostics, system.config.ini, controls.form, lines, settings, limits).LoadSettings();
    EXPECT_EQ(std::to_string(limits.logLineLimit) + " " + std::to_string(limits.backupCount), kept);
  }
}

TEST(Settings, TheUsersCodeStandsInOnlyWhereTheLocationHasNone) {
  for (const auto& [location, before, after] : {std::tuple{"location local=9\n", "90301234567", "90301234567"},
                                                std::tuple{"location local=\"\"\n", "0301234567", "00301234567"}}) {
    const auto dialer = Started(std::string("device name=A\n") + location);
    dialer->Input().Edit(ControlId::txtSettVW, "0");
    dialer->Command("cmd|call|0301234567", 100);
    dialer->Input().Click(ControlId::cmdHangUp);
    dialer->Pump(100);
    dialer->Input().Click(ControlId::cmdSave);
    dialer->Input().Click(ControlId::cmdWahl);
    EXPECT_THAT(dialer->sim.TextsOf("lineMakeCall"), ElementsAre(before, after)) << "not before it was saved";
  }
}

TEST(Closing, HidesWhileLinkedAndEndsOtherwiseAndWithTheSession) {
  for (const bool linked : {true, false}) {
    for (const int mode : {0, 1, 2, 3}) {
      SCOPED_TRACE(mode);
      Dialer dialer(kTwoLines);
      dialer.Switch("LogTAPI=1\r\n");
      dialer.dde.serverRunning = linked;
      dialer.Start("/sett");
      dialer.Input().TickEntry(0, true);
      dialer.Input().Edit(ControlId::txtNumber, "0301234567");
      dialer.Input().Click(ControlId::cmdWahl);
      EXPECT_EQ(dialer.sim.LiveCalls(), 1U);
      dialer.File(Dialer::kDebugLog).clear();
      dialer.Input().CloseRequested(static_cast<UnloadMode>(mode));
      const bool hidden = linked && mode < 2;
      EXPECT_THAT(dialer.Steps(), ElementsAre("FormFonklav_QueryUnload - Param=" + std::to_string(mode),
                                              hidden ? "FormFonklav_QueryUnload - Cancel" : "FormFonklav_Unload"));
      EXPECT_EQ(dialer.Controls().form.Visible(), !hidden) << "the window goes with the program, not before";
      EXPECT_EQ(dialer.view.unloads, hidden ? 0 : 1);
      EXPECT_EQ(dialer.sim.LiveCalls(), hidden ? 1U : 0U) << "the call ends with the program too";
      EXPECT_EQ(dialer.sim.Registrations(), hidden ? 1U : 0U);
    }
  }
}

TEST(Closing, WhateverComesAfterTheEndFindsNobody) {
  const auto dialer = Started(kTwoLines);
  dialer->sim.inside = [&](std::string_view function) {
    if (function == "lineShutdown") dialer->dde.Sink().OnData("cmd|hangup");
  };
  dialer->Input().CloseRequested(UnloadMode::SessionEnds);
  dialer->sim.ForgetCalls();
  for (const TimerId timer : {TimerId::Start0, TimerId::Start1, TimerId::Start2}) dialer->Input().TimerTick(timer);
  dialer->Command("cmd|call|0301234567");
  dialer->Input().TickEntry(1, true);
  dialer->Input().ClickEntry(1);
  dialer->Input().Edit(ControlId::txtNumber, "12");
  for (const LayoutRow& row : Layout()) dialer->Input().Click(row.id);
  dialer->Input().CloseRequested(UnloadMode::UserClosed);
  dialer->Pump(1000);
  EXPECT_THAT(dialer->sim.Calls(), IsEmpty());
  EXPECT_THAT(dialer->TakeReports(), IsEmpty());
  EXPECT_THAT(dialer->dde.asked, SizeIs(1));
  EXPECT_EQ(dialer->view.unloads, 1);
  for (const Timer& timer : dialer->Controls().tmStart) EXPECT_FALSE(timer.Enabled());
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
  for (const auto& [button, shown] :
       {std::pair{ControlId::cmdInfo1, "6690 test"}, std::pair{ControlId::cmdInfo1, "3435 test"},
        std::pair{ControlId::cmdInfo0, "6690 info"}, std::pair{ControlId::cmdInfo1, "6690 test"}}) {
    dialer->Input().Click(button);
    EXPECT_EQ(seen(), shown);
  }
  EXPECT_THAT(dialer->view.focus, ElementsAre(ControlId::txtNumber, ControlId::txtNumber));
  dialer->Input().Resized(7080, 3435);
  dialer->Input().Click(ControlId::cmdInfo1);
  EXPECT_EQ(seen(), "6690 test") << "shrunk by hand, any press expands";
}

TEST(Number, TheDialButtonFollowsTheTypedText) {
  const auto dialer = Started(kTwoLines);
  for (const auto& [text, enabled] : {std::pair{"12", true}, std::pair{"12a", false}, std::pair{"*100#", true}}) {
    dialer->Input().KeyPress(ControlId::txtNumber, 'a');
    dialer->Input().Edit(ControlId::txtNumber, text);
    EXPECT_EQ(dialer->Buttons(), enabled ? "[Dial]" : "[]") << text;
  }
}

TEST(Number, ALineWithoutVoiceOrVersionLeavesTheDialButtonOff) {
  for (const char* device : {"device media=0x10", "device bearer=0x2", "device version=0x00010002"}) {
    const auto dialer = Started(std::string(device) + "\nlocation\nrefuse lineOpen 0x80000048\n", "");
    dialer->Command("cmd|call|0301234567");
    EXPECT_THAT(dialer->Stage(), EndsWith("btnCall|0|cmdWahl_Click 1\n[]")) << device;
  }
}

TEST(Texts, ComeFromTheFileKeyByKey) {
  Dialer dialer(kTwoLines);
  std::string file = "[Data]\r\n";
  for (std::size_t row = 0; row < kFormTexts.size(); row += 2) {
    file += std::string(kFormTexts[row].text.key) + "=T" + std::to_string(row) + "\r\n";
    if (row + 1 < kFormTexts.size()) file += std::string(kFormTexts[row + 1].text.key) + "=\r\n";
  }
  file += "Button_OK=&Go<CR><TAB><cr>\r\nSettings_ToolTip_Prefix=tip\r\nDisplay_Menu_Settings=Settings\r\n";
  dialer.File("C:\\Rufmon\\base\\language_44.ini") = file;
  dialer.File("C:\\ProgramData\\Rufmon\\data\\Rufmon.ini") = "[General]\r\nLanguage=44\r\n";
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
  EXPECT_EQ(Started(kTwoLines)->Controls().form.Caption(), "Rufmon -  TAPI Wählhilfe Einstellungen");
}

TEST(View, TheStatusBoxIsHandedWhatIsAddedHoweverLongItHasBecome) {
  const auto dialer = Ready(kTwoLines, "A");
  FakeView& view = dialer->view;
  std::string shown;
  std::size_t firstCall = 0;
  for (int call = 0; call < 20; ++call) {
    view.changed.clear();
    view.appended.clear();
    dialer->Command("cmd|call|0301234567", 100);
    dialer->Command("cmd|hangup", 100);
    dialer->Command("");
    std::size_t handed = 0;
    for (const auto& [id, text] : view.appended) {
      EXPECT_EQ(id, ControlId::txtTestStatus);
      handed += text.size();
      shown += text;
    }
    if (call == 0) firstCall = handed;
    EXPECT_EQ(handed, firstCall) << call;
    EXPECT_EQ(std::ranges::count(view.changed, ControlId::txtTestStatus), 0) << "the whole text was shown anew";
  }
  EXPECT_GT(firstCall, 0U);
  EXPECT_EQ(shown, dialer->Text(ControlId::txtTestStatus)) << "what was handed over is what the box holds";
  dialer->TakeReports();
  dialer->Input().Click(ControlId::cmdLogClear);
  EXPECT_EQ(dialer->Text(ControlId::txtTestStatus), "");
  EXPECT_THAT(dialer->TakeReports(), IsEmpty()) << "clearing the box tells nobody";
}

TEST(View, SettingsBringsAVisibleWindowToTheFrontAndNoOtherCommandDoes) {
  Dialer dialer(kTwoLines);
  dialer.Start("/sett");
  for (const auto& [command, raises] : {std::pair{"cmd|hangup", 0}, std::pair{"settings", 1}, std::pair{"unload", 0}}) {
    dialer.view.raises = 0;
    dialer.Command(command);
    EXPECT_EQ(dialer.view.raises, raises) << command;
  }
}

TEST(View, AFaultThatNobodyCaughtIsToldUnderTheProgramsTitle) {
  Dialer dialer(kTwoLines);
  dialer.Start("/run");
  dialer.program->ReportFault("the window could not be made");
  EXPECT_THAT(dialer.boxes.shown,
              ElementsAre(FieldsAre("the window could not be made", kMessageBoxCritical, "Rufmon - FonklavTAPI")));
}

TEST(View, IsToldOfEachChangeOnceAndOfNoOther) {
  FakeView view;
  FormControls controls;
  const auto& timers = controls.tmStart;
  EXPECT_THAT((std::array{timers[0].Interval(), timers[1].Interval(), timers[2].Interval()}),
              ElementsAre(100, 100, 3000));
  controls.slot.view = &view;
  int changes = 0;
  std::vector<std::size_t> checked;
  Control& box = controls[ControlId::txtNumber];
  box.OnChange([&] { ++changes; });
  controls.lstTAPI.OnItemCheck([&](std::size_t index) { checked.push_back(index); });
  const auto twice = [&](const std::function<void()>& change) {
    view.changed.clear();
    view.appended.clear();
    view.formChanges = view.timerChanges = changes = 0;
    change();
    change();
    return view.changed.size() + view.appended.size() + static_cast<std::size_t>(view.formChanges + view.timerChanges);
  };
  for (const auto& change : std::initializer_list<std::function<void()>>{
           [&] { box.Text("1"); }, [&] { box.Enabled(false); }, [&] { box.Visible(false); },
           [&] { controls.form.Caption("x"); }, [&] { controls.form.Visible(true); }, [&] { controls.form.Top(1); },
           [&] { controls.form.Left(1); }, [&] { controls.form.Width(1); }, [&] { controls.form.Height(1); },
           [&] { controls.tmStart[0].Enabled(true); }, [&] { controls.ToolTip("x"); }}) {
    EXPECT_EQ(twice(change), 1U);
  }
  EXPECT_EQ(twice([&] { box.Text("2"); }) + static_cast<std::size_t>(changes), 2U);
  EXPECT_EQ(twice([&] { box.Edited("3"); }), 0U) << "the window shows it already";
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(twice([&] { box.Append("4"); }), 2U);
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(twice([&] { box.Append(""); }) + static_cast<std::size_t>(changes), 0U);
  EXPECT_EQ(twice([&] { controls.form.Moved(7, 8), controls.form.Resized(9, 10); }), 0U);

  CheckList& list = controls.lstTAPI;
  EXPECT_EQ(twice([&] { list.AddNew({"A", "B", "", "B"}); }), 1U);
  EXPECT_EQ(list.Count(), 2U);
  EXPECT_EQ(twice([&] { list.Tick(1, true); }), 1U);
  EXPECT_EQ(twice([&] { list.TickQuietly(0, true); }), 1U);
  EXPECT_EQ(twice([&] { list.Tick(0, true), list.Tick(2, true), list.TickQuietly(2, true); }), 0U);
  EXPECT_EQ(twice([&] { list.Tick(0, false); }), 1U);
  EXPECT_THAT(checked, ElementsAre(1, 0)) << "a changed tick, and not a quiet one";
  EXPECT_EQ(twice([&] { list.Clear(); }), 1U);
}

}  // namespace
}  // namespace fonklav::test
