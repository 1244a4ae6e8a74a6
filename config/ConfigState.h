#pragma once

#include <cstdint>
#include <string>

namespace fonklav {

/// Which debug logs are written. The procedure trace's switch is not among them: the procedure guard holds it.
struct DebugSwitches {
  bool logExport{false};
  bool logCAPI{false};
  bool logAVM{false};
  bool logNCID{false};
  bool logTAPI{false};
  bool logOther{false};
  bool logTiming{false};
};

/// What the suite's programs log about their work. Read for the suite; this program acts on none of it.
struct LogModeSwitches {
  bool exports{false};  ///< always on while the export debug log is on
  bool mail{false};
  bool inverse{false};
  bool update{false};
  bool send2Script{false};
  bool ntService{false};
};

/// Settings of the suite's capture interface. Read for the suite; this program acts on none of them.
struct CapiSettings {
  bool loadThisValues{false};
  bool skipVersionAndManufact{false};
  std::uint8_t infoMask{0};
  std::uint32_t cipMask{0};
};

/// The texts that the suite's programs share, in the user's language.
struct SharedTexts {
  std::string backupExists;
  std::string removeFileExtByRename;
  std::string configFileFault;
  std::string createNewFile;
  std::string faultFileRename;
  std::string faultFileDelete;
  std::string pleaseDeleteFile;
  std::string reConfigTheProgram;
  std::string systemCodesFail;
  std::string errorReason;
};

/// The process-wide state of the configuration layer, set once at start-up and read everywhere. Paths are full and
/// UTF-8.
struct ConfigState {
  std::string programFolder;     ///< holds the executable
  std::string commonDataFolder;  ///< the suite's folder among the common application data
  std::string dataRoot;          ///< never ends in a backslash
  std::string bookFolder;        ///< always ends in a backslash
  bool bookRefresh{false};       ///< kept for the suite, not acted on
  DebugSwitches debug;
  LogModeSwitches logMode;
  CapiSettings capi;
  bool writeLocked{false};     ///< no setting is written while this is set
  bool wideAttributes{false};  ///< asks for file attributes by the W function
  std::string languageCode;    ///< as in the name of the language file
  std::string languageFile;    ///< relative to the program folder
  bool languageFileMissing{false};
  SharedTexts texts;
};

}  // namespace fonklav
