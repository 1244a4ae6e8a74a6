#include "config/modDeclareAll.h"

#include <array>

#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/Text.h"

namespace fonklav {
namespace {

struct SwitchRow {
  const char* key;
  bool DebugSwitches::*flag;
};

constexpr std::array kDebugSwitches{
    SwitchRow{"LogExport", &DebugSwitches::logExport}, SwitchRow{"LogCAPI", &DebugSwitches::logCAPI},
    SwitchRow{"LogAVM", &DebugSwitches::logAVM},       SwitchRow{"LogNCID", &DebugSwitches::logNCID},
    SwitchRow{"LogTAPI", &DebugSwitches::logTAPI},     SwitchRow{"LogOther", &DebugSwitches::logOther},
    SwitchRow{"LogTiming", &DebugSwitches::logTiming},
};

}  // namespace

bool modDeclareAll::Init(const std::string& programCode, bool endIfAlreadyRunning) {
  if (endIfAlreadyRunning && process_.OtherInstanceRunning()) return false;
  diagnostics_.handlersArmed = true;
  diagnostics_.tag = programCode;
  if (!LoadSavePaths()) return false;
  diagnostics_.log = makeLog_();
  return true;
}

bool modDeclareAll::LoadSavePaths() {
  try {
    state_.programFolder = process_.ProgramFolder();
    LoadSpecs();
    state_.commonDataFolder = systemPaths_.GetSpecialFolder(CSIDL_COMMON_APPDATA) + "\\Rufmon";
    ReadPaths(state_.programFolder + "\\Rufmonpaths.ini");
    if (state_.dataRoot.ends_with('\\')) state_.dataRoot.pop_back();
    if (!state_.bookFolder.ends_with('\\')) state_.bookFolder += '\\';
    return true;
  } catch (...) {
    CapturePendingError(diagnostics_);
    messages_.MsgBoxForward("Error in Function \"LoadSavePaths\" at Line " + std::to_string(diagnostics_.pending.line),
                            kMessageBoxCritical, "");
    diagnostics_.pending.Clear();
    return false;
  }
}

void modDeclareAll::ReadPaths(const std::string& pathsFile) {
  state_.dataRoot = state_.commonDataFolder;
  state_.bookFolder = state_.dataRoot + "\\data\\";
  if (!files_.FileExist(pathsFile)) return;
  state_.bookRefresh = ini_.GetSettBool("Paths", "BookRefresh", false, pathsFile);
  state_.dataRoot = ReadDataRoot(pathsFile);
  state_.bookFolder = ini_.GetSettStr("Paths", "BookPath", "", pathsFile, false, false);
  if (state_.bookFolder.empty() || IsNumeric(state_.bookFolder, {})) state_.bookFolder = state_.dataRoot + "\\data\\";
}

std::string modDeclareAll::ReadDataRoot(const std::string& pathsFile) const {
  std::string root = ini_.GetSettStr("Paths", "ProgramData", "1", pathsFile, false, false);
  if (root.ends_with('\\')) root.pop_back();
  if (root.empty()) root = "0";
  if (!IsNumeric(root, {})) return root;
  if (root.find_first_of("123456789") != std::string::npos) return state_.commonDataFolder;
  const bool underPrograms =
      state_.programFolder.find(systemPaths_.GetSpecialFolder(CSIDL_PROGRAM_FILES)) != std::string::npos;
  return underPrograms && process_.SystemVersion().major >= 6 ? state_.commonDataFolder : state_.programFolder;
}

bool modDeclareAll::LoadSpecs() {
  const std::string file = state_.programFolder + "\\Rufmonspec.ini";
  if (files_.FileExist(file)) ReadDebug(file);
  return true;
}

void modDeclareAll::ReadDebug(const std::string& file) {
  for (const SwitchRow& row : kDebugSwitches) state_.debug.*row.flag = ini_.GetSettBool("Debug", row.key, false, file);
  diagnostics_.traceMode = ini_.GetSettBool("Debug", "TraceMode", false, file);
}

}  // namespace fonklav
