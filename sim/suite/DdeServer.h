#pragma once

#include <windows.h>
// ddeml.h needs the types of windows.h.
#include <ddeml.h>

#include <functional>
#include <string>
#include <string_view>

namespace fonklav::suite {

/// What the main program offers to its tools: one DDE item whose value is the command, and an ear for the execute
/// strings that come back. It rests on the system's DDE library, so that the dialer's link meets a peer that does not
/// share a line with it. One conversation at a time; it needs a thread that pumps messages.
class DdeServer {
 public:
  /// Hears what happens on the link.
  struct Listener {
    std::function<void(const std::string& bytes)> report;  ///< an execute string, as it came, up to its first NUL
    std::function<void(std::string_view what)> linkEvent;  ///< the link opened, was refused, closed
  };

  /// How execute strings are answered.
  enum class Answer : WORD { Accept = DDE_FACK, Refuse = DDE_FNOTPROCESSED, Busy = DDE_FBUSY };

  /// Registers the service name. Throws std::runtime_error when the system refuses.
  explicit DdeServer(Listener listener);
  DdeServer(const DdeServer&) = delete;
  DdeServer& operator=(const DdeServer&) = delete;
  /// Withdraws the name; a conversation that is still open ends.
  ~DdeServer();

  /// Sets the item and tells the linked partner.
  void Publish(std::string value);
  /// Ends the conversation from this side. False when there is none.
  bool Terminate();

  /// Answers no further connection, as if the main program did not run.
  void Withdraw() { DdeNameService(instance_, service_, nullptr, DNS_UNREGISTER); }
  void AcceptAdvise(bool accept) { acceptAdvise_ = accept; }
  void AnswerWith(Answer answer) { answer_ = answer; }

 private:
  static HDDEDATA CALLBACK Callback(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second, HDDEDATA data,
                                    ULONG_PTR, ULONG_PTR);
  HDDEDATA Handle(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second, HDDEDATA data);
  HDDEDATA OnExecute(HDDEDATA data);
  HDDEDATA Value();
  [[nodiscard]] bool Is(HSZ name, HSZ wanted) const { return DdeCmpStringHandles(name, wanted) == 0; }

  Listener listener_;
  std::string value_;
  bool acceptAdvise_{true};
  Answer answer_{Answer::Accept};
  HWND anchor_{};  ///< carries the address of this object, as the library hands its callback none
  DWORD instance_{};
  HCONV conversation_{};
  HSZ service_{};
  HSZ topic_{};
  HSZ item_{};
};

}  // namespace fonklav::suite
