#include "diag/ParamArray.h"

#include "util/Text.h"

namespace fonklav {
namespace {

constexpr std::string_view kLineBreak = "<CR>";
constexpr const char* kFailed = "ERROR in GetStringFromParamArray";  // in place of arguments that could not be rendered

/// Renders one value that is not an array; an array within an array is like an object.
struct Element {
  std::string operator()(std::string_view text) const { return "S:" + std::string(text); }
  std::string operator()(const std::string* text) const { return "S:" + *text; }
  std::string operator()(bool flag) const { return flag ? "B:1" : "B:0"; }
  std::string operator()(std::int64_t number) const { return "N:" + std::to_string(number); }
  std::string operator()(double number) const { return "N:" + ShortestText(number); }
  template <typename Other>
  std::string operator()(const Other&) const {
    return {};
  }
};

/// Gathers values, those of an array one by one.
class Gatherer {
 public:
  void operator()(std::span<const std::string> texts) {
    for (const std::string& text : texts) Join(Element{}(&text));
  }
  void operator()(std::span<const LogArg> values) {
    for (const LogArg& value : values) Join(std::visit(Element{}, value.Get()));
  }
  template <typename Single>
  void operator()(const Single& value) {
    Join(Element{}(value));
  }

  [[nodiscard]] const std::string& Text() const noexcept { return text_; }

 private:
  // A value that renders empty still takes its separator, but not at the front.
  void Join(const std::string& value) {
    if (!text_.empty()) text_ += ", ";
    text_ += value;
  }

  std::string text_;
};

}  // namespace

std::string GetStringFromParamArray(LogArgs args) noexcept {
  try {
    Gatherer gatherer;
    for (const LogArg& argument : args) std::visit(gatherer, argument.Get());
    if (gatherer.Text().empty()) return {};
    return "(" + ReplaceAll(gatherer.Text(), kCrLf, kLineBreak) + ")";
  } catch (...) {
    return kFailed;
  }
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
