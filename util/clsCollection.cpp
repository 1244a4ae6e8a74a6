#include "util/clsCollection.h"

#include <utility>

#include "util/CaseFold.h"
#include "util/Text.h"

namespace fonklav {
namespace {

constexpr std::int32_t kMostQueued = 10000;

/// The result of the body, or `otherwise` when it throws: want of memory, or an owner's handler.
template <typename Result, typename Body>
Result Suppressed(Result otherwise, Body&& body) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return otherwise;
  }
}

void Raise(const std::function<void()>& event) {
  try {
    if (event) event();
  } catch (...) {  // NOLINT(bugprone-empty-catch): what the owner does wrong is not the collection's
  }
}

const std::string* TextOf(const KeyedItems::Item* item) {
  return item == nullptr ? nullptr : std::get_if<std::string>(&item->second);
}

clsCollection::Object ObjectOf(const KeyedItems::Item* item) {
  if (item == nullptr) return nullptr;
  const auto* object = std::get_if<clsCollection::Object>(&item->second);
  return object == nullptr ? nullptr : *object;
}

}  // namespace

clsCollection clsCollection::Clone() const {
  clsCollection copy;
  for (std::int32_t index = 1; index <= Count(); ++index) copy.Add(GetItemByIndex(index));
  return copy;
}

bool clsCollection::Queue_Add(std::string newItem) {
  if (Count() >= kMostQueued) {
    Raise(QueueFull);
    return false;
  }
  const bool stored = Store("Key" + std::to_string(++keyCounter_), std::move(newItem));
  while (limit_ != 0 && Count() > limit_ && RemoveFirst()) {
  }
  Raise(notice_ != 0 && Count() <= notice_ ? QueueTimerStart : QueueAdded);
  return stored;
}

std::string clsCollection::Queue_ReadLast() {
  std::string oldest = Queue_ViewLast();
  RemoveFirst();
  return oldest;
}

std::string clsCollection::Queue_ViewLast() const { return Queue_GetByIndex(1); }

std::string clsCollection::Queue_GetByIndex(std::int32_t index) const {
  return Suppressed(std::string{}, [&] {
    const std::string* text = TextOf(items_.At(index));
    return text == nullptr ? std::string{} : *text;
  });
}

bool clsCollection::Add(const Object& newItem) {
  const bool added = Suppressed(false, [&] { return newItem && items_.Add(newItem->Key(), newItem); });
  if (added) Raise(QueueAdded);
  return added;
}

bool clsCollection::AddByINIData(const std::string& key, const std::string& value) {
  return AddByKeyValue(key, key + "=" + value);
}

bool clsCollection::AddByKeyValue(const std::string& key, Value value) {
  const bool added = Store(key, std::move(value));
  Raise(QueueAdded);
  return added;
}

void clsCollection::ChangeByKeyValue(const std::string& key, const std::string& value) {
  if (Count() == 0) return;
  RemoveByKeyName(key);
  Store(key, key + "=" + value);
}

std::string clsCollection::ItemByKeyValue(const std::string& key, const std::string& defaultText) const {
  return Suppressed(defaultText, [&] {
    const std::string* text = TextOf(items_.Find(key));
    return text == nullptr ? defaultText : ReplaceAll(*text, key + "=", "");
  });
}

bool clsCollection::RemoveByKeyName(const std::string& key) {
  return Suppressed(false, [&] { return !items_.Take(key).empty(); });
}

bool clsCollection::RemoveByIndex(std::int16_t index) {
  return Suppressed(false, [&] { return !items_.TakeAt(index).empty(); });
}

bool clsCollection::RemoveFirst() { return RemoveByIndex(1); }

clsCollection::Object clsCollection::ItemByKey(const std::string& key) const {
  return Suppressed(Object{}, [&] { return ObjectOf(items_.Find(key)); });
}

void clsCollection::ChangeKey(const std::string& oldKey, const std::string& newKey) {
  Suppressed(false, [&] {
    // Keys compare without regard to case, so an item may be given its own key in another spelling.
    if (items_.Find(newKey) != nullptr && !EqualsIgnoringCase(oldKey, newKey)) return false;
    auto item = items_.Take(oldKey);
    return !item.empty() && items_.Add(newKey, std::move(item.mapped()));
  });
}

bool clsCollection::GetItemByKey(const std::string& key, Object& data) const {
  data = ItemByKey(key);
  return data != nullptr;
}

clsCollection::Object clsCollection::GetItemByIndex(std::int32_t index) const { return ObjectOf(items_.At(index)); }

bool clsCollection::Store(std::string key, Value value) {
  return Suppressed(false, [&] { return items_.Add(std::move(key), std::move(value)); });
}

}  // namespace fonklav
