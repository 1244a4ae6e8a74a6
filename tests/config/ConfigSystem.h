#pragma once

#include <gmock/gmock.h>

#include "config/Configuration.h"
#include "tests/fakes/FakeSystem.h"
#include "tests/fakes/RecordingLog.h"

namespace fonklav::test {

/// The configuration layer on a fake computer, with a log that remembers.
struct ConfigSystem : FakeSystem, Recorded {
  explicit ConfigSystem(bool languageCheck = false)
      : Recorded(false),
        config(
            diagnostics, ports, [this] { return MakeLog(); }, languageCheck) {}

  bool Init() { return config.declareAll.Init("FVT", false); }

  static constexpr const char* kPathsFile = "C:\\Rufmon\\Rufmonpaths.ini";
  static constexpr const char* kMainSettings = "C:\\ProgramData\\Rufmon\\data\\Rufmon.ini";

  Configuration config;
};

}  // namespace fonklav::test
