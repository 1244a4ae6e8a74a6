#pragma once

#include <string>
#include <utility>
#include <vector>

#include "app/FormView.h"

namespace fonklav::test {

/// A window that only remembers what it was told.
class FakeView : public FormView {
 public:
  void ControlChanged(ControlId id) override { changed.push_back(id); }
  void TextAppended(ControlId id, const std::string& added) override { appended.emplace_back(id, added); }
  void FormChanged() override { ++formChanges; }
  void TimerChanged(TimerId) override {}
  void FocusTo(ControlId id) override { focus.push_back(id); }
  void ComeToFront() override { ++raises; }
  void Unloaded() override { ++unloads; }

  std::vector<ControlId> changed;
  std::vector<std::pair<ControlId, std::string>> appended;
  std::vector<ControlId> focus;
  int formChanges{0};
  int raises{0};
  int unloads{0};
};

}  // namespace fonklav::test
