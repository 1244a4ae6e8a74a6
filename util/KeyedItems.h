#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>

namespace fonklav {

/// An object that knows under which key it wants to be kept.
class KeyedObject {
 public:
  KeyedObject() = default;
  KeyedObject(const KeyedObject&) = delete;
  KeyedObject& operator=(const KeyedObject&) = delete;
  virtual ~KeyedObject() = default;

  [[nodiscard]] virtual std::string Key() const = 0;
};

/// Ordered items, each under a key of its own. Positions count from 1; keys compare without regard to case. An
/// operation that throws, for want of memory, leaves everything as it was.
///
/// A position is found at the speed of an array, the oldest item goes in constant time, and a removal from the middle
/// moves pointers.
class KeyedItems {
 public:
  using Value = std::variant<std::string, std::shared_ptr<KeyedObject>>;
  struct Item {
    std::string key;
    Value value;
  };

  /// Adds an item at the end; false when the key is taken.
  bool Add(std::string key, Value value);
  /// The item at a position or under a key; null when there is none. Valid until it is taken.
  [[nodiscard]] const Item* At(std::int64_t position) const;
  [[nodiscard]] const Item* Find(std::string_view key) const;
  /// Removes an item and gives it out; nothing when there is none.
  std::optional<Item> TakeAt(std::int64_t position);
  std::optional<Item> Take(std::string_view key);
  [[nodiscard]] std::size_t Count() const noexcept { return items_.size(); }

 private:
  struct Filed {
    Item item;
    std::uint64_t number;  ///< counts up, so that an item finds its place among the others
  };
  using Place = std::deque<std::unique_ptr<Filed>>::iterator;

  Item TakeOut(const Place& place);

  std::deque<std::unique_ptr<Filed>> items_;                 ///< in the order in which they came
  std::unordered_map<std::string, const Filed*> itemOfKey_;  ///< by folded key
  std::uint64_t last_{0};
};

}  // namespace fonklav
