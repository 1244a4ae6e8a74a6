#include "sim/ScenarioLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "platform/TapiWire.h"

namespace fonklav {

namespace {

constexpr std::string_view kBlanks = " \t\r";

/// The call states that mean something to a dialer.
constexpr std::array kCallStates{std::pair{"idle", LINECALLSTATE_IDLE},
                                 std::pair{"dialing", LINECALLSTATE_DIALING},
                                 std::pair{"ringback", LINECALLSTATE_RINGBACK},
                                 std::pair{"busy", LINECALLSTATE_BUSY},
                                 std::pair{"connected", LINECALLSTATE_CONNECTED},
                                 std::pair{"proceeding", LINECALLSTATE_PROCEEDING},
                                 std::pair{"disconnected", LINECALLSTATE_DISCONNECTED}};

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
  bool quoted = false;
  for (; at < text.size() && (quoted || kBlanks.find(text[at]) == std::string_view::npos); ++at) {
    if (text[at] == '"') {
      quoted = !quoted;
    } else if (quoted && text[at] == '\\') {
      const auto byte = text.substr(at, 2) == "\\x" ? Parsed(text.substr(at + 2, 2), 16) : std::nullopt;
      if (!byte) Fail(R"(an escape is no \xNN)");
      item.value += static_cast<char>(*byte);
      at += 3;
    } else if (!quoted && text[at] == '=' && item.key.empty()) {
      item.key = std::exchange(item.value, {});
    } else {
      item.value += text[at];
    }
  }
  if (quoted) Fail("a quote is not closed");
  return item;
}

std::optional<std::string> ScenarioLine::Text(std::string_view key) {
  const auto found = std::ranges::find(items_, key, &Item::key);
  if (found == items_.end()) return std::nullopt;
  std::string value = std::move(found->value);
  items_.erase(found);
  return value;
}

std::string ScenarioLine::Word(std::string_view what) {
  auto word = Text("");
  if (!word) Fail(std::string(what) + " is missing");
  return *word;
}

std::uint32_t ScenarioLine::Number(std::string_view key, std::uint32_t otherwise) {
  const auto text = Text(key);
  return text ? ToNumber(*text) : otherwise;
}

std::uint32_t ScenarioLine::ToNumber(std::string_view text) const {
  const auto value = text.starts_with("0x") ? Parsed(text.substr(2), 16) : Parsed(text, 10);
  if (!value) Fail("'" + std::string(text) + "' is no number");
  return *value;
}

std::uint32_t ScenarioLine::ToState(const std::string& text) const {
  const auto small = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter; };
  for (const auto& [name, state] : kCallStates) {
    if (std::ranges::equal(std::string_view(name), text, {}, {}, small)) return state;
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
