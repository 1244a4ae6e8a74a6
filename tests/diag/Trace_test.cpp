#include "tests/diag/LogSystem.h"

// The procedure trace and the debug logs.
namespace fonklav::test {
namespace {

using namespace testing;

constexpr const char* kTracing = "TraceMode=1\r\n";

std::string TraceHead() { return std::string(LogSystem::kStamp) + "FVT v" + LogSystem::Version() + "  "; }

TEST(Trace, IsSilentWhenItIsOff) {
  LogSystem system;
  for (int step = 0; step < 100; ++step) system.Step({"clsX.Do"});
  EXPECT_THAT(system.TraceToTheEnd(), IsEmpty());
  EXPECT_EQ(system.files.opens, 0);
}

TEST(Trace, IsWrittenFiftyOneLinesAtATime) {
  LogSystem system(kTracing);
  for (int step = 1; step <= 50; ++step) system.Log().LogDebug_Trace("clsX.Do", {step});
  EXPECT_THAT(system.Trace(), IsEmpty());
  system.Log().LogDebug_Trace("clsX.Do", {51});
  ASSERT_THAT(system.Trace(), SizeIs(51));
  EXPECT_EQ(system.files.opens, 1);
  EXPECT_EQ(system.Trace().front(), TraceHead() + "clsX.Do 01(N:1)");
  EXPECT_EQ(system.Trace()[9], TraceHead() + "clsX.Do 10(N:10)");
  EXPECT_EQ(system.Trace().back(), TraceHead() + "clsX.Do 51(N:51)");
  system.Step({"last"});
  EXPECT_EQ(system.TraceToTheEnd().back(), TraceHead() + "last 01") << "the end of the process writes the rest";
}

TEST(Trace, CountsRepetitions) {
  LogSystem system(kTracing);
  system.Step({"a", "a", "a", "b", "a", "A"});
  for (int more = 0; more < 33000; ++more) system.Step({"many"});
  const std::vector<std::string> lines = system.TraceToTheEnd();
  const std::vector<std::string> begin(lines.begin(), lines.begin() + 7);
  const std::string head = TraceHead();
  EXPECT_THAT(begin, ElementsAre(head + "a 01", head + "a 02", head + "a 03", head + "b 01", head + "a 01",
                                 head + "A 01", head + "many 01"));
  EXPECT_EQ(lines.back(), head + "many 32767") << "a count of 16 bits stays at its end";
}

TEST(Trace, LeavesStepsOutOnDemand) {
  LogSystem system(kTracing);
  system.Log().TraceHideNextSteps(2);
  system.Step({"a", "b", "c"});
  system.Log().TraceHideNextSteps();
  system.Step({"d"});
  system.Log().TraceHideNextSteps(-3);
  system.Step({"e", "f"});
  const std::string head = TraceHead();
  const std::string hide = head + "clsErrorHandling.TraceHideNextSteps 01";
  EXPECT_THAT(system.TraceToTheEnd(), ElementsAre(hide + "(N:2)", head + "c 01", hide + "(N:0)", head + "d 01",
                                                  hide + "(N:-3)", head + "e 01", head + "f 01"));
}

TEST(Trace, TellsTheUserOnceIfItIsAskedTo) {
  LogSystem system(kTracing);
  system.File(LogSystem::kTraceLog) = "yesterday\r\n";
  system.Log().TraceInfoMessage(true);
  system.Step({"a", "b"});
  EXPECT_THAT(system.boxes.shown, ElementsAre(FieldsAre("Die Ablaufverfolgung ist aktiv!\r\n"
                                                        "siehe Datei: \\Rufmonspec.ini ([Debug] - TraceMode=1)\r\n\r\n"
                                                        "Es werden in kurzer Zeit extrem viele Daten gespeichert!\r\n"
                                                        "siehe Datei: C:\\ProgramData\\Rufmon\\log\\trace.log",
                                                        64, "Rufmon - Tracing")));
  EXPECT_THAT(system.TraceToTheEnd(), Not(Contains("yesterday")));
}

TEST(Trace, KeepsTenThousandLinesWhileTheFileCannotBeWritten) {
  LogSystem system(kTracing);
  system.files.folders.erase(LogSystem::kLogFolder);
  for (int step = 1; step <= 10100; ++step) system.Log().LogDebug_Trace("clsX.Do", {step});
  system.files.folders.insert(LogSystem::kLogFolder);
  system.Step({"clsX.Do"});
  EXPECT_THAT(system.Trace(), IsEmpty()) << "only a line that found room makes it try again";
  const std::vector<std::string> lines = system.TraceToTheEnd();
  ASSERT_THAT(lines, SizeIs(10000));
  EXPECT_THAT(lines.front(), EndsWith("(N:1)"));
  EXPECT_THAT(lines.back(), EndsWith("(N:10000)")) << "what came later found no room";
}

TEST(Trace, AnErrorIsAStepOfIts) {
  LogSystem system(kTracing);
  system.Pend(53, "File not found", 42);
  system.Log().ErrorLogNew("clsX.Do", {});
  EXPECT_EQ(system.TraceToTheEnd().front(), TraceHead() + "!ERROR! 01(S: 42 - 53, S:File not found)");
  EXPECT_THAT(system.Trace()[1], HasSubstr("clsFiles.FileWrite_Log 01(S:C:\\ProgramData\\Rufmon\\log\\error.log)"));
}

TEST(DebugLog, EachAreaHasItsSwitch) {
  const std::pair<const char*, void (clsErrorHandling::*)(std::string_view, LogArgs) noexcept> areas[] = {
      {"LogExport", &clsErrorHandling::LogDebug_Export}, {"LogTAPI", &clsErrorHandling::LogDebug_TAPI},
      {"LogCAPI", &clsErrorHandling::LogDebug_CAPI},     {"LogAVM", &clsErrorHandling::LogDebug_AVM},
      {"LogNCID", &clsErrorHandling::LogDebug_NCID},     {"LogOther", &clsErrorHandling::LogDebug_Other},
      {"LogTiming", &clsErrorHandling::LogDebug_Timing}};
  for (const auto& [on, own] : areas) {
    LogSystem system(std::string(on) + "=1\r\n");
    for (const auto& [key, write] : areas) (system.Log().*write)(key, {});
    EXPECT_THAT(system.Debug(), ElementsAre(std::string(LogSystem::kStamp) + on));
  }
  LogSystem allOff;
  allOff.Log().LogDebug_Temp("Call", {5});
  EXPECT_THAT(allOff.Debug(), ElementsAre(std::string(LogSystem::kStamp) + "Call(N:5)"));
}

TEST(DebugLog, IsNeverTrimmed) {
  LogSystem system;
  system.File(LogSystem::kDebugLog) = std::string(3'000'000, 'x') + "\r\n";
  system.Log().LogDebug_Temp("Call");
  EXPECT_EQ(system.File(LogSystem::kDebugLog).size(), 3'000'002 + 22 + 4 + 2U);
}

}  // namespace
}  // namespace fonklav::test
