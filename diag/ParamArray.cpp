#include "diag/ParamArray.h"

#include "util/Text.h"

namespace fonklav {

using namespace std::string_view_literals;

namespace {

constexpr std::string_view kLineBreak = "<CR>";
constexpr const char* kFailed = "ERROR in GetStringFromParamArray";  // in place of arguments that could not be rendered

/// Adds one value that is not an array; an array within an array is like an object, which adds nothing.
struct Element {
  std::string& line;

  void operator()(std::string_view text) const { line.append("S:"sv).append(text); }
  void operator()(const std::string* text) const { (*this)(std::string_view(*text)); }
  void operator()(bool flag) const { line += flag ? "B:1"sv : "B:0"sv; }
  void operator()(std::int64_t number) const { line.append("N:"sv).append(std::to_string(number)); }
  void operator()(double number) const { line.append("N:"sv).append(ShortestText(number)); }
  template <typename Other>
  void operator()(const Other&) const {}
};

/// Adds values, those of an array one by one.
struct Gatherer {
  std::string& line;
  std::size_t start;  ///< of the first value

  void operator()(std::span<const std::string> texts) const {
    for (const std::string& text : texts) (*this)(&text);
  }
  void operator()(std::span<const LogArg> values) const {
    for (const LogArg& value : values) std::visit([&](const auto& single) { Join(single); }, value.Get());
  }
  template <typename Single>
  void operator()(const Single& value) const {
    Join(value);
  }

 private:
  // A value that adds nothing still takes its separator, but not at the front.
  template <typename Single>
  void Join(const Single& value) const {
    if (line.size() > start) line += ", "sv;
    Element{line}(value);
  }
};

void Append(std::string& line, LogArgs args) {
  line += '(';
  const std::size_t start = line.size();
  for (const LogArg& argument : args) std::visit(Gatherer{line, start}, argument.Get());
  if (line.size() == start) return line.pop_back();
  if (line.find(kCrLf, start) != std::string::npos)
    line.replace(start, line.npos, ReplaceAll(line.substr(start), kCrLf, kLineBreak));
  line += ')';
}

}  // namespace

void AppendParamArray(std::string& line, LogArgs args) {
  const std::size_t before = line.size();
  try {
    Append(line, args);
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
