#pragma once

#include <gmock/gmock.h>

#include <regex>

#include "tests/app/BareDialer.h"

namespace fonklav::test {

inline constexpr const char* kLine = "device name=ISDN-Line1 version=0x00020000\nlocation local=\"\"\n";

/// The rules of a line that takes a call, which stays up until somebody hangs up.
inline const std::string kAnswered =
    "call reply after=20\ncall state DIALING after=40\ncall state RINGBACK after=60\ncall state CONNECTED after=80\n"
    "drop reply after=10\ndrop state IDLE after=20\n";

/// A dialer whose test ends with a look at the error log.
class Dialer : public BareDialer {
 public:
  using BareDialer::BareDialer;
  ~Dialer() {
    program.reset();
    EXPECT_THAT(Errors(), errors);
  }

  /// What the main program has heard since the last look, a line a report, and which of the call's buttons can be
  /// pressed now: "line|A\n[Dial]".
  std::string Stage() {
    std::string seen;
    for (const std::string& report : TakeReports()) seen += report + "\n";
    return seen + Buttons();
  }
  std::string Buttons() {
    const bool dial = Controls()[ControlId::cmdWahl].Enabled();
    const bool hangUp = Controls()[ControlId::cmdHangUp].Enabled();
    return std::string("[") + (dial ? "Dial" : "") + (dial && hangUp ? " " : "") + (hangUp ? "HangUp" : "") + "]";
  }
  const std::string& Text(ControlId id) { return Controls()[id].Text(); }
  std::string Ticks() {
    std::string ticks;
    for (const auto& entry : Controls().lstTAPI.Entries()) ticks += entry.ticked ? 'x' : '-';
    return ticks;
  }
  std::string Settings() { return File(kSettings); }

  /// The lines of a log, without the date and the time in front of each.
  std::vector<std::string> Log(const std::string& name) {
    std::vector<std::string> lines = Lines("C:\\ProgramData\\Rufmon\\log\\" + name + ".log");
    for (std::string& line : lines) {
      EXPECT_TRUE(line.starts_with("2015/03/07  09:05:31  ")) << line;
      line.erase(0, 22);
    }
    return lines;
  }
  /// The telephony lines of the debug log.
  std::vector<std::string> Steps() {
    std::vector<std::string> steps = Log("debug");
    for (std::string& step : steps) step = std::regex_replace(step, std::regex("^TAPI FVT "), "");
    return steps;
  }
  /// The entries of the error log, with "n" for the source line.
  std::vector<std::string> Errors() {
    std::vector<std::string> entries = Log("error");
    for (std::string& entry : entries) {
      entry = std::regex_replace(entry, std::regex(R"(^FVT v\d+\.\d+ )"), "");
      entry = std::regex_replace(entry, std::regex(", Line: *[1-9][0-9]* "), ", Line:n");
    }
    return entries;
  }

  /// What the test expects in the error log at its end.
  testing::Matcher<std::vector<std::string>> errors{testing::IsEmpty()};
};

/// A dialer that is linked and bound to the line of this name, and whose start reports have been read.
inline std::unique_ptr<Dialer> Ready(const std::string& scenario = kLine + kAnswered,
                                     const std::string& line = "ISDN-Line1", const std::string& argument = "/run") {
  auto dialer = std::make_unique<Dialer>(scenario);
  if (!line.empty()) dialer->StoreLine(line);
  dialer->Start(argument);
  dialer->TakeReports();
  return dialer;
}

}  // namespace fonklav::test
