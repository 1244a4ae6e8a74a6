#include "util/KeyedItems.h"

#include <bit>
#include <utility>

#include "util/CaseFold.h"

namespace fonklav {
namespace {

constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);
constexpr std::size_t kFewSlots = 64;

/// The number of slots that the sum at `index` covers.
constexpr std::size_t Covered(std::size_t index) { return index & (~index + 1); }

}  // namespace

bool KeyedItems::Add(std::string key, Value value) {
  const auto [place, added] = slotOfKey_.try_emplace(FoldCase(key), slots_.size());
  if (!added) return false;
  try {
    AppendSlot({std::move(key), std::move(value)});
  } catch (...) {
    slotOfKey_.erase(place);
    throw;
  }
  return true;
}

const KeyedItems::Item* KeyedItems::At(std::int64_t position) const {
  const std::size_t slot = SlotAt(position);
  return slot == kNoSlot ? nullptr : &*slots_[slot];
}

const KeyedItems::Item* KeyedItems::Find(std::string_view key) const {
  const auto found = slotOfKey_.find(FoldCase(key));
  return found == slotOfKey_.end() ? nullptr : &*slots_[found->second];
}

std::optional<KeyedItems::Item> KeyedItems::TakeAt(std::int64_t position) {
  const std::size_t slot = SlotAt(position);
  if (slot == kNoSlot) return std::nullopt;
  return TakeSlot(slot);
}

std::optional<KeyedItems::Item> KeyedItems::Take(std::string_view key) {
  const auto found = slotOfKey_.find(FoldCase(key));
  if (found == slotOfKey_.end()) return std::nullopt;
  return TakeSlot(found->second);
}

std::size_t KeyedItems::SlotAt(std::int64_t position) const {
  if (position < 1 || std::cmp_greater(position, Count())) return kNoSlot;
  // Walks down the tree: over every stretch of slots that ends before the item sought.
  auto before = static_cast<std::size_t>(position - 1);
  std::size_t passed = 0;
  for (std::size_t step = std::bit_floor(sums_.size()); step != 0; step /= 2) {
    if (passed + step > sums_.size() || sums_[passed + step - 1] > before) continue;
    passed += step;
    before -= sums_[passed - 1];
  }
  return passed;
}

KeyedItems::Item KeyedItems::TakeSlot(std::size_t slot) {
  Item item = *std::exchange(slots_[slot], std::nullopt);
  slotOfKey_.erase(FoldCase(item.key));
  for (std::size_t index = slot + 1; index <= sums_.size(); index += Covered(index)) --sums_[index - 1];
  if (slots_.size() > kFewSlots && Count() < slots_.size() / 2) MoveTogether();
  return item;
}

void KeyedItems::AppendSlot(Item item) {
  const std::size_t index = sums_.size() + 1;
  std::size_t sum = 1;
  for (std::size_t part = index - 1; part > index - Covered(index); part -= Covered(part)) sum += sums_[part - 1];
  sums_.push_back(sum);
  try {
    slots_.emplace_back(std::move(item));
  } catch (...) {
    sums_.pop_back();
    throw;
  }
}

void KeyedItems::MoveTogether() {
  std::vector<std::optional<Item>> sparse;
  sparse.reserve(Count());
  sparse.swap(slots_);
  sums_.clear();
  for (auto& item : sparse) {
    if (!item) continue;
    slotOfKey_.find(FoldCase(item->key))->second = slots_.size();
    AppendSlot(std::move(*item));
  }
}

}  // namespace fonklav
