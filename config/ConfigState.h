#pragma once

#include <cstdint>
#include <string>

namespace fonklav {

/// The diagnostic switches of the suite. The trace switch is not among them: the procedure guard holds it.
struct DebugSwitches {
  bool logExport{false};
  bool logCAPI{false};
  bool logAVM{false};
  bool logNCID{false};
  bool logTAPI{false};
  bool logOther{false};
  bool logTiming{false};
};

/// The texts that the suite's programs share.
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

/// The process-wide state of the configuration layer.
struct ConfigState {
  std::string programFolder;
  std::string commonDataFolder;
  std::string dataRoot;
  std::string bookFolder;
  bool bookRefresh{false};
  DebugSwitches debug;
  bool writeLocked{false};
  bool wideAttributes{false};
  std::string languageCode;
  std::string languageFile;
  bool languageFileMissing{false};
  SharedTexts texts;
};

}  // namespace fonklav
