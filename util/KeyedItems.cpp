#include "util/KeyedItems.h"

#include <algorithm>
#include <utility>

#include "util/CaseFold.h"

namespace fonklav {

bool KeyedItems::Add(std::string key, Value value) {
  std::string folded = FoldCase(key);
  if (itemOfKey_.contains(folded)) return false;
  items_.push_back(std::make_unique<Filed>(Filed{{std::move(key), std::move(value)}, last_ + 1}));
  try {
    itemOfKey_.emplace(std::move(folded), items_.back().get());
  } catch (...) {
    items_.pop_back();
    throw;
  }
  ++last_;
  return true;
}

const KeyedItems::Item* KeyedItems::At(std::int64_t position) const {
  if (position < 1 || std::cmp_greater(position, Count())) return nullptr;
  return &items_[static_cast<std::size_t>(position - 1)]->item;
}

const KeyedItems::Item* KeyedItems::Find(std::string_view key) const {
  const auto found = itemOfKey_.find(FoldCase(key));
  return found == itemOfKey_.end() ? nullptr : &found->second->item;
}

std::optional<KeyedItems::Item> KeyedItems::TakeAt(std::int64_t position) {
  if (At(position) == nullptr) return std::nullopt;
  return TakeOut(items_.begin() + static_cast<std::ptrdiff_t>(position - 1));
}

std::optional<KeyedItems::Item> KeyedItems::Take(std::string_view key) {
  const auto found = itemOfKey_.find(FoldCase(key));
  if (found == itemOfKey_.end()) return std::nullopt;
  return TakeOut(
      std::ranges::lower_bound(items_, found->second->number, {}, [](const auto& filed) { return filed->number; }));
}

KeyedItems::Item KeyedItems::TakeOut(const Place& place) {
  itemOfKey_.erase(FoldCase((*place)->item.key));
  Item item = std::move((*place)->item);
  items_.erase(place);
  return item;
}

}  // namespace fonklav
