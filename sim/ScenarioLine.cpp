#include "sim/ScenarioLine.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "sim/TapiCodes.h"

namespace fonklav {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::optional<std::uint32_t> Parsed(std::string_view digits, int base) {
  std::uint32_t value = 0;
  const char* const end = digits.data() + digits.size();
  const auto [rest, error] = std::from_chars(digits.data(), end, value, base);
  if (error != std::errc{} || rest != end) return std::nullopt;
  return value;
}

}  // namespace

ScenarioLine::ScenarioLine(std::string_view text, std::size_t number) : number_(number) {
  std::size_t at = text.find_first_not_of(kBlanks);
  while (at < text.size() && text[at] != '#') {
    items_.push_back(NextItem(text, at));
    at = text.find_first_not_of(kBlanks, at);
  }
}

ScenarioLine::Item ScenarioLine::NextItem(std::string_view text, std::size_t& at) const {
  Item item;
  while (at < text.size() && kBlanks.find(text[at]) == std::string_view::npos) {
    if (text[at] == '"') {
      item.value += Quoted(text, at);
    } else if (text[at] == '=' && item.key.empty()) {
      item.key = std::exchange(item.value, {});
      ++at;
    } else {
      item.value += text[at++];
    }
  }
  return item;
}

std::string ScenarioLine::Quoted(std::string_view text, std::size_t& at) const {
  std::string value;
  for (++at; at < text.size(); ++at) {
    if (text[at] == '"') {
      ++at;
      return value;
    }
    value += text[at] == '\\' ? Escaped(text, at) : text[at];
  }
  Fail("a quote is not closed");
}

/// Leaves `at` on the last character of the escape.
char ScenarioLine::Escaped(std::string_view text, std::size_t& at) const {
  const char kind = ++at < text.size() ? text[at] : '\0';
  if (kind == '"' || kind == '\\') return kind;
  const auto byte = kind == 'x' ? Parsed(text.substr(at + 1, 2), 16) : std::nullopt;
  if (!byte) Fail("an escape is none of \\\" \\\\ \\xNN");
  at += 2;
  return static_cast<char>(*byte);
}

std::string ScenarioLine::Word(std::string_view what) {
  const auto found = std::find_if(items_.begin(), items_.end(), [](const Item& item) { return item.key.empty(); });
  if (found == items_.end()) Fail(std::string(what) + " is missing");
  std::string word = std::move(found->value);
  items_.erase(found);
  return word;
}

std::optional<std::string> ScenarioLine::Text(std::string_view key) {
  const auto found = std::find_if(items_.begin(), items_.end(), [key](const Item& item) { return item.key == key; });
  if (found == items_.end()) return std::nullopt;
  std::string value = std::move(found->value);
  items_.erase(found);
  return value;
}

std::uint32_t ScenarioLine::Number(std::string_view key, std::uint32_t otherwise) {
  const auto text = Text(key);
  return text ? ToNumber(*text) : otherwise;
}

void ScenarioLine::Into(std::string_view key, std::string& value) {
  if (auto text = Text(key)) value = std::move(*text);
}

std::uint32_t ScenarioLine::ToNumber(const std::string& text) const {
  const bool hex = text.starts_with("0x");
  const auto value = Parsed(std::string_view(text).substr(hex ? 2 : 0), hex ? 16 : 10);
  if (!value) Fail("'" + text + "' is no number");
  return *value;
}

std::uint32_t ScenarioLine::ToState(const std::string& text) const {
  const auto same = [](char left, char right) {
    return left == (right >= 'a' && right <= 'z' ? right - 'a' + 'A' : right);
  };
  for (const auto& [name, state] : sim::kCallStates) {
    if (std::equal(name.begin(), name.end(), text.begin(), text.end(), same)) return state;
  }
  return ToNumber(text);
}

void ScenarioLine::End() const {
  if (items_.empty()) return;
  const Item& item = items_.front();
  Fail("'" + (item.key.empty() ? item.value : item.key) + "' is not understood here");
}

void ScenarioLine::Fail(const std::string& why) const {
  throw ScenarioError("line " + std::to_string(number_) + ": " + why);
}

}  // namespace fonklav
