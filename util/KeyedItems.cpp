#include "util/KeyedItems.h"

#include <algorithm>

namespace fonklav {

bool KeyedItems::Add(std::string key, Value&& value) {
  const auto [place, added] = items_.try_emplace(std::move(key), std::move(value));
  if (!added) return false;
  try {
    order_.push_back(&*place);
  } catch (...) {
    items_.erase(place);
    throw;
  }
  return true;
}

const KeyedItems::Item* KeyedItems::At(std::int64_t position) const {
  if (position < 1 || std::cmp_greater(position, Count())) return nullptr;
  return order_[static_cast<std::size_t>(position - 1)];
}

const KeyedItems::Item* KeyedItems::Find(const std::string& key) const {
  const auto found = items_.find(key);
  return found == items_.end() ? nullptr : &*found;
}

KeyedItems::Taken KeyedItems::TakeAt(std::int64_t position) {
  if (At(position) == nullptr) return {};
  return TakeOut(order_.begin() + static_cast<std::ptrdiff_t>(position - 1));
}

KeyedItems::Taken KeyedItems::Take(const std::string& key) {
  const Item* const item = Find(key);
  if (item == nullptr) return {};
  return TakeOut(std::ranges::find(order_, item));
}

KeyedItems::Taken KeyedItems::TakeOut(const std::deque<Item*>::const_iterator& place) {
  Taken item = items_.extract((*place)->first);
  order_.erase(place);
  return item;
}

}  // namespace fonklav
