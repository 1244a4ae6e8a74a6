#pragma once

#include <memory>
#include <string>

#include "app/Controls.h"
#include "app/FormView.h"
#include "platform/Ports.h"

namespace fonklav {

/// One running dialer: it composes the state, modules and form of all layers. As many as a test wants can live side by
/// side.
class Program {
 public:
  /// The ports must outlive the program.
  explicit Program(const Ports& ports);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  /// Ends what is still up: the call, the line, telephony, the conversation; writes what the trace still holds.
  ~Program();

  /// Start-up up to the first timer. False when the start was refused: the user has been told, the program is to end.
  /// `view` must live until the program has gone.
  [[nodiscard]] bool Load(FormView& view);

  /// Tells the user of a fault that ends the process, in the program's own message box.
  void ReportFault(const std::string& fault);

  /// What the window shows, and whom it tells what the user does. Both live as long as the program.
  [[nodiscard]] FormControls& Controls();
  [[nodiscard]] FormInput& Input();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace fonklav
