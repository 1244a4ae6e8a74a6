#pragma once

#include <array>
#include <string_view>

#include "config/ConfigState.h"
#include "config/modLanguage.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// One of the texts that the suite's programs share.
struct SharedTextRow {
  TextKey text;
  std::string SharedTexts::*field;
};

inline constexpr std::array kSharedTexts{
    SharedTextRow{{"Message_BackupExists", "Es existiert eine Sicherungskopie!"}, &SharedTexts::backupExists},
    SharedTextRow{{"Message_RemoveFileExtByRename", "Entfernen Sie die Endung  \".bak\" durch Umbenennen!"},
                  &SharedTexts::removeFileExtByRename},
    SharedTextRow{{"Message_ConfigFileFault", "Die Konfigurationsdatei ist defekt!"}, &SharedTexts::configFileFault},
    SharedTextRow{{"Message_CreateNewFile", "Die Datei wird neu angelegt!"}, &SharedTexts::createNewFile},
    SharedTextRow{{"Message_FaultFileRename", "Die defekte Datei wurde umbenannt!"}, &SharedTexts::faultFileRename},
    SharedTextRow{{"Message_FaultFileDelete", "Die defekte Datei wurde gelöscht!"}, &SharedTexts::faultFileDelete},
    SharedTextRow{{"Message_PleaseDeleteFile", "Bitte löschen Sie folgende Dateien von Hand:"},
                  &SharedTexts::pleaseDeleteFile},
    SharedTextRow{{"Message_ReConfigTheProgram", "Das Programm muss leider neu konfiguriert werden!"},
                  &SharedTexts::reConfigTheProgram},
    SharedTextRow{
        {"TAPIConfig_Info_SystemCodesFail",
         "Bitte wechseln Sie zur \"Systemsteuerung\" und vervollständigen Sie, unter \"Telefon und Modem\", die "
         "Angaben zu Ihrem Standort!"},
        &SharedTexts::systemCodesFail},
    SharedTextRow{{"Message_ErrorReason", "Ursache"}, &SharedTexts::errorReason},
};

/// Loads the shared texts at start-up.
class modLanguagePrivate {
 public:
  modLanguagePrivate(Diagnostics& diagnostics, ConfigState& state, modLanguage& language)
      : diagnostics_(diagnostics), state_(state), language_(language) {}

  /// Chooses the language that the suite's settings name and loads the texts.
  void LoadTexts();

 private:
  Diagnostics& diagnostics_;
  ConfigState& state_;
  modLanguage& language_;
};

}  // namespace fonklav
