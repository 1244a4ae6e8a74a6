#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "config/Configuration.h"
#include "diag/LogLimits.h"
#include "diag/clsFiles.h"
#include "util/ProcedureLog.h"

namespace fonklav {

/// The program's one diagnostics object.
class clsErrorHandling : public ProcedureLog {
 public:
  clsErrorHandling(Diagnostics& diagnostics, Configuration& config, const Ports& ports, LogLimits& limits);
  ~clsErrorHandling() override;

  void LogDebug_Trace(std::string_view step, LogArgs args) noexcept override;
  void LogDebug_TAPI(std::string_view message, LogArgs args) noexcept override;
  void ErrorLogNew(std::string_view module, LogArgs args) noexcept override;

 private:
  Diagnostics& diagnostics_;
  Configuration& config_;
  FileSystem& fileSystem_;
  const CodePage& codePage_;
  const Clock& clock_;
  clsFiles files_;
  bool writing_{false};
  std::deque<std::string> queue_;
};

}  // namespace fonklav
