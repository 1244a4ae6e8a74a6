#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/DdeTransport.h"
#include "platform/win32/Handles.h"

namespace fonklav {

/// The DDE messages of a top-level window that is never shown. Its class is registered by RegisterClassExA, which makes
/// it an 8-bit window: a WM_DDE_EXECUTE string is Unicode only where both windows are, so ours are bytes of the code
/// page whatever the other side is. The system's DDE library (DDEML) is not used: its synchronous transactions pump
/// messages in the middle of a handler, and it does not always say that the partner has gone.
///
/// Who owns what is a rule of each message. The options of an advise are the server's once it accepts them, the memory
/// of an execute stays ours until it is answered, that of data is ours when the sender says so (fRelease). An item's
/// atom travels with its message and comes back with the answer.
class Win32DdeTransport final : public DdeTransport {
 public:
  /// `instance` is the module that the window class belongs to. The window is made by the first question.
  explicit Win32DdeTransport(HINSTANCE instance) : instance_(instance) {}
  Win32DdeTransport(const Win32DdeTransport&) = delete;
  Win32DdeTransport& operator=(const Win32DdeTransport&) = delete;
  /// Gives a partner that was told the end a short time to answer.
  ~Win32DdeTransport() override;

  bool Ask(std::string_view application, std::string_view topic, DdeSink& sink) override;
  bool PostAdvise(std::string_view item) override;
  DdeExecute PostExecute(std::string_view bytes) override;
  void End() noexcept override;
  [[nodiscard]] bool PartnerAlive() const override;

 private:
  /// The memory of an execute that the partner has not answered.
  struct Posted {
    DdeExecute execute;
    UniqueMemory memory;
  };

  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  /// Makes the window; false when the system refuses.
  bool MakeWindow();
  /// Deals with the window's timer, our own messages and those of DDE; false for any other.
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  /// Puts the question to one top-level window, for EnumWindows. TRUE goes on to the next.
  static BOOL CALLBACK AskWindow(HWND window, LPARAM transport);
  /// One more window has dealt with the question. After the last one, without a partner, there is no server.
  void OnDealtWith();
  /// A window answers the question: the first becomes the partner, each further one is told the end.
  void OnInitiateAnswer(HWND server, LPARAM atoms);
  /// WM_DDE_ACK of the partner, for the advise or for an execute.
  void OnAck(LPARAM lParam);
  void OnAdviseAck(std::uint16_t status);
  void OnExecuteAck(HGLOBAL memory, std::uint16_t status);
  /// Hands a value of our item to the conversation; what else comes is refused where an answer is wanted.
  void OnData(LPARAM lParam);
  void OnTerminate();
  void AnswerData(LPARAM lParam, UINT_PTR item, bool accepted);
  [[nodiscard]] bool Talking() const { return partner_ != nullptr && !ended_; }
  /// Posts to the partner. When this is false nothing was posted, and what the message carries is still ours to free.
  [[nodiscard]] bool PostToPartner(UINT message, LPARAM lParam) const;

  HINSTANCE instance_;
  UniqueWindow window_;
  DdeSink* sink_{nullptr};  ///< not owned; set from Ask to End
  std::string application_;
  std::string topic_;
  std::string item_;
  UniqueAtom applicationAtom_;  ///< both live until the last window has dealt with the question that names them
  UniqueAtom topicAtom_;
  std::size_t toDealWith_{0};  ///< windows that still have the question before them
  HWND partner_{nullptr};      ///< set once, and kept after the end so that the farewell is heard
  DWORD partnerThread_{0};
  UINT tickTime_{0};          ///< of the timer, once it has been changed
  bool ended_{false};         ///< by us
  bool partnerEnded_{false};  ///< the partner has told the end
  UniqueMemory adviseOptions_;
  UniqueAtom adviseItem_;
  std::vector<Posted> posted_;
  DdeExecute lastExecute_{0};
};

}  // namespace fonklav
