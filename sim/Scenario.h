#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/LineMessage.h"

namespace fonklav {

class ScenarioLine;

/// What a scenario says: which devices and locations the simulated telephony has, how its calls go, which functions it
/// refuses and where its structures lie. Strings are bytes of the system's code page. The text format is described in
/// README.md of this folder.
struct Scenario {
  struct Device {
    std::string name{"Line"};
    std::string provider{"Line simulator"};
    std::string switchInfo;
    std::uint32_t version{TAPI_VERSION3_0};  ///< highest version that the negotiation yields
    std::uint32_t low{TAPI_VERSION1_3};
    std::array<std::uint32_t, 4> extension{};
    std::uint32_t icon{1};                         ///< 0: the device has no icon
    std::map<std::size_t, std::uint32_t> numbers;  ///< of LINEDEVCAPS, by offset
  };

  struct Location {
    std::uint32_t id{1};
    std::string name{"Location"};
    std::uint32_t country{49};
    std::string city{"30"};
    std::string localAccess;
    std::string longDistanceAccess;
  };

  /// What tapiGetLocationInfo answers, when it is not what the current location has.
  struct Codes {
    std::string country;
    std::string city;
  };

  /// A message that comes a while after the call or the drop was asked for. A reply gets its request, a call state its
  /// call; a raw message is delivered as it is.
  struct Step {
    DueMessage::Kind kind{DueMessage::Kind::Raw};
    std::chrono::milliseconds after{0};
    LineMessage message{};
    bool ownInstance{true};  ///< goes to the object that the line was opened for
  };

  struct Refusal {
    std::string function;
    std::int32_t code{0};
    std::uint32_t nth{1};  ///< the first call that is refused
    std::uint32_t times{std::numeric_limits<std::uint32_t>::max()};
    std::uint32_t seen{0};  ///< calls so far
  };

  /// A number written over what a structure would hold, for drivers that err.
  struct Patch {
    std::string structure;  ///< devcaps, translatecaps or translateoutput
    std::optional<std::uint32_t> device;
    std::uint32_t offset{0};
    std::uint32_t value{0};
    std::uint32_t step{0};  ///< what the value grows by with each structure
  };

  std::uint32_t version{TAPI_VERSION3_0};  ///< the highest that telephony as a whole offers
  std::uint32_t reuse{0};                  ///< not 0: a handle given back is the next one given out
  std::uint32_t inside{0};                 ///< not 0: what is due already comes from inside the functions
  std::vector<Device> devices;
  std::vector<Location> locations;
  std::optional<std::uint32_t> currentLocation;  ///< permanent ID; without one that of the first location
  std::optional<Codes> codes;
  bool blanksOptional{false};           ///< translation accepts canonical numbers without their blanks
  std::string dialPrefix;               ///< set in front of what a translation yields, for example T
  std::optional<std::string> dialable;  ///< what every translation yields
  std::vector<Step> callSteps;          ///< a reply alone, until the text gives steps of its own
  std::vector<Step> dropSteps;          ///< a reply and then IDLE, until the text gives steps of its own
  std::vector<Refusal> refusals;
  std::vector<Patch> patches;

  Scenario();

  /// Throws ScenarioError with the number of the faulty line.
  [[nodiscard]] static Scenario Parse(std::string_view text);
  /// The same for the file at `path`; a file that cannot be read is a ScenarioError too.
  [[nodiscard]] static Scenario Load(const std::string& path);
  /// Applies one more line of text, which errors call line `number`.
  void Apply(std::string_view text, std::size_t number = 1);

  /// What the line "message …" describes; `line` stands behind the directive.
  [[nodiscard]] static Step ParseMessage(ScenarioLine& line);

 private:
  void ApplyLine(ScenarioLine line);
  void SetTelephony(ScenarioLine& line);
  void AddDevice(ScenarioLine& line);
  void AddLocation(ScenarioLine& line);
  void SetCodes(ScenarioLine& line);
  void SetTranslation(ScenarioLine& line);
  void AddCallStep(ScenarioLine& line) { AddStep(line, callSteps, callScripted_); }
  void AddDropStep(ScenarioLine& line) { AddStep(line, dropSteps, dropScripted_); }
  void AddStep(ScenarioLine& line, std::vector<Step>& steps, bool& scripted);
  void AddRefusal(ScenarioLine& line);
  void AddPatch(ScenarioLine& line);

  bool callScripted_{false};
  bool dropScripted_{false};
};

}  // namespace fonklav
