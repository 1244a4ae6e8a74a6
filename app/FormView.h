#pragma once

#include <cstddef>
#include <string>

#include "app/Controls.h"

namespace fonklav {

/// The window as the program sees it: told what to show anew, it reads that from the controls. It decides nothing. No
/// operation calls back into the program before it returns.
class FormView {
 public:
  FormView() = default;
  FormView(const FormView&) = delete;
  FormView& operator=(const FormView&) = delete;
  virtual ~FormView() = default;

  /// A property of the control, or an entry of the list, has changed.
  virtual void ControlChanged(ControlId id) = 0;
  /// `added` now stands at the end of the control's text.
  virtual void TextAppended(ControlId id, const std::string& added) = 0;
  /// Caption, visibility, position or size of the form has changed.
  virtual void FormChanged() = 0;
  /// A timer was switched.
  virtual void TimerChanged(TimerId id) = 0;
  /// The keyboard focus goes to this control.
  virtual void FocusTo(ControlId id) = 0;
  /// The visible form comes in front of all other windows, restored when it is minimised, and gets the keyboard where
  /// the system allows it.
  virtual void ComeToFront() = 0;
  /// The form has unloaded: the window goes and the message loop ends.
  virtual void Unloaded() = 0;
};

/// Why the form is to go, with the numbers that the debug log shows.
enum class UnloadMode : int { UserClosed = 0, Code = 1, SessionEnds = 2, TaskManager = 3 };

/// What a person, the clock or the system does to the window. The form implements it; the window calls it and nothing
/// else. No operation throws. The form may have unloaded when an operation returns.
class FormInput {
 public:
  FormInput() = default;
  FormInput(const FormInput&) = delete;
  FormInput& operator=(const FormInput&) = delete;
  virtual ~FormInput() = default;

  /// A button was pressed, by mouse, key or access key.
  virtual void Click(ControlId button) noexcept = 0;
  /// A key is about to reach a text box, as a character code.
  virtual void KeyPress(ControlId box, int characterCode) noexcept = 0;
  /// The text of a box is now this.
  virtual void Edit(ControlId box, const std::string& text) noexcept = 0;
  /// The user has ticked or unticked an entry of the list.
  virtual void TickEntry(std::size_t index, bool ticked) noexcept = 0;
  /// The user has clicked an entry, which is selected now.
  virtual void ClickEntry(std::size_t index) noexcept = 0;
  /// The interval of a timer that is switched on has passed.
  virtual void TimerTick(TimerId timer) noexcept = 0;
  /// Twips, as in FormWindow.
  virtual void Moved(float top, float left) noexcept = 0;
  virtual void Resized(float width, float height) noexcept = 0;
  /// The form is asked to go. It unloads, which ends the program, or stays hidden.
  virtual void CloseRequested(UnloadMode mode) noexcept = 0;
};

}  // namespace fonklav
