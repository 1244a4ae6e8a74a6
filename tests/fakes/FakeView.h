#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "app/FormView.h"

namespace fonklav::test {

/// A window that only remembers what it was told.
class FakeView : public FormView {
 public:
  void ControlChanged(ControlId id) override {
    Check(id);
    if (remembers) changed.push_back(id);
  }
  void TextAppended(ControlId id, const std::string& added) override {
    Check(id);
    if (remembers) appended.emplace_back(id, added);
  }
  void FormChanged() override { ++formChanges; }
  void TimerChanged(TimerId) override { ++timerChanges; }
  void FocusTo(ControlId id) override { focus.push_back(id); }
  void ComeToFront() override { ++raises; }
  void Unloaded() override { ++unloads; }

  std::vector<ControlId> changed;
  std::vector<std::pair<ControlId, std::string>> appended;
  std::vector<ControlId> focus;
  std::optional<ControlId> faulty;  ///< showing this one fails
  bool remembers{true};             ///< what was shown; not where it would be a great deal
  int formChanges{0};
  int timerChanges{0};
  int raises{0};
  int unloads{0};

 private:
  void Check(ControlId id) const {
    if (id == faulty) throw std::runtime_error("no such window");
  }
};

}  // namespace fonklav::test
