#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace fonklav {

/// A scenario that cannot be understood: what() names the line and what is wrong with it.
class ScenarioError : public std::runtime_error {
 public:
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
  /// A call state by its name, in large or small letters, or by its number.
  [[nodiscard]] std::uint32_t ToState(const std::string& text) const;
  /// Fails when anything was not taken.
  void End() const;
  [[noreturn]] void Fail(const std::string& why) const;

 private:
  struct Item {
    std::string key;  ///< empty for a plain word
    std::string value;
  };

  Item NextItem(std::string_view text, std::size_t& at) const;

  std::size_t number_;
  std::vector<Item> items_;
};

}  // namespace fonklav
