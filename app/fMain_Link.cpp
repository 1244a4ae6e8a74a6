#include <algorithm>
#include <array>

#include "app/fMain.h"
#include "platform/Ports.h"
#include "util/CaseFold.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/Text.h"

// The conversation with the main program: its commands, and the way our reports take.
namespace fonklav {

using enum ControlId;
namespace {

/// A number without its exponent, which has no part in whether it is zero; the whole text where it has none.
std::string_view Mantissa(std::string_view number) {
  const auto mark = number.find_last_of("eEdD");
  if (mark == std::string_view::npos) return number;
  std::string_view exponent = number.substr(mark + 1);
  if (exponent.starts_with('+') || exponent.starts_with('-')) exponent.remove_prefix(1);
  const bool digits = !exponent.empty() && exponent.find_first_not_of("0123456789") == std::string_view::npos;
  const std::string_view before = number.substr(0, mark);
  const bool attached = !before.empty() && before.find_last_of(" +-") != before.size() - 1;
  return digits && attached ? before : number;
}

/// The words True and False in any case, or a number, of which every one but zero is true. Throws RunTimeError 13 for
/// anything else.
bool ToBoolean(std::string_view text, const NumberSeparators& separators, int line = __builtin_LINE()) {
  if (EqualsIgnoringCase(text, "true")) return true;
  if (EqualsIgnoringCase(text, "false")) return false;
  const std::string_view mantissa = Mantissa(TrimBlanks(text));
  if (!IsNumeric(mantissa, separators)) throw RunTimeError(ErrorNumber::TypeMismatch, line);
  return mantissa.find_first_of("123456789") != std::string_view::npos;
}

}  // namespace

void fMain::txtDDE_Change() {
  Procedure(services_.diagnostics, "txtDDE_Change", {txtDDE_}, [&] {
    const std::string text = txtDDE_;
    if (text.empty()) return;  // the main program clears the item between its commands
    DebugLine("DDE Execute - ", text);
    Obey(ParseCommand(text));
  });
}

void fMain::Obey(const CommandMessage& message) {
  struct Row {
    Command command;
    void (*act)(fMain& form, std::string_view argument);
  };
  static constexpr std::array kActions{
      Row{Command::Settings, [](fMain& form, std::string_view) { form.ShowSettings(); }},
      Row{Command::Unload, [](fMain& form, std::string_view) { form.cmdExit_Click(); }},
      Row{Command::Call, [](fMain& form, std::string_view number) { form.Dial(number); }},
      Row{Command::HangUp, [](fMain& form, std::string_view) { form.cmdHangUp_Click(); }},
      Row{Command::DebugFlag, [](fMain& form, std::string_view flag) { form.SetDebugFlag(flag); }},
  };
  if (message.command == Command::Unknown) return;
  reports_.Acknowledge();
  const auto row = std::ranges::find(kActions, message.command, &Row::command);
  if (row != kActions.end()) row->act(*this, message.argument);
}

void fMain::Dial(std::string_view number) {
  controls_[txtNumber].Text(std::string(number));
  cmdWahl_Click();
}

void fMain::SetDebugFlag(std::string_view flag) { DebugFlag_ = ToBoolean(flag, services_.numberLocale.Separators()); }

void fMain::ShowSettings() {
  controls_.form.Visible(true);
  // It may be visible all the same: minimised, or behind what the user looks at.
  if (controls_.slot.view != nullptr) controls_.slot.view->ComeToFront();
}

void fMain::txtDDE_LinkLate() noexcept {
  Procedure(services_.diagnostics, "fMain.txtDDE_LinkLate", {}, [&] { ShowAsAsked(); });
}

void fMain::txtDDE_LinkFailed() noexcept {
  Procedure(services_.diagnostics, "fMain.txtDDE_LinkFailed", {}, [&] {
    DebugLine("Init DDE - ERROR=", ErrorText(ErrorNumber::NoForeignApplication));
    EndLinkStage();
  });
}

void fMain::txtDDE_LinkOpen() noexcept {
  Procedure(services_.diagnostics, "fMain.txtDDE_LinkOpen", {}, [&] {
    DebugLine("DDE LinkOpen");
    LinkOpenFlag_ = true;
    EndLinkStage();
  });
}

void fMain::txtDDE_LinkError() noexcept {
  Procedure(services_.diagnostics, "fMain.txtDDE_LinkError", {}, [&] {
    DebugLine("DDE LinkError");
    LinkOpenFlag_ = false;
  });
}

void fMain::txtDDE_LinkClose() noexcept {
  Procedure(services_.diagnostics, "fMain.txtDDE_LinkClose", {}, [&] {
    DebugLine("DDE LinkClose");
    LinkOpenFlag_ = false;
    cmdExit_Click();  // with the flag down this ends the program
  });
}

void fMain::txtDDE_LinkData(const std::string& bytes) noexcept {
  if (unloaded_) return;
  Guarded(services_.diagnostics, "fMain.txtDDE_LinkData", {}, [&] {
    std::string text = services_.codePage.ToText(bytes);
    if (text == txtDDE_) return;  // as in any text box, the same text again is no change
    txtDDE_ = std::move(text);
    txtDDE_Change();
  });
}

}  // namespace fonklav
