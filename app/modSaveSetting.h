#pragma once

#include <cstdint>
#include <string>

#include "util/Diagnostics.h"

namespace fonklav {

class FormWindow;
class modAPI_INI;
struct LineState;

/// What the user sets besides the line.
struct DialSettings {
  std::string TAPIAmtVW;  ///< what to dial for an outside line where the system's location does not say
};

/// Limits that the suite's settings give for logs. They are read and kept; this program's logs go by size.
struct LogLimits {
  std::int32_t logLineLimit{25};
  std::int32_t backupCount{9};
};

/// The dialer's settings file, sett_TAPI.ini.
class modSaveSetting {
 public:
  modSaveSetting(Diagnostics& diagnostics, modAPI_INI& ini, FormWindow& form, LineState& lines, DialSettings& settings,
                 LogLimits& limits)
      : diagnostics_(diagnostics), ini_(ini), form_(form), lines_(lines), settings_(settings), limits_(limits) {}

  /// Reads the file and applies it: the form's position, the chosen line, the outside-line code, the log limits. What
  /// is missing or unreadable counts as its default.
  void LoadSettings();
  /// Writes what the user can change: position, line and code. The limits are never written.
  void SaveSettings();

 private:
  Diagnostics& diagnostics_;
  modAPI_INI& ini_;
  FormWindow& form_;
  LineState& lines_;
  DialSettings& settings_;
  LogLimits& limits_;
};

}  // namespace fonklav
