#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>

#include "util/CaseFold.h"

namespace fonklav {

/// An object that knows under which key it wants to be kept.
class KeyedObject {
 public:
  KeyedObject() = default;
  KeyedObject(const KeyedObject&) = delete;
  KeyedObject& operator=(const KeyedObject&) = delete;
  virtual ~KeyedObject() = default;

  /// Asked when the object is added: a later change of it files nothing anew.
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
  using Item = std::pair<const std::string, Value>;  ///< an item under its key
  struct HashIgnoringCase {
    std::size_t operator()(const std::string& key) const { return std::hash<std::string>{}(FoldCase(key)); }
  };
  struct SameIgnoringCase {
    bool operator()(std::string_view left, std::string_view right) const { return EqualsIgnoringCase(left, right); }
  };
  using Map = std::unordered_map<std::string, Value, HashIgnoringCase, SameIgnoringCase>;
  using Taken = Map::node_type;  ///< an item that was removed, or empty

  /// Adds an item at the end; false when the key is taken.
  bool Add(std::string key, Value&& value);
  /// The item at a position or under a key; null when there is none. Valid until it is taken.
  [[nodiscard]] const Item* At(std::int64_t position) const;
  [[nodiscard]] const Item* Find(const std::string& key) const;
  /// Removes an item and gives it out; empty when there is none.
  Taken TakeAt(std::int64_t position);
  Taken Take(const std::string& key);
  /// Forgets all items; what was taken out stays with its taker.
  void Clear() noexcept {
    order_.clear();
    items_.clear();
  }
  [[nodiscard]] std::size_t Count() const noexcept { return order_.size(); }

 private:
  Taken TakeOut(const std::deque<Item*>::const_iterator& place);

  Map items_;
  std::deque<Item*> order_;  ///< in which they came; a map's items stay where they are
};

}  // namespace fonklav
