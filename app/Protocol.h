#pragma once

#include <string>
#include <string_view>

#include "app/DdeConversation.h"
#include "platform/Ports.h"
#include "util/Diagnostics.h"

// The protocol between the main program and the dialer, in both directions. A message is one string of fields separated
// by "|"; there is no escaping. docs/protocol.md has the tables.
namespace fonklav {

class Control;

/// What the main program can ask for.
enum class Command {
  Unknown,    ///< no command of ours: not even acknowledged
  Nothing,    ///< acknowledged, and that is all
  Settings,   ///< show the window
  Unload,     ///< as the Cancel button
  Call,       ///< dial the argument
  HangUp,     ///< drop the call
  DebugFlag,  ///< set the debug flag to the argument
};

/// A value of the linked item, understood.
struct CommandMessage {
  Command command{Command::Unknown};
  std::string_view argument;  ///< a part of the value
};

/// Understands a value of the linked item; names are compared as they stand, case and all.
[[nodiscard]] CommandMessage ParseCommand(std::string_view value);

/// Who sends the state of a button: a part of the message, by which the main program's logs tell the senders apart.
enum class Sender { Nobody, SetLine, HangUpClick, DialClickNotOpened, DialClickRefused, Idle };

/// All that the dialer tells: each report in the words of the protocol and, where it belongs there, as a line of the
/// status box. A report that cannot be sent is lost; the reports behind it are tried all the same.
class Reports {
 public:
  /// All of it outlives the object. `linkOpen` is lowered when a report cannot be sent.
  Reports(Diagnostics& diagnostics, const CodePage& codePage, DdeConversation& link, Control& status, bool& linkOpen)
      : diagnostics_(diagnostics), codePage_(codePage), link_(link), status_(status), linkOpen_(linkOpen) {}

  /// A command was recognised.
  void Acknowledge();
  /// The stored line was found among the usable lines, or not.
  void Bound(bool found);
  /// What the window shows as the active line.
  void Line(const std::string& caption);
  /// For the main program's log.
  void Log(const std::string& text);
  /// A step of a call: shown, then told.
  void Progress(const std::string& text);
  /// Telephony's answer to a request: told, then shown.
  void Answer(const std::string& text);
  /// A request that telephony has refused: shown, then told, with a word of what failed for the main program's display.
  void Failure(const std::string& line, std::string_view what);
  /// The same for a request that telephony has taken and then failed: told, then shown.
  void FailedAnswer(const std::string& line, std::string_view what);
  /// Trouble of the start: shown at the end of what the status box holds, `lineEnd` behind it, and told for the log.
  void Trouble(const std::string& text, std::string_view lineEnd);
  /// The start has failed for good: shown like that, and told both as the active line and for the log.
  void NoTelephony(const std::string& text);
  /// The state that the dial button has now.
  void CallButton(const Control& button, Sender sender);
  /// The state that the hang-up button has now.
  void HangUpButton(const Control& button, Sender sender = Sender::Nobody);
  /// The call has reached a state in which the main program may hide its display.
  void AutoHide();
  /// The settings file was rewritten.
  void SettingsChanged();

 private:
  /// Sends one report; `tag` is the end of the message, which names the sender. A failure lowers the flag of the link.
  void DDEexecute(std::string_view message, std::string_view tag = {});
  /// Adds a line to the status box.
  void Show(const std::string& line);
  /// The two reports of a failure: the line for the log, the word for the display.
  void TellFailure(const std::string& line, std::string_view what);

  Diagnostics& diagnostics_;
  const CodePage& codePage_;
  DdeConversation& link_;
  Control& status_;
  bool& linkOpen_;
};

}  // namespace fonklav
