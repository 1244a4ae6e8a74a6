#pragma once

#include "platform/win32/Handles.h"

namespace fonklav {

class LineMessageSink;

/// Remembers for the line callback who wants to hear it. Telephony hands its callback no context that belongs to a
/// whole registration; but it calls it on the thread that registered, so a hidden window of that thread can hold the
/// context.
class LineSinkWindow {
 public:
  LineSinkWindow() = default;
  LineSinkWindow(const LineSinkWindow&) = delete;
  LineSinkWindow& operator=(const LineSinkWindow&) = delete;
  ~LineSinkWindow() { Forget(); }

  /// From now on `sink` is the one that OfThisThread finds; it must live until Forget or the end of this object.
  void Remember(LineMessageSink& sink, HINSTANCE instance);
  void Forget() noexcept;

  /// The sink that was remembered on the calling thread, null when there is none.
  [[nodiscard]] static LineMessageSink* OfThisThread() noexcept;

 private:
  UniqueWindow window_;
};

}  // namespace fonklav
