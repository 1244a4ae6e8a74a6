#pragma once

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/TapiWire.h"

namespace fonklav {

/// A scenario that cannot be understood: what() names the line and what is wrong with it.
struct ScenarioError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// One line of a scenario, cut into words and key=value pairs. A part in double quotes may hold blanks and \xNN, a
/// byte. Whoever reads the line takes out what it knows; what is left over at the end is an error, so that a
/// misspelt word never passes in silence. All operations throw ScenarioError for what they cannot understand.
class ScenarioLine {
 public:
  ScenarioLine(std::string_view text, std::size_t number);

  [[nodiscard]] bool Empty() const { return items_.empty(); }
  /// The next plain word, in order, where `what` should stand.
  std::string Word(std::string_view what);
  /// The value of `key`, nothing when the line does not give it.
  std::optional<std::string> Text(std::string_view key);
  /// The number given for `key`, decimal or 0x hexadecimal, or `otherwise`.
  std::uint32_t Number(std::string_view key, std::uint32_t otherwise);
  /// Puts what the line gives for `key` into `value`, which otherwise stays as it is.
  void Into(std::string_view key, std::string& value) { value = Text(key).value_or(value); }
  void Into(std::string_view key, std::uint32_t& value) { value = Number(key, value); }
  [[nodiscard]] std::uint32_t ToNumber(std::string_view text) const;
  /// Fails when anything was not taken.
  void End() const;
  [[noreturn]] void Fail(const std::string& why) const;

 private:
  struct Item {
    std::string key;  ///< empty for a plain word
    std::string value;
  };

  std::size_t number_;
  std::vector<Item> items_;
};

/// One of the published line messages.
struct LineMessage {
  std::uint32_t hDevice{0};
  std::uint32_t message{0};
  std::uintptr_t instance{0};
  std::uintptr_t p1{0};
  std::uintptr_t p2{0};
  std::uintptr_t p3{0};
};

/// What a scenario says, as README.md describes it: which devices and locations the simulated telephony has, how its
/// calls go, which functions it refuses and where its structures lie. Strings are bytes of the system's code page.
struct Scenario {
  struct Device {
    std::string name{"Line"};
    std::string provider{"Line simulator"};
    std::string switchInfo;
    std::uint32_t version{TAPI_VERSION3_0};  ///< highest version that the negotiation yields; the lowest is 1.3
    LINEEXTENSIONID extension{};
    std::uint32_t icon{1};  ///< 0: the device has no icon
    LINEDEVCAPS caps{};     ///< its numbers
  };

  struct Location {
    std::uint32_t id{1};
    std::string name{"Location"};
    std::uint32_t country{49};
    std::string city{"30"};
    std::string localAccess;
    std::string longDistanceAccess;
  };

  /// A message that comes a while after the call or the drop was asked for. A reply gets its request, a call state its
  /// call, and both are dropped when that goes before they are due; a raw message is delivered as it is.
  struct Step {
    enum class Kind { Reply, State, Raw };
    Kind kind{Kind::Raw};
    std::chrono::milliseconds after{0};
    LineMessage message{};
    bool ownInstance{true};  ///< goes to the object that the line was opened for
  };

  struct Refusal {
    std::string function;
    std::int32_t code{0};
    std::uint32_t nth{1};  ///< the first call that is refused
    std::uint32_t times{UINT32_MAX};
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
  std::uint32_t blanks{1};                 ///< 0: translation takes canonical numbers without their blanks too
  std::vector<Device> devices;
  std::vector<Location> locations;
  std::size_t currentLocation{0};              ///< its place among them
  std::optional<std::vector<Step>> callSteps;  ///< without any: a reply alone
  std::optional<std::vector<Step>> dropSteps;  ///< without any: a reply and then IDLE
  std::vector<Refusal> refusals;
  std::vector<Patch> patches;

  /// Throws ScenarioError with the number of the faulty line.
  [[nodiscard]] static Scenario Parse(std::string_view text);
  /// The same for the file at `path`; a file that cannot be read is a ScenarioError too.
  [[nodiscard]] static Scenario Load(const std::string& path);
  /// Applies one more line of text, which errors call line `number`.
  void Apply(std::string_view text, std::size_t number = 1);
};

}  // namespace fonklav
