#include "config/modDeclareAll.h"

#include <array>

#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {
namespace {

constexpr const char* kPathsFile = "\\Rufmonpaths.ini";
constexpr const char* kSpecsFile = "\\Rufmonspec.ini";
constexpr const char* kPaths = "Paths";
constexpr const char* kDebug = "Debug";
constexpr const char* kLogMode = "LogMode";
constexpr const char* kCapi = "CAPI";

struct DebugRow {
  const char* key;
  bool DebugSwitches::*flag;
};

constexpr std::array kDebugSwitches{
    DebugRow{"LogExport", &DebugSwitches::logExport}, DebugRow{"LogCAPI", &DebugSwitches::logCAPI},
    DebugRow{"LogAVM", &DebugSwitches::logAVM},       DebugRow{"LogNCID", &DebugSwitches::logNCID},
    DebugRow{"LogTAPI", &DebugSwitches::logTAPI},     DebugRow{"LogOther", &DebugSwitches::logOther},
    DebugRow{"LogTiming", &DebugSwitches::logTiming},
};

struct LogModeRow {
  const char* key;
  bool LogModeSwitches::*flag;
};

constexpr std::array kLogModeSwitches{
    LogModeRow{"Mail", &LogModeSwitches::mail},           LogModeRow{"Inverse", &LogModeSwitches::inverse},
    LogModeRow{"Update", &LogModeSwitches::update},       LogModeRow{"Send2Script", &LogModeSwitches::send2Script},
    LogModeRow{"NTService", &LogModeSwitches::ntService},
};

}  // namespace

bool modDeclareAll::Init(const std::string& programCode, bool endIfAlreadyRunning) {
  Diagnostics& diagnostics = services_.diagnostics;
  const ProcedureName name = "modDeclareAll.Init";
  return Procedure(diagnostics, name, {programCode, endIfAlreadyRunning}, false, [&](bool& started) {
    if (endIfAlreadyRunning && services_.process.OtherInstanceRunning()) return;
    // Inside a development environment faults would stay visible; a built program always catches them.
    diagnostics.handlersArmed = true;
    diagnostics.startingUp = true;
    diagnostics.tag = programCode;
    if (LoadSavePaths()) {
      diagnostics.log = makeLog_();
      started = true;
    }
    diagnostics.startingUp = false;
  });
}

bool modDeclareAll::LoadSavePaths() {
  TraceEntry(services_.diagnostics, "modDeclareAll.LoadSavePaths", {});
  try {
    ConfigState& state = services_.state;
    state.programFolder = services_.process.ProgramFolder();
    LoadSpecs();
    state.commonDataFolder = services_.systemPaths.GetSpecialFolder(CSIDL_COMMON_APPDATA) + "\\Rufmon";
    ReadPaths(state.programFolder + kPathsFile);
    if (state.dataRoot.ends_with('\\')) state.dataRoot.pop_back();
    if (!state.bookFolder.ends_with('\\')) state.bookFolder += '\\';
    return true;
  } catch (...) {
    ShowFault("LoadSavePaths");
    return false;
  }
}

void modDeclareAll::ReadPaths(const std::string& pathsFile) {
  ConfigState& state = services_.state;
  state.dataRoot = state.commonDataFolder;
  std::string book;
  if (services_.files.FileExist(pathsFile)) {
    state.bookRefresh = services_.ini.GetSettBool(kPaths, "BookRefresh", false, pathsFile);
    state.dataRoot = ReadDataRoot(pathsFile);
    book = services_.ini.GetSettStr(kPaths, "BookPath", "", pathsFile);
  }
  // Formed before the data root loses a backslash at its end: a second backslash in the middle is deliberate.
  if (book.empty() || IsNumber(book)) book = state.dataRoot + "\\data\\";
  state.bookFolder = book;
}

std::string modDeclareAll::ReadDataRoot(const std::string& pathsFile) const {
  std::string root = services_.ini.GetSettStr(kPaths, "ProgramData", "1", pathsFile);
  if (root.ends_with('\\')) root.pop_back();
  if (root.empty()) root = "0";
  if (!IsNumber(root)) return root;
  return root == "0" ? ZeroDataRoot() : services_.state.commonDataFolder;
}

std::string modDeclareAll::ZeroDataRoot() const {
  // Beside itself a program can write everywhere but under the program-files folder of a system that protects it.
  const std::string programFiles = services_.systemPaths.GetSpecialFolder(CSIDL_PROGRAM_FILES);
  const bool underProgramFiles = services_.state.programFolder.find(programFiles) != std::string::npos;
  const bool protectedFolder = underProgramFiles && IsNt6OrLater(services_.process.SystemVersion());
  return protectedFolder ? services_.state.commonDataFolder : services_.state.programFolder;
}

bool modDeclareAll::LoadSpecs() {
  TraceEntry(services_.diagnostics, "modDeclareAll.LoadSpecs", {});
  try {
    const std::string file = services_.state.programFolder + kSpecsFile;
    if (!services_.files.FileExist(file)) return true;
    ReadDebug(file);
    ReadLogMode(file);
    ReadCapi(file);
  } catch (...) {
    ShowFault("LoadSpecs");
  }
  return true;
}

void modDeclareAll::ReadDebug(const std::string& file) {
  for (const DebugRow& row : kDebugSwitches) {
    services_.state.debug.*row.flag = services_.ini.GetSettBool(kDebug, row.key, false, file);
  }
  services_.diagnostics.traceMode = services_.ini.GetSettBool(kDebug, "TraceMode", false, file);
}

void modDeclareAll::ReadLogMode(const std::string& file) {
  LogModeSwitches& logMode = services_.state.logMode;
  logMode.exports = services_.state.debug.logExport || services_.ini.GetSettBool(kLogMode, "Export", true, file);
  for (const LogModeRow& row : kLogModeSwitches) {
    logMode.*row.flag = services_.ini.GetSettBool(kLogMode, row.key, true, file);
  }
}

void modDeclareAll::ReadCapi(const std::string& file) {
  CapiSettings& capi = services_.state.capi;
  capi.loadThisValues = services_.ini.GetSettBool(kCapi, "LoadThisValues", false, file);
  capi.skipVersionAndManufact = services_.ini.GetSettBool(kCapi, "SkipVersionAndManufact", false, file);
  if (!capi.loadThisValues) return;
  capi.infoMask = static_cast<std::uint8_t>(ReadMask("InfoMask_", 8, file));
  capi.cipMask = ReadMask("CIPMask_", 32, file);
}

std::uint32_t modDeclareAll::ReadMask(const std::string& keyPrefix, unsigned bits, const std::string& file) const {
  std::uint32_t mask = 0;
  for (unsigned bit = 0; bit < bits; ++bit) {
    if (services_.ini.GetSettBool(kCapi, keyPrefix + std::to_string(bit), false, file)) mask |= 1U << bit;
  }
  return mask;
}

bool modDeclareAll::IsNumber(const std::string& text) const {
  return IsNumeric(text, services_.numberLocale.Separators());
}

void modDeclareAll::ShowFault(const std::string& function) {
  Diagnostics& diagnostics = services_.diagnostics;
  if (!diagnostics.handlersArmed) throw;
  CapturePendingError(diagnostics);
  const std::string line = std::to_string(diagnostics.pending.line);
  diagnostics.pending.Clear();
  services_.messages.MsgBoxForward("Error in Function \"" + function + "\" at Line " + line, kMessageBoxCritical, "");
}

}  // namespace fonklav
