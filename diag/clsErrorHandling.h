#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "config/Configuration.h"
#include "diag/clsFiles.h"
#include "platform/FileSystem.h"
#include "platform/Ports.h"
#include "util/ProcedureLog.h"
#include "util/clsCollection.h"

namespace fonklav {

/// The texts of the logs' message boxes.
inline constexpr TextKey kErrorRaised{"Message_ErrorRaised", "Es ist ein Fehler aufgetreten!"};
inline constexpr TextKey kSeeFile{"Message_SeeFile", "siehe Datei"};
inline constexpr TextKey kTracingIsActive{"Message_TracingIsActive", "Die Ablaufverfolgung ist aktiv!"};
inline constexpr TextKey kMuchDataInShortTime{"Message_MuchDataInShortTime",
                                              "Es werden in kurzer Zeit extrem viele Daten gespeichert!"};

inline constexpr std::array kLogMessages{kErrorRaised, kSeeFile, kTracingIsActive, kMuchDataInShortTime};

/// The program's one diagnostics object: the error log, the trace of procedure entries and the debug logs, all in
/// "\log\" under the data root. It is made once the folders are known and must go before the configuration; its
/// destructor writes what the trace still holds. No logging throws. A log that
/// cannot be written is silent; what goes wrong while an entry of the error log is put together is shown to the user.
class clsErrorHandling final : public ProcedureLog {
 public:
  clsErrorHandling(Diagnostics& diagnostics, Configuration& config, const Ports& ports);
  ~clsErrorHandling() override;

  /// Logs the pending error, if there is one, under the procedure's name and clears it. Error 401 is never logged.
  void ErrorLogNew(std::string_view sModul, LogArgs args) noexcept override;
  /// The same, and tells the user that there was an error and where it is written.
  void ErrorLogWithMsgBox(std::string_view sModul, LogArgs args) noexcept;
  /// Writes an entry even when no error is pending: `sModul` is the message then.
  void ErrorLogForceWrite(std::string_view sModul, LogArgs args) noexcept;
  /// The error log's path relative to the data root.
  [[nodiscard]] static std::string FileLogError();
  /// Lines of the error log, as of the last entry.
  std::int32_t ErrorLogLineCount{0};

  /// Traces one step, while the trace switch is on: the first time with a notice to the user, if that is switched on.
  /// Lines wait in a queue and are written 51 at a time.
  void LogDebug_Trace(std::string_view sModul, LogArgs args) noexcept override;
  /// Leaves the next steps out of the trace.
  void TraceHideNextSteps(std::int16_t Steps = 0) noexcept;
  /// Whether the first traced step tells the user that tracing is on and begins a new trace file.
  void TraceInfoMessage(bool show) noexcept { traceInfoMessage_ = show; }

  /// One line of the debug log, of the area that the name says, while the switch of that area is on.
  void LogDebug_Export(std::string_view sMsg, LogArgs args = {}) noexcept;
  void LogDebug_TAPI(std::string_view sMsg, LogArgs args = {}) noexcept override;
  [[nodiscard]] bool DebugsTAPI() const noexcept override { return config_.state.debug.logTAPI; }
  void LogDebug_CAPI(std::string_view sMsg, LogArgs args = {}) noexcept;
  void LogDebug_AVM(std::string_view sMsg, LogArgs args = {}) noexcept;
  void LogDebug_NCID(std::string_view sMsg, LogArgs args = {}) noexcept;
  void LogDebug_Other(std::string_view sMsg, LogArgs args = {}) noexcept;
  void LogDebug_Timing(std::string_view sMsg, LogArgs args = {}) noexcept;
  /// Written whatever the switches say.
  void LogDebug_Temp(std::string_view sMsg, LogArgs args = {}) noexcept;

  /// The trace queue's events.
  void oTraceQueue_QueueAdded() { WriteTrace(); }
  /// Nothing is to be done at these. A step that finds the queue full, behind a file that cannot be written, is left
  /// out.
  void oTraceQueue_QueueFull() {}
  void oTraceQueue_QueueSize(std::int16_t /*Count*/) {}
  void oTraceQueue_QueueTimerStart() {}

  /// One line for a log that has no member of its own, such as that of missing translations.
  void WriteLine(std::string_view log, std::string_view line) noexcept override;

 private:
  struct MessageTexts {
    std::string errorRaised;
    std::string seeFile;
    std::string tracingIsActive;
    std::string muchDataInShortTime;
  };
  enum class Show : bool { No, Yes };
  enum class Force : bool { No, Yes };

  // Error log
  /// Writes the pending error and clears it; `force` writes without one, `show` tells the user too.
  void ErrorLogWrite(std::string_view module, const std::string& args, Show show, Force force) noexcept;
  void WriteEntry(const PendingError& error, std::string_view module, const std::string& args, Force force);
  /// A step of its own, so that a trace shows where between the others the error was.
  void TraceError(const PendingError& error);
  [[nodiscard]] std::string EntryHead(std::string_view module) const;
  /// Blank and the time since the start, in the entries of the main program alone.
  [[nodiscard]] std::string ElapsedPart() const;
  void ShowError();
  /// Tells the user of an error that the log itself has: there is no other place for it.
  void ShowFailure(const std::string& description) noexcept;
  /// In the user's language, loaded at the first need: most runs have none.
  const MessageTexts& Messages();
  [[nodiscard]] std::string FullPath(std::string_view log) const;

  // Trace
  /// Whether this step is traced, and not one of those that TraceHideNextSteps leaves out; counts it.
  [[nodiscard]] bool CanTrace();
  void Trace_Flush();
  void ShowTraceNotice();
  [[nodiscard]] const std::string& TraceLine(std::string_view step, LogArgs args);
  void QueueTraceLine(const std::string& line);
  void WriteTrace() noexcept;
  [[nodiscard]] std::string OldestTraceLines(std::int32_t count) const;

  // Debug logs
  void WriteDebug(bool enabled, std::string_view message, LogArgs args) noexcept;

  Diagnostics& diagnostics_;
  Configuration& config_;
  FileSystem& fileSystem_;
  const CodePage& codePage_;
  const Clock& clock_;
  clsFiles files_;
  std::chrono::milliseconds created_;
  MessageTexts messages_;
  bool messagesLoaded_{false};
  bool writing_{false};  ///< the error log is being written: what fails meanwhile is not logged once more
  bool firstTrace_{true};
  bool traceInfoMessage_{false};
  std::int16_t hideCounter_{0};
  std::string lastStep_;
  std::int16_t repeatCount_{0};
  std::string traceLine_;  ///< kept from step to step for its memory
  std::unique_ptr<clsCollection> oTraceQueue_;
};

}  // namespace fonklav
