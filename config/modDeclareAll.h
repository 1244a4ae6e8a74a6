#pragma once

#include <functional>
#include <memory>
#include <string>

#include "config/ConfigState.h"
#include "config/modAPI_Files.h"
#include "config/modAPI_INI.h"
#include "config/modPrivateDummy.h"
#include "config/modSystemPaths.h"
#include "platform/Process.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// Makes the log once the folders are known.
using LogFactory = std::function<std::unique_ptr<ProcedureLog>()>;

/// The first thing that start-up does: where the suite keeps its data, and which switches are on.
class modDeclareAll {
 public:
  modDeclareAll(Diagnostics& diagnostics, ConfigState& state, const modAPI_INI& ini, const modAPI_Files& files,
                modPrivateDummy& messages, const modSystemPaths& systemPaths, const Process& process,
                LogFactory makeLog)
      : diagnostics_(diagnostics),
        state_(state),
        ini_(ini),
        files_(files),
        messages_(messages),
        systemPaths_(systemPaths),
        process_(process),
        makeLog_(std::move(makeLog)) {}

  /// Arms the error handlers, resolves the folders and creates the log. False when the program is to end at once.
  [[nodiscard]] bool Init(const std::string& programCode, bool endIfAlreadyRunning);
  /// True when the folders are set. A fault is shown, not logged.
  [[nodiscard]] bool LoadSavePaths();
  /// Reads the switches; a fault is shown and leaves the rest off.
  bool LoadSpecs();

 private:
  void ReadPaths(const std::string& pathsFile);
  [[nodiscard]] std::string ReadDataRoot(const std::string& pathsFile) const;
  void ReadDebug(const std::string& file);

  Diagnostics& diagnostics_;
  ConfigState& state_;
  const modAPI_INI& ini_;
  const modAPI_Files& files_;
  modPrivateDummy& messages_;
  const modSystemPaths& systemPaths_;
  const Process& process_;
  LogFactory makeLog_;
};

}  // namespace fonklav
