#include "sim/Scenario.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include "sim/ScenarioLine.h"
#include "sim/TapiCodes.h"
#include "util/Text.h"

namespace fonklav {

namespace {

using std::chrono::milliseconds;

using Kind = DueMessage::Kind;

const Scenario::Step kReply{.kind = Kind::Reply, .after = milliseconds(10), .message = {.message = LINE_REPLY}};
const Scenario::Step kIdle{
    .kind = Kind::State, .after = milliseconds(20), .message = {.message = LINE_CALLSTATE, .p1 = LINECALLSTATE_IDLE}};

struct DeviceNumber {
  std::string_view key;
  std::size_t offset;
  std::uint32_t standard;
};

/// What a device line may say about the numbers in LINEDEVCAPS. Without it the device is an ordinary voice line.
constexpr std::array kDeviceNumbers{
    DeviceNumber{"format", offsetof(LINEDEVCAPS, dwStringFormat), STRINGFORMAT_ASCII},
    DeviceNumber{"addressmodes", offsetof(LINEDEVCAPS, dwAddressModes), LINEADDRESSMODE_ADDRESSID},
    DeviceNumber{"addresses", offsetof(LINEDEVCAPS, dwNumAddresses), 1},
    DeviceNumber{"bearer", offsetof(LINEDEVCAPS, dwBearerModes), LINEBEARERMODE_VOICE},
    DeviceNumber{"rate", offsetof(LINEDEVCAPS, dwMaxRate), 64000},
    DeviceNumber{"media", offsetof(LINEDEVCAPS, dwMediaModes), LINEMEDIAMODE_INTERACTIVEVOICE},
    DeviceNumber{"tones", offsetof(LINEDEVCAPS, dwGenerateToneModes), 0},
    DeviceNumber{"tonefreq", offsetof(LINEDEVCAPS, dwGenerateToneMaxNumFreq), 0},
    DeviceNumber{"flags", offsetof(LINEDEVCAPS, dwDevCapFlags), 0},
    DeviceNumber{"calls", offsetof(LINEDEVCAPS, dwMaxNumActiveCalls), 1},
    DeviceNumber{"terminals", offsetof(LINEDEVCAPS, dwNumTerminals), 0}};

/// "repeat 3 device name={n}" as its three lines; any other line as itself.
std::vector<std::string> Repeated(std::string_view text, std::size_t number) {
  constexpr std::string_view kRepeat = "repeat ";
  if (!text.starts_with(kRepeat)) return {std::string(text)};
  text.remove_prefix(kRepeat.size());
  const std::size_t end = std::min(text.find(' '), text.size());
  const std::uint32_t count = ScenarioLine(text, number).ToNumber(text.substr(0, end));
  std::vector<std::string> lines;
  for (std::uint32_t n = 1; n <= count; ++n) lines.push_back(ReplaceAll(text.substr(end), "{n}", std::to_string(n)));
  return lines;
}

}  // namespace

Scenario::Scenario() : callSteps{kReply}, dropSteps{kReply, kIdle} {}

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
  for (const auto& line : Repeated(text, number)) ApplyLine(ScenarioLine(line, number));
}

void Scenario::ApplyLine(ScenarioLine line) {
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

void Scenario::SetTelephony(ScenarioLine& line) {
  line.Into("version", version);
  line.Into("reuse", reuse);
  line.Into("inside", inside);
}

void Scenario::AddDevice(ScenarioLine& line) {
  Device device;
  line.Into("name", device.name);
  line.Into("provider", device.provider);
  line.Into("switch", device.switchInfo);
  line.Into("version", device.version);
  line.Into("low", device.low);
  line.Into("icon", device.icon);
  for (std::size_t word = 0; word < device.extension.size(); ++word) {
    line.Into("ext" + std::to_string(word), device.extension[word]);
  }
  const auto place = static_cast<std::uint32_t>(devices.size());
  device.numbers[offsetof(LINEDEVCAPS, dwPermanentLineID)] = line.Number("id", place + 1);
  for (const auto& [key, offset, standard] : kDeviceNumbers) device.numbers[offset] = line.Number(key, standard);
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
  if (line.Number("current", 0) != 0) currentLocation = location.id;
  locations.push_back(std::move(location));
}

void Scenario::SetCodes(ScenarioLine& line) {
  codes.emplace();
  line.Into("country", codes->country);
  line.Into("city", codes->city);
  if (!codes->country.empty() || !codes->city.empty()) return;
  if (line.Word("country=, city= or none") != "none") line.Fail("only 'none' may stand here");
  refusals.push_back({.function = "tapiGetLocationInfo", .code = sim::TAPIERR_REQUESTFAILED});
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
  Step step;
  auto& message = step.message;
  const auto instance = line.Text("instance");
  step.ownInstance = !instance;
  if (instance) message.instance = line.ToNumber(*instance);
  message.hDevice = line.Number("device", 0);
  message.message = line.Number("msg", 0);
  message.p1 = line.Number("p1", 0);
  message.p2 = line.Number("p2", 0);
  message.p3 = line.Number("p3", 0);
  return step;
}

void Scenario::AddStep(ScenarioLine& line, std::vector<Step>& steps, bool& scripted) {
  if (!scripted) steps.clear();
  scripted = true;
  const std::string kind = line.Word("reply, state, message or nothing");
  Step step;
  if (kind == "reply") {
    step = kReply;
    step.message.p2 = line.Number("result", 0);
  } else if (kind == "state") {
    step = kIdle;
    step.message.p1 = line.ToState(line.Word("a call state"));
    step.message.p2 = line.Number("detail", 0);
  } else if (kind == "message") {
    step = ParseMessage(line);
  } else if (kind == "nothing") {
    return steps.clear();
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
  line.Into("step", patch.step);
  patches.push_back(std::move(patch));
}

}  // namespace fonklav
