#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
    std::uint32_t version{0x00030000};  ///< highest version that the negotiation yields
    std::uint32_t low{0x00010003};      ///< lowest version
    std::array<std::uint32_t, 4> extension{};
    std::uint32_t permanentId{0};
    std::uint32_t stringFormat{1};
    std::uint32_t addresses{1};
    std::uint32_t addressModes{1};
    std::uint32_t bearer{1};
    std::uint32_t rate{64000};
    std::uint32_t media{4};
    std::uint32_t tones{0};
    std::uint32_t toneFrequencies{0};
    std::uint32_t terminals{0};
    std::uint32_t flags{0};
    std::uint32_t icon{1};  ///< 0: the device has no icon
  };

  struct Location {
    std::uint32_t id{1};
    std::string name{"Location"};
    std::uint32_t country{49};
    std::string city{"30"};
    std::string localAccess;
    std::string longDistanceAccess;
    std::string longDistancePrefix{"0"};
    std::string internationalPrefix{"00"};
  };

  /// What tapiGetLocationInfo answers, when it is not what the current location has.
  struct Codes {
    std::string country;
    std::string city;
  };

  /// Something that happens a while after the call or the drop was asked for.
  struct Step {
    enum class Kind { Reply, State, Message };
    Kind kind{Kind::Reply};
    std::chrono::milliseconds after{0};
    std::uint32_t result{0};                  ///< of a reply
    std::uint32_t state{0};                   ///< of a call state
    std::uint32_t detail{0};                  ///< of a call state, for example the disconnect mode
    std::uint32_t message{0};                 ///< of a raw message, delivered whatever has become of the call
    std::optional<std::uint32_t> instance{};  ///< of a raw message; without one that of the open line
    std::uint32_t device{0};
    std::uint32_t p1{0};
    std::uint32_t p2{0};
    std::uint32_t p3{0};
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
  };

  std::uint32_t version{0x00030000};  ///< the highest that telephony as a whole offers
  std::vector<Device> devices;
  std::vector<Location> locations;
  std::optional<std::uint32_t> currentLocation;  ///< permanent ID; without one that of the first location
  bool codesMissing{false};
  std::optional<Codes> codes;
  bool blanksOptional{false};           ///< translation accepts canonical numbers without their blanks
  std::string dialPrefix;               ///< set in front of what a translation yields, for example T
  std::optional<std::string> dialable;  ///< what every translation yields
  std::vector<Step> callSteps;
  std::vector<Step> dropSteps;
  std::vector<Refusal> refusals;
  std::vector<Patch> patches;

  /// A reply and nothing more for a call, a reply and then IDLE for a drop, until the text gives steps of its own.
  Scenario();

  /// Throws ScenarioError with the number of the faulty line.
  [[nodiscard]] static Scenario Parse(std::string_view text);
  /// The same for the file at `path`; a file that cannot be read is a ScenarioError too.
  [[nodiscard]] static Scenario Load(const std::string& path);
  /// Applies one more line of text. Throws ScenarioError, numbered `number`.
  void Apply(std::string_view text, std::size_t number = 1);

  /// What the line "message …" describes; `line` stands behind the directive.
  [[nodiscard]] static Step ParseMessage(ScenarioLine& line);

 private:
  void Apply(ScenarioLine line);
  void SetTelephony(ScenarioLine& line);
  void AddDevice(ScenarioLine& line);
  void AddLocation(ScenarioLine& line);
  void SetCodes(ScenarioLine& line);
  void SetTranslation(ScenarioLine& line);
  void AddCallStep(ScenarioLine& line);
  void AddDropStep(ScenarioLine& line);
  void AddStep(ScenarioLine& line, std::vector<Step>& steps, bool& scripted);
  void AddRefusal(ScenarioLine& line);
  void AddPatch(ScenarioLine& line);

  bool callScripted_{false};
  bool dropScripted_{false};
};

}  // namespace fonklav
