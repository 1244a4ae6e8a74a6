#pragma once

#include <memory>
#include <string>

#include "config/Configuration.h"
#include "tests/fakes/FakeSystem.h"
#include "tests/fakes/RecordingLog.h"

namespace fonklav::test {

/// The configuration layer on a fake computer, with a log that remembers.
struct ConfigSystem : FakeSystem {
  explicit ConfigSystem(bool languageCheck = false)
      : config(
            diagnostics, AllPorts(),
            [this] {
    auto recording = std::make_unique<RecordingLog>(diagnostics);
    log = recording.get();
    return recording;
            },
            languageCheck) {}

  bool Init() { return config.declareAll.Init("FVT", false); }

  static constexpr const char* kPathsFile = "C:\\Rufmon\\Rufmonpaths.ini";
  static constexpr const char* kSpecsFile = "C:\\Rufmon\\Rufmonspec.ini";
  static constexpr const char* kMainSettings = "C:\\ProgramData\\Rufmon\\data\\Rufmon.ini";

  Diagnostics diagnostics;
  RecordingLog* log{nullptr};
  Configuration config;
};

}  // namespace fonklav::test
