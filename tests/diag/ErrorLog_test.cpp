#include "diag/ParamArray.h"
#include "tests/diag/LogSystem.h"

// The error log: what an entry looks like, and what becomes of it when it cannot be written.
namespace fonklav::test {
namespace {

using namespace testing;

TEST(ParamArray, RendersArgumentsByTheirType) {
  const std::vector<std::string> texts{"a", ""};
  const LogArg values[] = {1, true, LogArg(std::span<const std::string>(texts))};
  const auto rendered = [](LogArgs args) { return GetStringFromParamArray(args); };
  EXPECT_EQ(rendered({}), "");
  EXPECT_EQ(rendered({5, "abc"}), "(N:5, S:abc)");
  EXPECT_EQ(rendered({"0301234", true, false}), "(S:0301234, B:1, B:0)");
  EXPECT_EQ(rendered({std::uint32_t{4294967295U}, std::int64_t{-1}, 1.5}), "(N:4294967295, N:-1, N:1.5)");
  EXPECT_EQ(rendered({LogArg()}), "");
  EXPECT_EQ(rendered({LogArg(), 1}), "(N:1)") << "no separator in front";
  EXPECT_EQ(rendered({1, LogArg()}), "(N:1, )");
  EXPECT_EQ(rendered({LogArg(std::span<const std::string>(texts)), 2}), "(S:a, S:, N:2)");
  EXPECT_EQ(rendered({LogArg(std::span<const LogArg>(values))}), "(N:1, B:1, )") << "no arrays within arrays";
  EXPECT_EQ(rendered({"a\r\nb\tc\rd"}), "(S:a<CR>b\tc\rd)");
  EXPECT_EQ(VisibleControls(std::string("\t\r\0ü", 5)), "#[9]#[13]#[0]ü");
}

TEST(ErrorLog, AnEntryTellsWhereAndWhat) {
  const std::tuple<int, const char*, int, const char*> rows[] = {
      {53, "File not found", 42, ", Line: 42  + 53 + File not found"},
      {5, "Text", 7, ", Line:  7  + 5 + Text"},
      {5, "Text", 123, ", Line:123  + 5 + Text"},
      {5, "Text", 1234, ", Line:1234  + 5 + Text"},
      {-5, "", 0, " + -5 + "},
      {1000, "no\r\nsuch\nwindow\t", 0, " + 1000 + no<CR>such#[10]window#[9]"}};
  for (const auto& [number, description, line, entry] : rows) {
    LogSystem system;
    system.Pend(number, description, line);
    system.Log().ErrorLogNew("clsX.Do", {std::string("a\r\nb\tc\n\0Grüße ☎", 19)});
    EXPECT_THAT(system.Errors(),
                ElementsAre(LogSystem::Head() + "clsX.Do" + entry + " Params(S:a<CR>b#[9]c#[10]#[0]Gr\xFC\xDF\x65 ?)"));
    EXPECT_EQ(system.diagnostics.pending.number, 0);
    EXPECT_EQ(system.Log().ErrorLogLineCount, 1);
  }
}

TEST(ErrorLog, SaysNothingWithoutAnErrorNorOfError401) {
  LogSystem system;
  system.Log().ErrorLogNew("clsX.Do", {1});
  system.Log().ErrorLogWithMsgBox("clsX.Do", {1});
  system.Pend(401, "Can't show non-modal form");
  system.Log().ErrorLogForceWrite("clsX.Do", {1});
  EXPECT_THAT(system.Errors(), IsEmpty());
  EXPECT_THAT(system.boxes.shown, IsEmpty());
  EXPECT_EQ(system.diagnostics.pending.number, 0);
}

TEST(ErrorLog, AForcedEntryIsTheCallersText) {
  LogSystem system;
  system.Log().ErrorLogForceWrite("Start", {5});
  system.Log().ErrorLogForceWrite("Start", {});
  system.Pend(6, "", 12);
  system.Log().ErrorLogForceWrite("Start", {});
  EXPECT_THAT(system.Errors(), ElementsAre(LogSystem::Head() + "Start Params(N:5)", LogSystem::Head() + "Start",
                                           LogSystem::Head() + "Start, Line: 12  + 6"));
  EXPECT_EQ(system.Log().ErrorLogLineCount, 3);
}

TEST(ErrorLog, TellsTheUserWhereToLookAndLogsWhatFailsMeanwhile) {
  LogSystem system;
  system.boxes.whileShown = [&] { system.Fail("fMain.tapiline_Idle"); };
  system.Pend(53, "File not found");
  system.Log().ErrorLogWithMsgBox("clsX.Do", {});
  EXPECT_THAT(system.boxes.shown, ElementsAre(FieldsAre("Es ist ein Fehler aufgetreten!\r\n"
                                                        "siehe Datei: \\log\\error.log",
                                                        48, _)));
  EXPECT_EQ(system.Log().FileLogError(), "\\log\\error.log");
  EXPECT_THAT(system.Errors(), ElementsAre(HasSubstr("clsX.Do"), HasSubstr("fMain.tapiline_Idle")));
  system.profile.asked.clear();
  system.Pend(53, "File not found");
  system.Log().ErrorLogWithMsgBox("clsX.Do", {});
  EXPECT_THAT(system.boxes.shown, SizeIs(2));
  EXPECT_THAT(system.profile.asked, IsEmpty()) << "the texts are known by now";
}

TEST(ErrorLog, OnlyTheMainProgramsEntriesTellTheElapsedTime) {
  LogSystem system;
  system.diagnostics.tag = "PRG";
  system.clock.Advance(std::chrono::hours(30) + std::chrono::minutes(9) + std::chrono::milliseconds(10999));
  system.Log().ErrorLogForceWrite("Start", {});
  system.clock.Advance(std::chrono::hours(-40));
  system.Log().ErrorLogForceWrite("Start", {});
  const std::string head = std::string(LogSystem::kStamp) + "PRG v" + LogSystem::Version();
  EXPECT_THAT(system.Errors(), ElementsAre(head + " 30:09:10 Start", head + " TimeError Start"));
}

TEST(ErrorLog, CountsTheLinesThatItFinds) {
  LogSystem system;
  system.File(LogSystem::kErrorLog) = "a\r\nb\r\nc";
  system.diagnostics.tag.clear();
  const clsErrorHandling second(system.diagnostics, system.config, system.ports);
  EXPECT_EQ(second.ErrorLogLineCount, 3);
  EXPECT_EQ(system.diagnostics.tag, "NON");
  system.diagnostics.startingUp = true;
  system.files.faults[FakeFileSystem::Key(LogSystem::kErrorLog)] = ErrorNumber::PermissionDenied;
  const clsErrorHandling third(system.diagnostics, system.config, system.ports);
  EXPECT_EQ(third.ErrorLogLineCount, 0) << "a log that somebody else holds is no reason not to start";
}

TEST(ErrorLog, TenThousandErrorsStayWithinItsSize) {
  LogSystem system;
  std::size_t largest = 0;
  for (int error = 0; error < 10000; ++error) {
    system.Fail("clsX.Do", {error});
    largest = std::max(largest, system.File(LogSystem::kErrorLog).size());
  }
  const std::vector<std::string> lines = system.Errors();
  EXPECT_LT(largest, 51 * 1024 + lines.back().size() + 2);
  EXPECT_GT(largest, 50 * 1024U) << "the limit was never reached";
  // Only the oldest are gone, and none is cut.
  for (std::size_t at = 0; at < lines.size(); ++at) {
    const std::size_t error = 10000 - lines.size() + at;
    ASSERT_THAT(lines[at], EndsWith("Params(N:" + std::to_string(error) + ")"));
    ASSERT_TRUE(lines[at].starts_with(LogSystem::Head() + "clsX.Do, Line:"));
  }
  EXPECT_EQ(system.Log().ErrorLogLineCount, static_cast<std::int32_t>(lines.size()));
}

/// A log that cannot be written, in all the ways that there are.
TEST(UnwritableLog, StopsNothingAndRecovers) {
  for (const ErrorNumber fault : {ErrorNumber::PathNotFound, ErrorNumber::PathFileAccessError,
                                  ErrorNumber::PermissionDenied, ErrorNumber::DiskFull}) {
    SCOPED_TRACE(static_cast<int>(fault));
    LogSystem system("TraceMode=1\r\nLogTAPI=1\r\n");
    const char* const other = "C:\\ProgramData\\Rufmon\\log\\other.log";
    for (const char* log : {LogSystem::kErrorLog, LogSystem::kTraceLog, LogSystem::kDebugLog, other}) {
      system.files.faults[FakeFileSystem::Key(log)] = fault;
    }
    int reached = 0;
    for (int call = 0; call < 100; ++call) {
      Procedure(system.diagnostics, "fMain.cmdWahl_Click", {call}, [&] {
        system.Log().LogDebug_TAPI("Call", {call});
        system.Log().WriteLine("\\log\\other.log", "a line");
        ++reached;
        throw RunTimeError(ErrorNumber::Overflow);
      });
    }
    EXPECT_EQ(reached, 100);
    EXPECT_THAT(system.boxes.shown, IsEmpty());
    EXPECT_THAT(system.Errors(), IsEmpty());
    system.files.faults.clear();
    system.Fail("clsX.Do");
    system.Log().LogDebug_TAPI("Again");
    system.Log().WriteLine("\\log\\other.log", "a line");
    EXPECT_THAT(system.Errors(), ElementsAre(HasSubstr("clsX.Do")));
    EXPECT_THAT(system.Debug(), ElementsAre(EndsWith("Again")));
    EXPECT_THAT(system.Lines(other), ElementsAre(EndsWith("a line")));
    EXPECT_THAT(system.TraceToTheEnd().front(), HasSubstr("fMain.cmdWahl_Click 01(N:0)"))
        << "they wait for better times";
  }
}

TEST(ErrorLog, AFaultInTheLoggerItselfIsShown) {
  LogSystem system;
  system.diagnostics.tag = "PRG";  // only its entries need the elapsed time
  system.clock.broken = true;
  system.Pend(53, "File not found");
  system.Log().ErrorLogNew("clsX.Do", {});
  EXPECT_THAT(system.boxes.shown, ElementsAre(FieldsAre("Error in ExceptionHandler\r\nOut of memory", 48, _)));
  EXPECT_EQ(system.diagnostics.pending.number, 0);
}

}  // namespace
}  // namespace fonklav::test
