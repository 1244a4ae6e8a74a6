#include "diag/clsErrorHandling.h"

#include <array>
#include <charconv>
#include <utility>

#include "Version.h"
#include "util/Text.h"

namespace fonklav {
namespace {

std::string Render(const LogArg& argument);

void Join(std::string& joined, const std::string& value) {
  if (!joined.empty()) joined += ", ";
  joined += value;
}

struct Renderer {
  std::string operator()(LogArg::Nothing) const { return {}; }
  std::string operator()(std::string_view text) const { return "S:" + std::string(text); }
  std::string operator()(const std::string* text) const { return "S:" + *text; }
  std::string operator()(bool flag) const { return flag ? "B:1" : "B:0"; }
  std::string operator()(std::int64_t number) const { return "N:" + std::to_string(number); }
  std::string operator()(double number) const {
    std::array<char, 32> text{};
    return "N:" + std::string(text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr);
  }
  std::string operator()(std::span<const std::string> texts) const {
    std::string joined;
    for (const auto& text : texts) Join(joined, "S:" + text);
    return joined;
  }
  std::string operator()(std::span<const LogArg> values) const {
    std::string joined;
    for (const auto& value : values) Join(joined, Render(value));
    return joined;
  }
};

std::string Render(const LogArg& argument) { return std::visit(Renderer{}, argument.Get()); }

std::string RenderAll(LogArgs args) {
  std::string joined;
  for (const LogArg& argument : args) Join(joined, Render(argument));
  return joined.empty() ? joined : "(" + ReplaceAll(joined, kCrLf, "<CR>") + ")";
}

}  // namespace

clsErrorHandling::clsErrorHandling(Diagnostics& diagnostics, Configuration& config, const Ports& ports, LogLimits&)
    : diagnostics_(diagnostics),
      config_(config),
      fileSystem_(ports.files),
      codePage_(ports.codePage),
      clock_(ports.clock),
      files_(diagnostics, config.files, ports.files, ports.codePage, ports.clock) {}

clsErrorHandling::~clsErrorHandling() = default;

void clsErrorHandling::LogDebug_Trace(std::string_view, LogArgs) noexcept {}

void clsErrorHandling::LogDebug_TAPI(std::string_view message, LogArgs args) noexcept try {
  if (!config_.state.debug.logTAPI) return;
  std::string line = std::string(message) + RenderAll(args);
  files_.FileWrite_Log(config_.state.dataRoot + "\\log\\debug.log", line);
} catch (...) {
}

void clsErrorHandling::ErrorLogNew(std::string_view module, LogArgs args) noexcept try {
  const PendingError error = std::exchange(diagnostics_.pending, {});
  if (writing_ || error.number == 0 || error.number == 401) return;
  writing_ = true;
  const std::string number = std::to_string(error.line);
  const std::string line =
      error.line == 0 ? "" : ", Line:" + std::string(number.size() < 3 ? 3 - number.size() : 0, ' ') + number + " ";
  const std::string rendered = RenderAll(args);
  std::string entry = diagnostics_.tag + " v" + std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) +
                      " " + std::string(module) + line + " + " + std::to_string(error.number) + " + " +
                      error.description;
  if (!rendered.empty()) entry += " Params" + rendered;
  files_.FileWrite_Log(config_.state.dataRoot + "\\log\\error.log", entry, 50);
  writing_ = false;
} catch (...) {
  writing_ = false;
}

}  // namespace fonklav
