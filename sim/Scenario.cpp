#include "sim/Scenario.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>

#include "sim/ScenarioLine.h"
#include "sim/TapiCodes.h"
#include "util/Text.h"

namespace fonklav {

namespace {

using std::chrono::milliseconds;

std::vector<Scenario::Step> DefaultCall() { return {{.kind = Scenario::Step::Kind::Reply, .after = milliseconds(10)}}; }

std::vector<Scenario::Step> DefaultDrop() {
  return {{.kind = Scenario::Step::Kind::Reply, .after = milliseconds(10)},
          {.kind = Scenario::Step::Kind::State, .after = milliseconds(20), .state = 0x1}};
}

/// "repeat 3 device name={n}" as its three lines; any other line as itself.
std::vector<std::string> Repeated(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos || !text.substr(begin).starts_with("repeat ")) return {std::string(text)};
  text.remove_prefix(begin + std::string_view("repeat ").size());
  unsigned count = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc{}) throw ScenarioError("repeat wants a number and a line");
  text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
  std::vector<std::string> lines;
  for (unsigned n = 1; n <= count; ++n) lines.push_back(ReplaceAll(text, "{n}", std::to_string(n)));
  return lines;
}

}  // namespace

Scenario::Scenario() : callSteps(DefaultCall()), dropSteps(DefaultDrop()) {}

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
  for (const auto& line : Repeated(text)) Apply(ScenarioLine(line, number));
}

void Scenario::Apply(ScenarioLine line) {
  if (line.Empty()) return;
  struct Directive {
    std::string_view name;
    void (Scenario::*read)(ScenarioLine&);
  };
  static constexpr std::array kDirectives{Directive{"tapi", &Scenario::SetTelephony},
                                          Directive{"device", &Scenario::AddDevice},
                                          Directive{"location", &Scenario::AddLocation},
                                          Directive{"codes", &Scenario::SetCodes},
                                          Directive{"translate", &Scenario::SetTranslation},
                                          Directive{"call", &Scenario::AddCallStep},
                                          Directive{"drop", &Scenario::AddDropStep},
                                          Directive{"refuse", &Scenario::AddRefusal},
                                          Directive{"patch", &Scenario::AddPatch}};
  const std::string name = line.Word("a directive");
  const auto* const found = std::find_if(kDirectives.begin(), kDirectives.end(),
                                         [&](const Directive& directive) { return directive.name == name; });
  if (found == kDirectives.end()) line.Fail("unknown directive '" + name + "'");
  (this->*found->read)(line);
  line.End();
}

void Scenario::SetTelephony(ScenarioLine& line) { line.Into("version", version); }

void Scenario::AddDevice(ScenarioLine& line) {
  Device device;
  device.permanentId = static_cast<std::uint32_t>(devices.size()) + 1;
  line.Into("name", device.name);
  line.Into("provider", device.provider);
  line.Into("switch", device.switchInfo);
  line.Into("version", device.version);
  line.Into("low", device.low);
  for (std::size_t word = 0; word < device.extension.size(); ++word) {
    line.Into("ext" + std::to_string(word), device.extension[word]);
  }
  line.Into("id", device.permanentId);
  line.Into("format", device.stringFormat);
  line.Into("addresses", device.addresses);
  line.Into("addressmodes", device.addressModes);
  line.Into("bearer", device.bearer);
  line.Into("rate", device.rate);
  line.Into("media", device.media);
  line.Into("tones", device.tones);
  line.Into("tonefreq", device.toneFrequencies);
  line.Into("terminals", device.terminals);
  line.Into("flags", device.flags);
  line.Into("icon", device.icon);
  devices.push_back(std::move(device));
}

void Scenario::AddLocation(ScenarioLine& line) {
  Location location;
  location.id = static_cast<std::uint32_t>(locations.size()) + 1;
  line.Into("id", location.id);
  line.Into("name", location.name);
  line.Into("country", location.country);
  line.Into("city", location.city);
  line.Into("local", location.localAccess);
  line.Into("long", location.longDistanceAccess);
  line.Into("ldprefix", location.longDistancePrefix);
  line.Into("intlprefix", location.internationalPrefix);
  if (line.Number("current", 0) != 0) currentLocation = location.id;
  locations.push_back(std::move(location));
}

void Scenario::SetCodes(ScenarioLine& line) {
  codesMissing = false;
  Codes given;
  const auto country = line.Text("country");
  const auto city = line.Text("city");
  if (!country && !city) {
    if (line.Word("country=, city= or none") != "none") line.Fail("only 'none' may stand here");
    codesMissing = true;
  }
  codes = Codes{country.value_or(""), city.value_or("")};
}

void Scenario::SetTranslation(ScenarioLine& line) {
  line.Into("prefix", dialPrefix);
  if (const auto blanks = line.Text("blanks")) {
    if (*blanks != "optional" && *blanks != "required") line.Fail("blanks are optional or required");
    blanksOptional = *blanks == "optional";
  }
  if (auto fixed = line.Text("dialable")) dialable = std::move(fixed);
}

Scenario::Step Scenario::ParseMessage(ScenarioLine& line) {
  Step step{.kind = Step::Kind::Message};
  line.Into("msg", step.message);
  line.Into("device", step.device);
  if (const auto instance = line.Text("instance")) step.instance = line.ToNumber(*instance);
  line.Into("p1", step.p1);
  line.Into("p2", step.p2);
  line.Into("p3", step.p3);
  return step;
}

void Scenario::AddCallStep(ScenarioLine& line) { AddStep(line, callSteps, callScripted_); }

void Scenario::AddDropStep(ScenarioLine& line) { AddStep(line, dropSteps, dropScripted_); }

void Scenario::AddStep(ScenarioLine& line, std::vector<Step>& steps, bool& scripted) {
  if (!scripted) steps.clear();
  scripted = true;
  const std::string kind = line.Word("reply, state, message or nothing");
  Step step;
  if (kind == "nothing") {
    steps.clear();
    return;
  }
  if (kind == "reply") {
    line.Into("result", step.result);
  } else if (kind == "state") {
    step.kind = Step::Kind::State;
    step.state = line.ToState(line.Word("a call state"));
    line.Into("detail", step.detail);
  } else if (kind == "message") {
    step = ParseMessage(line);
  } else {
    line.Fail("'" + kind + "' is none of reply, state, message, nothing");
  }
  step.after = milliseconds(line.Number("after", 0));
  steps.push_back(step);
}

void Scenario::AddRefusal(ScenarioLine& line) {
  Refusal refusal;
  refusal.function = line.Word("a function");
  refusal.code = sim::Code(line.ToNumber(line.Word("a code")));
  line.Into("nth", refusal.nth);
  line.Into("times", refusal.times);
  refusals.push_back(std::move(refusal));
}

void Scenario::AddPatch(ScenarioLine& line) {
  Patch patch;
  patch.structure = line.Word("a structure");
  if (patch.structure != "devcaps" && patch.structure != "translatecaps" && patch.structure != "translateoutput") {
    line.Fail("'" + patch.structure + "' is none of devcaps, translatecaps, translateoutput");
  }
  if (const auto device = line.Text("device")) patch.device = line.ToNumber(*device);
  line.Into("offset", patch.offset);
  line.Into("value", patch.value);
  patches.push_back(std::move(patch));
}

}  // namespace fonklav
