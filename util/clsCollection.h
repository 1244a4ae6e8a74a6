#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "util/KeyedItems.h"

namespace fonklav {

/// An ordered, keyed collection with three uses: objects that carry their own key, "key=value" texts, and a
/// first-in-first-out queue of texts that tells its owner when it has grown. No member fails: its result says whether
/// something could be done. Members are not traced, because the trace queue itself is one of these.
class clsCollection {
 public:
  using Object = std::shared_ptr<KeyedObject>;
  using Value = KeyedItems::Value;

  /// The events. The owner sets those that it wants to hear; a handler may change the collection.
  std::function<void()> QueueAdded;
  std::function<void()> QueueFull;
  std::function<void(std::int16_t count)> QueueSize;  ///< declared for the suite, never raised
  std::function<void()> QueueTimerStart;

  /// A new collection with the items that are objects. Limits and events stay behind.
  [[nodiscard]] clsCollection Clone() const;

  /// How many items a queue keeps; beyond that it drops the oldest. 0 is no limit.
  void Queue_Limit(std::int16_t limit) { limit_ = limit; }
  /// While the queue holds at most this many items, adding one raises QueueTimerStart and not QueueAdded: nothing needs
  /// to be done at once. 0 raises QueueAdded each time.
  void Queue_InfoDealy(std::int16_t limit) { notice_ = limit; }
  /// Queues one text. False when it could not be kept; a queue of 10000 takes no more and raises QueueFull.
  bool Queue_Add(std::string newItem);
  /// Removes the oldest item and gives it out; empty when there is none.
  std::string Queue_ReadLast();
  /// The oldest item; empty when there is none.
  [[nodiscard]] std::string Queue_ViewLast() const;
  /// The item at a position as text; empty for an object or a position that is not there.
  [[nodiscard]] std::string Queue_GetByIndex(std::int32_t index) const;

  /// Adds an object under its own key and raises QueueAdded; false, and no event, when the key is taken.
  bool Add(const Object& newItem);
  /// Adds the text key, "=", value under the key. False when the key is taken. Raises QueueAdded in either case.
  bool AddByINIData(const std::string& key, const std::string& value);
  /// Adds any value under the key. False when the key is taken. Raises QueueAdded in either case.
  bool AddByKeyValue(const std::string& key, Value value);
  /// Replaces the item under the key, or adds one, by the text key, "=", value, at the end. Does nothing to an empty
  /// collection.
  void ChangeByKeyValue(const std::string& key, const std::string& value);
  /// The text under the key with every occurrence of key and "=" taken out, not only the leading one.
  [[nodiscard]] std::string ItemByKeyValue(const std::string& key, const std::string& defaultText) const;
  /// The whole text at a position: key, "=", value.
  [[nodiscard]] std::string GetItemByIndexByKeyValue(std::int32_t index) const { return Queue_GetByIndex(index); }

  /// Each removes one item; false when there is no such item.
  bool RemoveByKeyName(const std::string& key);
  bool RemoveByIndex(std::int16_t index);
  bool RemoveFirst();

  /// The items themselves, for the owner to walk over.
  [[nodiscard]] const KeyedItems& GetCollection() const noexcept { return items_; }
  /// The object under a key; null when there is none.
  [[nodiscard]] Object ItemByKey(const std::string& key) const;
  /// Files the item anew, at the end. Nothing changes when there is no such item or the new key is another item's.
  void ChangeKey(const std::string& oldKey, const std::string& newKey);
  /// The object under a key into `data`; false, and `data` empty, when there is none.
  [[nodiscard]] bool GetItemByKey(const std::string& key, Object& data) const;
  /// The object at a position; null when there is none.
  [[nodiscard]] Object GetItemByIndex(std::int32_t index) const;
  [[nodiscard]] std::int32_t Count() const noexcept { return static_cast<std::int32_t>(items_.Count()); }
  /// Forgets all items, without an event.
  void Clear() { items_.Clear(); }

 private:
  bool Store(std::string key, Value value);

  KeyedItems items_;
  std::int16_t limit_{0};
  std::int16_t notice_{0};
  std::int32_t keyCounter_{0};  ///< only ever grows, so that keys of queued items do not come again
};

}  // namespace fonklav
