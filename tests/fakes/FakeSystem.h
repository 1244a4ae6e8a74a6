#pragma once

#include <string>
#include <vector>

#include "platform/Ports.h"
#include "sim/LineSimulator.h"
#include "tests/fakes/FakeDdeTransport.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakePorts.h"
#include "tests/fakes/FakePrivateProfile.h"
#include "util/Text.h"

namespace fonklav::test {

/// The arguments of every call of a telephony function.
inline std::vector<std::string> ArgumentsOf(const LineSimulator& sim, std::string_view function) {
  std::vector<std::string> all;
  for (const CallRecord& call : sim.Calls()) {
    if (call.function == function) all.push_back(call.arguments);
  }
  return all;
}

/// A German computer with the suite in "C:\Rufmon" and its data among the common application data.
struct FakeSystem {
  explicit FakeSystem(const std::string& scenario = {}) : telephony(Scenario::Parse(scenario)) {
    files.folders = {"c:\\programdata\\rufmon\\data", "c:\\programdata\\rufmon\\log", "c:\\rufmon", "c:\\rufmon\\base"};
  }
  FakeSystem(const FakeSystem&) = delete;
  FakeSystem& operator=(const FakeSystem&) = delete;

  /// From now on all of it goes by these faults, telephony too.
  void FailBy(Faults& faults) {
    for (CanFail* fake : std::initializer_list<CanFail*>{&clock, &codePage, &dde, &files, &boxes, &locale, &profile,
                                                         &process, &shell}) {
      fake->faults = &faults;
    }
  }
  /// A file by its full path; reading one that is missing makes it.
  std::string& File(const std::string& path) { return files.files[FakeFileSystem::Key(path)]; }
  /// The lines of a log. Should the last one have no end, it says so.
  std::vector<std::string> Lines(const std::string& path) {
    std::vector<std::string> lines = Split(File(path), kCrLf);
    lines.back().empty() ? lines.pop_back() : static_cast<void>(lines.back() += " without an end");
    return lines;
  }
  /// Puts switches for debugging into the suite's file.
  void Switch(const std::string& switches) { File(kSwitches) = "[Debug]\r\n" + switches; }

  static constexpr const char* kSwitches = "C:\\Rufmon\\Rufmonspec.ini";

  FakeClock clock;
  FakeCodePage codePage;
  FakeDdeTransport dde;
  FakeFileSystem files;
  FakeIconPainter icons;
  FakeMessageBoxes boxes;
  FakeMessageLoop loop;
  FakeNumberLocale locale;
  FakePrivateProfile profile{files};
  FakeProcess process;
  FakeShellFolders shell;
  LineSimulator telephony;
  /// All of it. Another implementation can take a fake's place before the program starts.
  Ports ports{clock, codePage, dde, files, icons, boxes, loop, locale, profile, process, shell, telephony};
};

}  // namespace fonklav::test
