#include "diag/ParamArray.h"

#include "util/Text.h"

namespace fonklav {

using namespace std::string_view_literals;

namespace {

constexpr std::string_view kLineBreak = "<CR>";
constexpr const char* kFailed = "ERROR in GetStringFromParamArray";  // in place of arguments that could not be rendered

/// Adds values to a line, those of an array one by one; an array within an array is like an object.
struct Gatherer {
  std::string& line;
  std::size_t start;  ///< of the first value
  bool within{false};

  void operator()(std::string_view text) const { Next().append("S:"sv).append(text); }
  void operator()(const std::string* text) const { (*this)(std::string_view(*text)); }
  void operator()(bool flag) const { Next().append(flag ? "B:1"sv : "B:0"sv); }
  void operator()(std::int64_t number) const { Next().append("N:"sv).append(std::to_string(number)); }
  void operator()(double number) const { Next().append("N:"sv).append(ShortestText(number)); }
  void operator()(LogArg::Nothing) const { Next(); }
  template <typename Value>
  void operator()(std::span<const Value> values) const {
    if (within) return static_cast<void>(Next());
    for (const LogArg value : values) std::visit(Gatherer{line, start, true}, value.Get());
  }

 private:
  // A value that adds nothing still takes its separator, but not at the front.
  std::string& Next() const { return line.size() > start ? line.append(", "sv) : line; }
};

}  // namespace

void AppendParamArray(std::string& line, LogArgs args) {
  const std::size_t before = line.size();
  try {
    line += '(';
    for (const LogArg& argument : args) std::visit(Gatherer{line, before + 1}, argument.Get());
    line.size() > before + 1 ? line.push_back(')') : line.pop_back();
    if (line.find(kCrLf, before) == std::string::npos) return;
    line.replace(before, std::string::npos, ReplaceAll(line.substr(before), kCrLf, kLineBreak));
  } catch (...) {
    line.resize(before);
    line += kFailed;
  }
}

std::string GetStringFromParamArray(LogArgs args) noexcept {
  std::string text;
  AppendParamArray(text, args);
  return text;
}

std::string VisibleControls(const std::string& text) {
  std::string visible;
  visible.reserve(text.size());
  for (const char c : ReplaceAll(text, kCrLf, kLineBreak)) {
    const auto code = static_cast<unsigned char>(c);
    if (code >= 32) {
      visible += c;
    } else {
      visible += "#[" + std::to_string(code);
      visible += ']';
    }
  }
  return visible;
}

}  // namespace fonklav
