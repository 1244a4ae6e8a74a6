#pragma once

#include "config/ConfigState.h"
#include "config/modAPI_Files.h"
#include "config/modAPI_INI.h"
#include "config/modDeclareAll.h"
#include "config/modLanguage.h"
#include "config/modLanguagePrivate.h"
#include "config/modPrivateDummy.h"
#include "config/modSystemPaths.h"
#include "platform/Ports.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// The configuration layer: its state and its modules, one of each, in the order in which they need one another.
/// Diagnostics and ports must outlive it; the log that `makeLog` makes must go before it.
struct Configuration {
  Configuration(Diagnostics& diagnostics, const Ports& ports, LogFactory makeLog, bool languageCheck = kLanguageCheck)
      : ini(diagnostics, state, ports.profile, ports.codePage, ports.numberLocale),
        files(diagnostics, state, ports.files, ports.codePage),
        messages(diagnostics, ports.messageBoxes, ports.process),
        language(diagnostics, state, ini, files, languageCheck),
        languagePrivate(diagnostics, state, language),
        systemPaths(diagnostics, ports.shellFolders, ports.codePage),
        declareAll({diagnostics, state, ini, files, messages, systemPaths, ports.process, ports.numberLocale},
                   std::move(makeLog)) {}
  Configuration(const Configuration&) = delete;
  Configuration& operator=(const Configuration&) = delete;

  ConfigState state;
  modAPI_INI ini;
  modAPI_Files files;
  modPrivateDummy messages;
  modLanguage language;
  modLanguagePrivate languagePrivate;
  modSystemPaths systemPaths;
  modDeclareAll declareAll;
};

}  // namespace fonklav
