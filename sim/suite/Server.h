#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace fonklav::suite {

/// What the main program offers to its tools: one DDE item whose value is the command, and an ear for the execute
/// strings that come back. One conversation at a time; it needs a thread that pumps messages.
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

  /// How something is answered: the status word of the acknowledgement.
  enum class Answer : std::uint16_t { Accept = 0x8000, Busy = 0x4000, Refuse = 0 };

  explicit Server(Listener listener) : listener_(std::move(listener)) {}
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  virtual ~Server() = default;

  /// Sets the item and tells the linked partner.
  virtual void Publish(std::string value) = 0;
  /// Ends the conversation from this side. False when there is none.
  virtual bool Terminate() = 0;
  /// Answers no further connection, as if the main program did not run.
  virtual void Withdraw() = 0;
  /// Does something that no good server does; false for what it does not know.
  virtual bool Misbehave(std::string_view /*how*/, const std::string& /*detail*/) { return false; }

  void AcceptAdvise(bool accept) { acceptAdvise_ = accept; }
  void AnswerWith(Answer answer) { answer_ = answer; }

 protected:
  Listener listener_;
  bool acceptAdvise_{true};
  Answer answer_{Answer::Accept};  ///< to execute strings
};

}  // namespace fonklav::suite
