#include "app/Protocol.h"

#include <algorithm>
#include <array>
#include <optional>

#include "app/Controls.h"
#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {
namespace {

constexpr char kSeparator = '|';

/// One command: its first field, its second where that is part of the name, and which field is its argument.
struct CommandRow {
  std::string_view name;
  std::optional<std::string_view> detail;  ///< nothing: any
  Command command;
  std::size_t argument;
};

/// The first row that fits counts.
constexpr std::array kCommands{
    CommandRow{"settings", std::nullopt, Command::Settings, 1},
    CommandRow{"unload", std::nullopt, Command::Unload, 1},
    CommandRow{"cmd", "call", Command::Call, 2},
    CommandRow{"cmd", "hangup", Command::HangUp, 2},
    CommandRow{"cmd", std::nullopt, Command::Nothing, 2},
    CommandRow{"debug", std::nullopt, Command::DebugFlag, 1},
};

/// In the order of Sender. The odd ones out are what the suite's main programs know.
constexpr std::array<std::string_view, 6> kTags{
    "", "|SetLine", "|cmdHangUp_Click", "|cmdWahl_Click 1", "|cmdWahl_Click 2", "|Idle"};

std::string_view TagOf(Sender sender) { return kTags.at(static_cast<std::size_t>(sender)); }

const char* Digit(bool flag) { return flag ? "1" : "0"; }

}  // namespace

CommandMessage ParseCommand(std::string_view value) {
  std::array<std::string_view, 3> fields;  // those that a command leaves out stay empty
  for (std::string_view& field : fields) {
    field = value.substr(0, value.find(kSeparator));
    value.remove_prefix(std::min(field.size() + 1, value.size()));
  }
  const auto row = std::ranges::find_if(kCommands, [&](const CommandRow& candidate) {
    return candidate.name == fields[0] && (!candidate.detail || *candidate.detail == fields[1]);
  });
  if (row == kCommands.end()) return {};
  return {row->command, fields[row->argument]};
}

void Reports::DDEexecute(std::string_view message, std::string_view tag) {
  Procedure(diagnostics_, "DDEexecute", {message, tag}, [&] {
    if (!link_.Send(codePage_.ToBytes(message) + codePage_.ToBytes(tag))) linkOpen_ = false;
  });
}

void Reports::Acknowledge() { DDEexecute("cmd|quitt"); }

void Reports::Bound(bool found) { DDEexecute(std::string("Init2LastOK|") + Digit(found)); }

void Reports::Line(const std::string& caption) { DDEexecute("line|" + caption); }

void Reports::Log(const std::string& text) { DDEexecute("log|" + text); }

void Reports::Show(const std::string& line) { status_.Append(line + std::string(kCrLf)); }

void Reports::Progress(const std::string& text) {
  Show(text);
  DDEexecute("anzlog|" + text);
}

void Reports::Answer(const std::string& text) {
  DDEexecute("anzlog|" + text);
  Show(text);
}

void Reports::TellFailure(const std::string& line, std::string_view what) {
  Log(line);
  DDEexecute("anz|" + std::string(what) + " >> Log");
}

void Reports::Failure(const std::string& line, std::string_view what) {
  Show(line);
  TellFailure(line, what);
}

void Reports::FailedAnswer(const std::string& line, std::string_view what) {
  TellFailure(line, what);
  Show(line);
}

void Reports::Trouble(const std::string& text, std::string_view lineEnd) {
  status_.Append(text + std::string(lineEnd));
  Log(text);
}

void Reports::NoTelephony(const std::string& text) {
  status_.Append(text);
  Line(text);
  Log(text);
}

void Reports::CallButton(const Control& button, Sender sender) {
  DDEexecute(std::string("btnCall|") + Digit(button.Enabled()), TagOf(sender));
}

void Reports::HangUpButton(const Control& button, Sender sender) {
  DDEexecute(std::string("btnHangUp|") + Digit(button.Enabled()), TagOf(sender));
}

void Reports::AutoHide() { DDEexecute("cmd|autohide"); }

void Reports::SettingsChanged() { DDEexecute("cmd|settchange"); }

}  // namespace fonklav
