#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

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

/// Ordered items, each under a key of its own. Positions count from 1; keys compare without regard to case. Every
/// operation takes at most a time that grows with the logarithm of the number of items, wherever it touches them.
class KeyedItems {
 public:
  using Value = std::variant<std::string, std::shared_ptr<KeyedObject>>;
  struct Item {
    std::string key;
    Value value;
  };

  /// Adds an item at the end; false when the key is taken.
  bool Add(std::string key, Value value);
  /// The item at a position or under a key; null when there is none. Valid until the next change.
  [[nodiscard]] const Item* At(std::int64_t position) const;
  [[nodiscard]] const Item* Find(std::string_view key) const;
  /// Removes an item and gives it out; nothing when there is none.
  std::optional<Item> TakeAt(std::int64_t position);
  std::optional<Item> Take(std::string_view key);
  [[nodiscard]] std::size_t Count() const noexcept { return slotOfKey_.size(); }

 private:
  // Items stand in slots in the order in which they came. A removed item leaves its slot empty; how many slots are
  // still taken is kept as a tree of partial sums (a Fenwick tree, 1-based), by which a position finds its slot.
  // When more than half of the slots are empty, the items move together.
  [[nodiscard]] std::size_t SlotAt(std::int64_t position) const;
  Item TakeSlot(std::size_t slot);
  void AppendSlot(Item item);
  void MoveTogether();

  std::vector<std::optional<Item>> slots_;
  std::vector<std::size_t> sums_;
  std::unordered_map<std::string, std::size_t> slotOfKey_;  ///< by folded key
};

}  // namespace fonklav
