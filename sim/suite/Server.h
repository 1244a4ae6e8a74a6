#pragma once

#include <windows.h>
// dde.h needs the types of windows.h.
#include <dde.h>

#include <functional>
#include <map>
#include <set>
#include <string>

#include "platform/win32/Handles.h"

namespace fonklav::suite {

/// What the main program offers to its tools: one DDE item whose value is the command, and an ear for the execute
/// strings that come back. It sends the published DDE messages itself, as programs older than the system's DDE library
/// do, so it can be as slow, wrong and rude as a message can be. It needs a thread that pumps messages.
class Server {
 public:
  static constexpr const char* kService = "Rufmon Fonklav";
  static constexpr const char* kTopic = "RufmonFonklav";
  static constexpr const char* kItem = "txtDDE";

  /// Hears what happens on the link.
  struct Listener {
    std::function<void(const std::string& bytes)> report;  ///< an execute string, as it came, up to its first NUL
    std::function<void(std::string_view what)> linkEvent;  ///< the link opened, was refused, closed
  };

  explicit Server(Listener listener);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Sends the item's new value to whoever is linked to it.
  void Publish(const std::string& value) const { PostValue(window_.Get(), {value + '\0'}); }
  /// Ends each conversation from this side. False when there is none.
  bool Terminate();
  /// Does something that no good server does, or makes a habit of it, as the table of commands in docs/building.md
  /// says; throws for what it does not know.
  void Misbehave(const std::string& how, const std::string& detail);

 private:
  /// A value of the item, and all that can be wrong with it.
  struct Value {
    std::string bytes;  ///< with the terminating zero
    WORD format{CF_TEXT};
    bool asking{false};  ///< wants to be answered
    const char* item{kItem};
  };

  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  [[nodiscard]] UniqueWindow MakeWindow();
  void Hear(UINT message, HWND client, LPARAM lParam);
  void OnInitiate(HWND client, LPARAM atoms);
  void OnAdvise(HWND client, LPARAM lParam);
  void OnExecute(HWND client, LPARAM lParam);
  void OnAck(LPARAM lParam);
  /// Acknowledges a message, as late, as often and with such a status as the habits for this kind of it say.
  void Answer(const std::string& kind, HWND client, UINT_PTR what);
  void PostValue(HWND sender, const Value& value) const;
  void Post(HWND client, UINT message, LPARAM lParam) const;

  Listener listener_;
  std::map<std::string, unsigned> habits_;
  std::set<HWND> clients_;  ///< each has a conversation with this server
  std::set<HWND> linked_;   ///< those of them that are told the value
  UniqueAtom service_{GlobalAddAtomA(kService)};
  UniqueAtom topic_{GlobalAddAtomA(kTopic)};
  UniqueWindow window_;
  UniqueWindow stranger_;  ///< a second window, which no client has linked to
};

}  // namespace fonklav::suite
