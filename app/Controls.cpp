#include "app/Controls.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "app/FormView.h"
#include "app/Layout.h"

namespace fonklav {
namespace {

/// Stores a new value and says whether it differs: only a change is worth showing or telling.
template <typename Value>
bool Assign(Value& held, Value value) {
  if (held == value) return false;
  held = std::move(value);
  return true;
}

/// One control for each name, in the order of the names.
template <std::size_t... Numbers>
std::array<Control, kControlCount> MakeControls(ViewSlot& slot, std::index_sequence<Numbers...> /*all*/) {
  return {Control{static_cast<ControlId>(Numbers), slot}...};
}

}  // namespace

void Control::Show() {
  if (slot_.view != nullptr) slot_.view->ControlChanged(id_);
}

void Control::Text(std::string text) {
  if (!Assign(text_, std::move(text))) return;
  Show();
  if (onChange_) onChange_();
}

void Control::Append(const std::string& added) {
  if (added.empty()) return;
  text_ += added;
  if (slot_.view != nullptr) slot_.view->TextAppended(id_, added);
  if (onChange_) onChange_();
}

void Control::Edited(std::string text) {
  if (Assign(text_, std::move(text)) && onChange_) onChange_();
}

void Control::Enabled(bool enabled) {
  if (Assign(enabled_, enabled)) Show();
}

void Control::Visible(bool visible) {
  if (Assign(visible_, visible)) Show();
}

void CheckList::Show() {
  if (slot_.view != nullptr) slot_.view->ControlChanged(ControlId::lstTAPI);
}

std::size_t CheckList::TickedCount() const {
  return static_cast<std::size_t>(std::ranges::count(entries_, true, &Entry::ticked));
}

void CheckList::AddNew(const std::vector<std::string>& names) {
  std::unordered_set<std::string_view> known;
  for (const Entry& entry : entries_) known.insert(entry.text);
  std::vector<Entry> added;
  for (const std::string& name : names) {
    if (!name.empty() && known.insert(name).second) added.push_back({name});
  }
  if (added.empty()) return;
  entries_.insert(entries_.end(), added.begin(), added.end());
  Show();
}

void CheckList::RemoveGone(const std::vector<std::string>& names) {
  const std::unordered_set<std::string_view> known(names.begin(), names.end());
  std::vector<Entry> kept;
  bool removed = false;
  for (Entry& entry : entries_) {
    const bool passedOver = removed;
    removed = !passedOver && !known.contains(entry.text);
    if (!removed) kept.push_back(std::move(entry));
  }
  const bool changed = kept.size() != entries_.size();
  entries_ = std::move(kept);
  if (changed) Show();
}

void CheckList::Clear() {
  if (entries_.empty()) return;
  entries_.clear();
  Show();
}

void CheckList::TickAll(const std::string& text) {
  for (std::size_t index = 0; index < entries_.size(); ++index) {
    if (entries_[index].text == text) Tick(index, true);
  }
}

void CheckList::Tick(std::size_t index, bool ticked) {
  if (index >= entries_.size() || entries_[index].ticked == ticked) return;
  TickQuietly(index, ticked);
  if (onItemCheck_) onItemCheck_(index);
}

void CheckList::TickQuietly(std::size_t index, bool ticked) {
  if (index < entries_.size() && Assign(entries_[index].ticked, ticked)) Show();
}

void Timer::Enabled(bool enabled) {
  if (Assign(enabled_, enabled) && slot_.view != nullptr) slot_.view->TimerChanged(id_);
}

void FormWindow::Show() {
  if (slot_.view != nullptr) slot_.view->FormChanged();
}

void FormWindow::Caption(std::string caption) {
  if (Assign(caption_, std::move(caption))) Show();
}

void FormWindow::Visible(bool visible) {
  if (Assign(visible_, visible)) Show();
}

void FormWindow::Top(float top) {
  if (Assign(top_, top)) Show();
}

void FormWindow::Left(float left) {
  if (Assign(left_, left)) Show();
}

void FormWindow::Width(float width) {
  if (Assign(width_, width)) Show();
}

void FormWindow::Height(float height) {
  if (Assign(height_, height)) Show();
}

void FormWindow::Moved(float top, float left) {
  top_ = top;
  left_ = left;
}

void FormWindow::Resized(float width, float height) {
  width_ = width;
  height_ = height;
}

FormControls::FormControls() : controls_(MakeControls(slot, std::make_index_sequence<kControlCount>())) {
  for (const LayoutRow& row : Layout()) (*this)[row.id].Text(std::string(row.text));
  ToolTip(std::string(kCodeToolTip));
  (*this)[ControlId::cmdWahl].Enabled(false);
  (*this)[ControlId::cmdHangUp].Enabled(false);
}

void FormControls::ToolTip(std::string toolTip) {
  if (Assign(toolTip_, std::move(toolTip)) && slot.view != nullptr) slot.view->ControlChanged(ControlId::txtSettVW);
}

}  // namespace fonklav
