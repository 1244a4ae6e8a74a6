#include "diag/clsErrorHandling.h"

#include <utility>

#include "Version.h"
#include "diag/ParamArray.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/Scope.h"

// The error log. The trace and the debug logs are in clsErrorHandling_Trace.cpp.
namespace fonklav {
namespace {

constexpr std::string_view kErrorLog = "\\log\\error.log";
constexpr std::int32_t kErrorLogKB = 50;
constexpr std::size_t kLineWidth = 3;

/// A source line as it stands in an entry: blanks in front up to three characters, nothing for an unknown line.
std::string LineText(int line) {
  if (line == 0) return {};
  const std::string text = std::to_string(line);
  return std::string(text.size() < kLineWidth ? kLineWidth - text.size() : 0, ' ') + text;
}

std::string TwoDigits(std::int64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); }

}  // namespace

clsErrorHandling::clsErrorHandling(Diagnostics& diagnostics, Configuration& config, const Ports& ports)
    : diagnostics_(diagnostics),
      config_(config),
      fileSystem_(ports.files),
      codePage_(ports.codePage),
      clock_(ports.clock),
      files_(diagnostics, config.files, ports.files, ports.codePage, ports.clock),
      created_(ports.clock.get().Ticks()) {
  if (diagnostics_.tag.empty()) diagnostics_.tag = "NON";
  try {
    const std::string log = FullPath(kErrorLog);
    const std::unique_ptr<FileLock> lock = fileSystem_.Lock(log);
    ErrorLogLineCount = files_.GetFileRowCount(log);
  } catch (...) {
    // Somebody else holds the old log. That is no reason not to start.
  }
}

clsErrorHandling::~clsErrorHandling() { Trace_Flush(); }

void clsErrorHandling::ErrorLogNew(std::string_view sModul, LogArgs args) noexcept {
  ErrorLogWrite(sModul, GetStringFromParamArray(args), Show::No, Force::No);
}

void clsErrorHandling::ErrorLogWithMsgBox(std::string_view sModul, LogArgs args) noexcept {
  ErrorLogWrite(sModul, GetStringFromParamArray(args), Show::Yes, Force::No);
}

void clsErrorHandling::ErrorLogForceWrite(std::string_view sModul, LogArgs args) noexcept {
  ErrorLogWrite(sModul, GetStringFromParamArray(args), Show::No, Force::Yes);
}

std::string clsErrorHandling::FileLogError() { return std::string(kErrorLog); }

void clsErrorHandling::ErrorLogWrite(std::string_view module, const std::string& args, Show show,
                                     Force force) noexcept {
  try {
    PendingError error = std::exchange(diagnostics_.pending, {});
    // A log that cannot be written is a fault of its own, which comes through here while the first entry is still being
    // written. It ends here, or the two would go round for ever.
    if (writing_ || error.number == static_cast<int>(ErrorNumber::NeverLogged)) return;
    if (force == Force::No && error.number == 0) return;
    // An exception that is not ours may bring any words, line breaks included, and an entry is one line.
    error.description = VisibleControls(error.description);
    if (diagnostics_.traceMode) TraceError(error);
    WriteEntry(error, module, args, force);
    if (show == Show::Yes) ShowError();
    diagnostics_.pending.Clear();  // what went wrong while the entry was written
  } catch (...) {
    CapturePendingError(diagnostics_);
    ShowFailure(std::exchange(diagnostics_.pending, {}).description);
  }
}

void clsErrorHandling::TraceError(const PendingError& error) {
  LogDebug_Trace("!ERROR!", {LineText(error.line) + " - " + std::to_string(error.number), error.description});
}

void clsErrorHandling::WriteEntry(const PendingError& error, std::string_view module, const std::string& args,
                                  Force force) {
  std::string entry = EntryHead(module);
  if (error.line != 0) entry.append(", Line:").append(LineText(error.line)).append(" ");
  if (force == Force::No || error.number != 0) entry.append(" + ").append(std::to_string(error.number));
  if (force == Force::No || !error.description.empty()) entry.append(" + ").append(error.description);
  if (!args.empty()) entry.append(" Params").append(VisibleControls(args));
  const std::string log = FullPath(kErrorLog);
  const Scope scope(writing_);
  // Counting is under the lock too: a log that somebody reads cannot be replaced.
  const std::unique_ptr<FileLock> lock = fileSystem_.Lock(log);
  files_.FileWrite_Log(log, entry, kErrorLogKB);
  ErrorLogLineCount = files_.GetFileRowCount(log);
}

std::string clsErrorHandling::EntryHead(std::string_view module) const {
  std::string head = diagnostics_.tag + " v";
  return head.append(kVersion).append(ElapsedPart()).append(" ").append(module);
}

std::string clsErrorHandling::ElapsedPart() const {
  // Only the suite's main program runs for so long that this is of interest.
  if (diagnostics_.tag != "PRG") return {};
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(clock_.Ticks() - created_).count();
  if (seconds < 0) return " TimeError";
  std::string text = " " + TwoDigits(seconds / 3600);
  text.append(":").append(TwoDigits(seconds / 60 % 60));
  return text.append(":").append(TwoDigits(seconds % 60));
}

void clsErrorHandling::ShowError() {
  const MessageTexts& texts = Messages();
  std::string prompt = texts.errorRaised + std::string(kCrLf);
  prompt.append(texts.seeFile).append(": ").append(kErrorLog);
  config_.messages.MsgBoxForward(prompt, kMessageBoxExclamation, "");
}

void clsErrorHandling::ShowFailure(const std::string& description) noexcept {
  try {
    config_.messages.MsgBoxForward("Error in ExceptionHandler" + std::string(kCrLf) + description,
                                   kMessageBoxExclamation, "");
  } catch (...) {
    // Not even the message could be put together: there is nobody left to tell.
  }
}

const clsErrorHandling::MessageTexts& clsErrorHandling::Messages() {
  if (messagesLoaded_) return messages_;
  const auto load = [&](const TextKey& text) { return config_.language.LoadLangKey(text); };
  messages_ = {load(kErrorRaised), load(kSeeFile), load(kTracingIsActive), load(kMuchDataInShortTime)};
  messagesLoaded_ = true;
  return messages_;
}

std::string clsErrorHandling::FullPath(std::string_view log) const { return config_.state.dataRoot + std::string(log); }

}  // namespace fonklav
