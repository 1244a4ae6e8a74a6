#include <algorithm>

#include "app/fMain.h"
#include "platform/Ports.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/Text.h"

// The conversation with the main program: its commands, and the way our reports take.
namespace fonklav {
namespace {

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::ranges::equal(text, lower, [](char left, char right) {
    return (left >= 'A' && left <= 'Z' ? static_cast<char>(left - 'A' + 'a') : left) == right;
  });
}

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
bool ToBoolean(const std::string& text, const NumberSeparators& separators, int line = __builtin_LINE()) {
  if (EqualsIgnoringCase(text, "true")) return true;
  if (EqualsIgnoringCase(text, "false")) return false;
  const std::string_view mantissa = Mantissa(TrimBlanks(text));
  if (!IsNumeric(mantissa, separators)) throw RunTimeError(ErrorNumber::TypeMismatch, line);
  return mantissa.find_first_of("123456789") != std::string_view::npos;
}

}  // namespace

void fMain::DDEexecute(const std::string& message, const std::string& tag) {
  Procedure(services_.diagnostics, "DDEexecute", {message, tag}, [&] {
    if (!services_.link.Send(services_.codePage.ToBytes(message + tag))) LinkOpenFlag_ = false;
  });
}

void fMain::txtDDE_Change() {
  Procedure(services_.diagnostics, "txtDDE_Change", {txtDDE_}, [&] {
    const std::string text = txtDDE_;
    if (text.empty()) return;  // the main program clears the item between its commands
    DebugLine("DDE Execute - " + text);
    const std::vector<std::string> fields = Split(text + "||", "|");
    Obey(fields[0], fields[1], fields[2]);
  });
}

void fMain::Obey(const std::string& command, const std::string& argument, const std::string& detail) {
  const auto acknowledge = [&] { DDEexecute("cmd|quitt"); };
  if (command == "settings") {
    acknowledge();
    controls_.form.Visible(true);
    // It may be visible all the same: minimised, or behind what the user looks at.
    if (controls_.slot.view != nullptr) controls_.slot.view->ComeToFront();
  } else if (command == "unload") {
    acknowledge();
    cmdExit_Click();
  } else if (command == "cmd") {
    acknowledge();
    if (argument == "call") {
      controls_.txtNumber.Text(detail);
      cmdWahl_Click();
    } else if (argument == "hangup") {
      cmdHangUp_Click();
    }
  } else if (command == "debug") {
    acknowledge();
    DebugFlag_ = ToBoolean(argument, services_.numberLocale.Separators());
  }
}

void fMain::txtDDE_LinkLate() noexcept {
  Procedure(services_.diagnostics, "fMain.txtDDE_LinkLate", {}, [&] { ShowAsAsked(); });
}

void fMain::txtDDE_LinkFailed() noexcept {
  Procedure(services_.diagnostics, "fMain.txtDDE_LinkFailed", {}, [&] {
    DebugLine(std::string("Init DDE - ERROR=") + ErrorText(ErrorNumber::NoForeignApplication));
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

void fMain::WatchLink() {
  services_.link.Tick();
  if (unloaded_) return;
  if (lineStageWaits_ && !LineIsOpen()) EndLinkStage();
  controls_.tmLink.Enabled(services_.link.Watching() || lineStageWaits_);
}

void fMain::LinkData(const std::string& bytes) noexcept {
  if (unloaded_) return;
  Guarded(services_.diagnostics, "fMain.LinkData", {}, [&] {
    std::string text = services_.codePage.ToText(bytes);
    if (text == txtDDE_) return;  // as in any text box, the same text again is no change
    txtDDE_ = std::move(text);
    txtDDE_Change();
  });
}

}  // namespace fonklav
