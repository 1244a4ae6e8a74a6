#pragma once

#include <functional>
#include <memory>
#include <string>

#include "config/ConfigState.h"
#include "config/modAPI_Files.h"
#include "config/modAPI_INI.h"
#include "config/modPrivateDummy.h"
#include "config/modSystemPaths.h"
#include "platform/Ports.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// Makes the log once the folders are known. A function, because the log's own layer stands above this one.
using LogFactory = std::function<std::unique_ptr<ProcedureLog>()>;

/// What start-up works with. All of it outlives the module.
struct DeclareServices {
  Diagnostics& diagnostics;
  ConfigState& state;
  const modAPI_INI& ini;
  const modAPI_Files& files;
  modPrivateDummy& messages;
  const modSystemPaths& systemPaths;
  const Process& process;
  const NumberLocale& numberLocale;
};

/// The first thing that start-up does: where the suite keeps its data, and which switches are on. No setting, log or
/// language text is touched before it.
class modDeclareAll {
 public:
  modDeclareAll(const DeclareServices& services, LogFactory makeLog)
      : services_(services), makeLog_(std::move(makeLog)) {}

  /// Arms the error handlers, stores the program's tag, resolves the folders and creates the log. False when the
  /// program is to end at once. An exception out of the making of the log goes on to the caller: there is no log yet
  /// that could tell of it.
  [[nodiscard]] bool Init(const std::string& programCode, bool endIfAlreadyRunning);
  /// Reads the switches, then resolves the folders from the paths file beside the executable, which may be missing.
  /// True when they are set. A fault, also one of an accessor beneath, is shown, not logged: there is no log yet.
  [[nodiscard]] bool LoadSavePaths();
  /// Reads the switches from Rufmonspec.ini beside the executable; without it all stay off. A fault is shown,
  /// not logged, and leaves the switches read so far.
  bool LoadSpecs();

 private:
  /// Data root and folder of the phone books, from the paths file where there is one.
  void ReadPaths(const std::string& pathsFile);
  /// A text is the root itself; 0 is ZeroDataRoot, any other number the suite's common data folder.
  [[nodiscard]] std::string ReadDataRoot(const std::string& pathsFile) const;
  /// The data root for the setting 0: the program's own folder, where programs may write there.
  [[nodiscard]] std::string ZeroDataRoot() const;
  void ReadDebug(const std::string& file);
  void ReadLogMode(const std::string& file);
  void ReadCapi(const std::string& file);
  /// A mask whose bits are switches of their own, `keyPrefix` and the bit's number being the key.
  [[nodiscard]] std::uint32_t ReadMask(const std::string& keyPrefix, unsigned bits, const std::string& file) const;
  [[nodiscard]] bool IsNumber(const std::string& text) const;
  /// Tells the user of the exception in flight; for a catch block only. The name is part of the message.
  void ShowFault(const std::string& function);

  DeclareServices services_;
  LogFactory makeLog_;
};

}  // namespace fonklav
