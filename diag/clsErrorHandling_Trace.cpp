#include <algorithm>
#include <limits>

#include "Version.h"
#include "diag/ParamArray.h"
#include "diag/clsErrorHandling.h"
#include "util/DateTime.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

// The trace of procedure entries and the debug logs. What writes the trace is not traced itself and passes nothing on
// that fails: a log of steps must not change what the steps do.
namespace fonklav {

using namespace std::string_view_literals;  // an append of a view does not count its characters

namespace {

constexpr std::string_view kTraceLog = "\\log\\trace.log";
constexpr std::string_view kDebugLog = "\\log\\debug.log";
constexpr std::string_view kSpecsFile = "\\Rufmonspec.ini";
constexpr std::int16_t kQuietLines = 50;     ///< so many lines wait without being written
constexpr std::int32_t kLinesTogether = 51;  ///< so many lines are one write

}  // namespace

void clsErrorHandling::LogDebug_Trace(std::string_view sModul, LogArgs args) noexcept {
  if (!diagnostics_.traceMode) return;
  try {
    if (!config_.state.dataRoot.empty() && firstTrace_ && traceInfoMessage_) ShowTraceNotice();
    if (!CanTrace()) return;
    QueueTraceLine(TraceLine(sModul, args));
  } catch (...) {
    // The step is missing from the trace, and that is all.
  }
}

void clsErrorHandling::ShowTraceNotice() {
  firstTrace_ = false;
  config_.files.FileDelete(FullPath(kTraceLog));
  const MessageTexts& texts = Messages();
  std::string prompt = texts.tracingIsActive + std::string(kCrLf);
  prompt.append(texts.seeFile).append(": ").append(kSpecsFile).append(" ([Debug] - TraceMode=1)");
  prompt.append(kCrLf).append(kCrLf).append(texts.muchDataInShortTime).append(kCrLf);
  prompt.append(texts.seeFile).append(": ").append(FullPath(kTraceLog));
  config_.messages.MsgBoxForward(prompt, kMessageBoxInformation, "Rufmon - Tracing");
}

bool clsErrorHandling::CanTrace() {
  // Lowered by the step that asks, so the step that brings it to 0 is traced again.
  if (hideCounter_ > 0) --hideCounter_;
  return hideCounter_ <= 0;
}

void clsErrorHandling::TraceHideNextSteps(std::int16_t Steps) noexcept {
  Procedure(diagnostics_, "clsErrorHandling.TraceHideNextSteps", {Steps}, [&] {
    if (Steps == std::numeric_limits<std::int16_t>::max()) throw RunTimeError(ErrorNumber::Overflow);
    // One more, because the counter is lowered before it is looked at. The own entry has been traced already.
    hideCounter_ = static_cast<std::int16_t>(Steps + 1);
  });
}

const std::string& clsErrorHandling::TraceLine(std::string_view step, LogArgs args) {
  // The same step again and again, as from a timer, is told apart by a number.
  if (step == lastStep_) {
    if (repeatCount_ < std::numeric_limits<std::int16_t>::max()) ++repeatCount_;
  } else {
    lastStep_ = step;
    repeatCount_ = 1;
  }
  traceLine_.clear();
  PutStamp(traceLine_, clock_.Now());
  traceLine_.append(diagnostics_.tag).append(" v"sv).append(kVersion).append("  "sv).append(step);
  traceLine_.append(repeatCount_ < 10 ? " 0"sv : " "sv).append(std::to_string(repeatCount_));
  AppendParamArray(traceLine_, args);
  return traceLine_ += kCrLf;
}

void clsErrorHandling::QueueTraceLine(const std::string& line) {
  if (!oTraceQueue_) {
    oTraceQueue_ = std::make_unique<clsCollection>();
    oTraceQueue_->Queue_InfoDealy(kQuietLines);
    oTraceQueue_->QueueAdded = [this] { oTraceQueue_QueueAdded(); };
    oTraceQueue_->QueueFull = [this] { oTraceQueue_QueueFull(); };
    oTraceQueue_->QueueSize = [this](std::int16_t count) { oTraceQueue_QueueSize(count); };
    oTraceQueue_->QueueTimerStart = [this] { oTraceQueue_QueueTimerStart(); };
  }
  // As the bytes that will be written, so that a vain attempt does not convert them again and again.
  oTraceQueue_->Queue_Add(codePage_.ToBytes(line));
}

void clsErrorHandling::Trace_Flush() { WriteTrace(); }

void clsErrorHandling::WriteTrace() noexcept {
  if (!oTraceQueue_ || config_.state.dataRoot.empty()) return;
  try {
    while (oTraceQueue_->Count() > 0) {
      // Lines leave the queue when they are in the file. A few at a time keeps a vain attempt cheap, however many wait.
      const std::int32_t count = std::min(oTraceQueue_->Count(), kLinesTogether);
      fileSystem_.Append(FullPath(kTraceLog), OldestTraceLines(count));
      if (count == oTraceQueue_->Count()) return oTraceQueue_->Clear();
      for (std::int32_t line = 0; line < count; ++line) oTraceQueue_->RemoveFirst();
    }
  } catch (...) {
    // They stay queued until the file can be written.
  }
}

std::string clsErrorHandling::OldestTraceLines(std::int32_t count) const {
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(count) * 128);  // most lines are shorter
  for (std::int32_t line = 1; line <= count; ++line) {
    bytes.append(std::get<std::string>(oTraceQueue_->GetCollection().At(line)->second));
  }
  return bytes;
}

void clsErrorHandling::LogDebug_Export(std::string_view sMsg, LogArgs args) noexcept {
  WriteDebug(config_.state.debug.logExport, sMsg, args);
}

void clsErrorHandling::LogDebug_TAPI(std::string_view sMsg, LogArgs args) noexcept {
  WriteDebug(config_.state.debug.logTAPI, sMsg, args);
}

void clsErrorHandling::LogDebug_CAPI(std::string_view sMsg, LogArgs args) noexcept {
  WriteDebug(config_.state.debug.logCAPI, sMsg, args);
}

void clsErrorHandling::LogDebug_AVM(std::string_view sMsg, LogArgs args) noexcept {
  WriteDebug(config_.state.debug.logAVM, sMsg, args);
}

void clsErrorHandling::LogDebug_NCID(std::string_view sMsg, LogArgs args) noexcept {
  WriteDebug(config_.state.debug.logNCID, sMsg, args);
}

void clsErrorHandling::LogDebug_Other(std::string_view sMsg, LogArgs args) noexcept {
  WriteDebug(config_.state.debug.logOther, sMsg, args);
}

void clsErrorHandling::LogDebug_Timing(std::string_view sMsg, LogArgs args) noexcept {
  WriteDebug(config_.state.debug.logTiming, sMsg, args);
}

void clsErrorHandling::LogDebug_Temp(std::string_view sMsg, LogArgs args) noexcept { WriteDebug(true, sMsg, args); }

void clsErrorHandling::WriteDebug(bool enabled, std::string_view message, LogArgs args) noexcept {
  if (!enabled) return;
  try {
    std::string line(message);
    AppendParamArray(line, args);
    files_.FileWrite_Log(FullPath(kDebugLog), line);
  } catch (...) {
    // A line less.
  }
}

void clsErrorHandling::WriteLine(std::string_view log, std::string_view line) noexcept {
  try {
    std::string text(line);
    files_.FileWrite_Log(FullPath(log), text);
  } catch (...) {
    // A line less.
  }
}

}  // namespace fonklav
