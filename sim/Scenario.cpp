#include "sim/Scenario.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <map>
#include <utility>

#include "sim/TapiCodes.h"
#include "util/CaseFold.h"
#include "util/Text.h"

namespace fonklav {

namespace {

std::optional<std::uint32_t> Parsed(std::string_view digits, int base) {
  std::uint32_t value = 0;
  const char* const end = digits.data() + digits.size();
  const auto [rest, error] = std::from_chars(digits.data(), end, value, base);
  if (error != std::errc{} || rest != end) return std::nullopt;
  return value;
}

/// A call state by its name, in large or small letters, or by its number.
std::uint32_t ReadState(ScenarioLine& line) {
  static const std::map<std::string, std::uint32_t> states{{"idle", LINECALLSTATE_IDLE},
                                                           {"dialing", LINECALLSTATE_DIALING},
                                                           {"ringback", LINECALLSTATE_RINGBACK},
                                                           {"busy", LINECALLSTATE_BUSY},
                                                           {"connected", LINECALLSTATE_CONNECTED},
                                                           {"proceeding", LINECALLSTATE_PROCEEDING},
                                                           {"disconnected", LINECALLSTATE_DISCONNECTED}};
  const std::string text = line.Word("a call state");
  const auto found = states.find(FoldCase(text));
  return found != states.end() ? found->second : line.ToNumber(text);
}

void SetTelephony(Scenario& scenario, ScenarioLine& line) {
  line.Into("version", scenario.version);
  line.Into("reuse", scenario.reuse);
  line.Into("inside", scenario.inside);
  line.Into("blanks", scenario.blanks);
}

/// Without further words the device is an ordinary voice line.
void AddDevice(Scenario& scenario, ScenarioLine& line) {
  Scenario::Device device;
  line.Into("name", device.name);
  line.Into("provider", device.provider);
  line.Into("switch", device.switchInfo);
  line.Into("version", device.version);
  line.Into("icon", device.icon);
  device.extension = {line.Number("ext0", 0), line.Number("ext1", 0), line.Number("ext2", 0), line.Number("ext3", 0)};
  LINEDEVCAPS& caps = device.caps;
  caps.dwPermanentLineID = line.Number("id", static_cast<std::uint32_t>(scenario.devices.size()) + 1);
  caps.dwStringFormat = line.Number("format", STRINGFORMAT_ASCII);
  caps.dwAddressModes = line.Number("addressmodes", LINEADDRESSMODE_ADDRESSID);
  caps.dwNumAddresses = line.Number("addresses", 1);
  caps.dwBearerModes = line.Number("bearer", LINEBEARERMODE_VOICE);
  caps.dwMaxRate = line.Number("rate", 64000);
  caps.dwMediaModes = line.Number("media", LINEMEDIAMODE_INTERACTIVEVOICE);
  caps.dwGenerateToneModes = line.Number("tones", 0);
  caps.dwGenerateToneMaxNumFreq = line.Number("tonefreq", 0);
  caps.dwNumTerminals = line.Number("terminals", 0);
  caps.dwMaxNumActiveCalls = 1;
  scenario.devices.push_back(std::move(device));
}

void AddLocation(Scenario& scenario, ScenarioLine& line) {
  Scenario::Location location;
  location.id = line.Number("id", static_cast<std::uint32_t>(scenario.locations.size()) + 1);
  line.Into("name", location.name);
  line.Into("country", location.country);
  line.Into("city", location.city);
  line.Into("local", location.localAccess);
  line.Into("long", location.longDistanceAccess);
  if (line.Number("current", 0) != 0) scenario.currentLocation = scenario.locations.size();
  scenario.locations.push_back(std::move(location));
}

/// The message that a line's word `kind` stands for; `line` stands behind that word.
Scenario::Step ReadStep(const std::string& kind, ScenarioLine& line) {
  using Kind = Scenario::Step::Kind;
  Scenario::Step step;
  auto& message = step.message;
  if (kind == "reply") {
    step.kind = Kind::Reply;
    message = {.message = LINE_REPLY, .p2 = line.Number("result", 0)};
  } else if (kind == "state") {
    step.kind = Kind::State;
    message = {.message = LINE_CALLSTATE, .p1 = ReadState(line), .p2 = line.Number("detail", 0)};
  } else if (kind == "message") {
    const auto instance = line.Text("instance");
    step.ownInstance = !instance;
    message = {line.Number("device", 0), line.Number("msg", 0), line.ToNumber(instance.value_or("0")),
               line.Number("p1", 0),     line.Number("p2", 0),  line.Number("p3", 0)};
  } else {
    line.Fail("'" + kind + "' is none of reply, state, message, nothing");
  }
  return step;
}

template <auto Steps>
void AddStep(Scenario& scenario, ScenarioLine& line) {
  auto& steps = scenario.*Steps;
  if (!steps) steps.emplace();
  const std::string kind = line.Word("reply, state, message or nothing");
  if (kind == "nothing") return steps->clear();
  steps->push_back(ReadStep(kind, line));
  steps->back().after = std::chrono::milliseconds(line.Number("after", 0));
}

void AddRefusal(Scenario& scenario, ScenarioLine& line) {
  Scenario::Refusal refusal;
  refusal.function = line.Word("a function");
  refusal.code = sim::Code(line.ToNumber(line.Word("a code")));
  line.Into("nth", refusal.nth);
  line.Into("times", refusal.times);
  scenario.refusals.push_back(std::move(refusal));
}

void AddPatch(Scenario& scenario, ScenarioLine& line) {
  Scenario::Patch patch;
  patch.structure = line.Word("a structure");
  if (patch.structure != "devcaps" && patch.structure != "translatecaps" && patch.structure != "translateoutput") {
    line.Fail("'" + patch.structure + "' is none of devcaps, translatecaps, translateoutput");
  }
  if (const auto device = line.Text("device")) patch.device = line.ToNumber(*device);
  line.Into("offset", patch.offset);
  line.Into("value", patch.value);
  line.Into("step", patch.step);
  scenario.patches.push_back(std::move(patch));
}

void ApplyLine(Scenario& scenario, ScenarioLine line) {
  static const std::map<std::string_view, void (*)(Scenario&, ScenarioLine&)> directives{
      {"tapi", SetTelephony},
      {"device", AddDevice},
      {"location", AddLocation},
      {"call", AddStep<&Scenario::callSteps>},
      {"drop", AddStep<&Scenario::dropSteps>},
      {"refuse", AddRefusal},
      {"patch", AddPatch}};
  if (line.Empty()) return;
  const std::string name = line.Word("a directive");
  const auto found = directives.find(name);
  if (found == directives.end()) line.Fail("unknown directive '" + name + "'");
  found->second(scenario, line);
  line.End();
}

}  // namespace

ScenarioLine::ScenarioLine(std::string_view text, std::size_t number) : number_(number) {
  bool within = false;  // an item
  bool quoted = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char sign = text[at];
    if (!within && sign == '#') break;
    const bool begins = !within;
    within = quoted || std::string_view(" \t\r").find(sign) == std::string_view::npos;
    if (!within) continue;
    if (begins) items_.emplace_back();
    Item& item = items_.back();
    if (sign == '"') {
      quoted = !quoted;
    } else if (quoted && sign == '\\') {
      const auto byte = text.substr(at, 2) == "\\x" ? Parsed(text.substr(at + 2, 2), 16) : std::nullopt;
      if (!byte) Fail(R"(an escape is no \xNN)");
      item.value += static_cast<char>(*byte);
      at += 3;
    } else if (!quoted && sign == '=' && item.key.empty()) {
      item.key = std::exchange(item.value, {});
    } else {
      item.value += sign;
    }
  }
  if (quoted) Fail("a quote is not closed");
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

void ScenarioLine::End() const {
  if (items_.empty()) return;
  const Item& item = items_.front();
  Fail("'" + (item.key.empty() ? item.value : item.key) + "' is not understood here");
}

void ScenarioLine::Fail(const std::string& why) const {
  throw ScenarioError("line " + std::to_string(number_) + ": " + why);
}

Scenario Scenario::Parse(std::string_view text) {
  Scenario scenario;
  std::size_t number = 0;
  for (const auto& line : Split(text, "\n")) scenario.Apply(line, ++number);
  return scenario;
}

Scenario Scenario::Load(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw ScenarioError("'" + path + "' cannot be read");
  return Parse(std::string(std::istreambuf_iterator<char>(file), {}));
}

void Scenario::Apply(std::string_view text, std::size_t number) {
  constexpr std::string_view kRepeat = "repeat ";
  if (!text.starts_with(kRepeat)) return ApplyLine(*this, ScenarioLine(text, number));
  text.remove_prefix(kRepeat.size());
  const std::size_t end = std::min(text.find(' '), text.size());
  const std::uint32_t times = ScenarioLine(text, number).ToNumber(text.substr(0, end));
  for (std::uint32_t n = 1; n <= times; ++n) {
    ApplyLine(*this, ScenarioLine(ReplaceAll(text.substr(end), "{n}", std::to_string(n)), number));
  }
}

}  // namespace fonklav
