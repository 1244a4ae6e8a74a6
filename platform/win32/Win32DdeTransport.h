#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/DdeTransport.h"
#include "platform/win32/Handles.h"

namespace fonklav {

/// The DDE messages of a top-level window that is never shown. It is registered with the 8-bit functions: an execute
/// string is Unicode only between two Unicode windows, so ours are bytes of the code page whatever the other side is.
/// The system's DDE library is not used: its synchronous calls pump messages in the middle of a handler, and it does
/// not always say that the partner has gone.
class Win32DdeTransport final : public DdeTransport {
 public:
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
  /// Whether the message was one of ours.
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  static BOOL CALLBACK AskWindow(HWND window, LPARAM transport);
  void OnDealtWith();
  void OnInitiateAnswer(HWND server, LPARAM atoms);
  void OnAck(LPARAM lParam);
  void OnAdviseAck(std::uint16_t status);
  void OnExecuteAck(HGLOBAL memory, std::uint16_t status);
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
  UniqueAtom applicationAtom_;  ///< both live as long as a window may still have to read them
  UniqueAtom topicAtom_;
  std::size_t toDealWith_{0};  ///< windows that still have the question before them
  HWND partner_{nullptr};
  DWORD partnerThread_{0};
  bool ended_{false};         ///< by us
  bool partnerEnded_{false};  ///< the partner has told the end
  UniqueMemory adviseOptions_;
  UniqueAtom adviseItem_;
  std::vector<Posted> posted_;
  DdeExecute lastExecute_{0};
};

}  // namespace fonklav
