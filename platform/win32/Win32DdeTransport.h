#pragma once

#include "platform/DdeTransport.h"
#include "platform/win32/HiddenWindow.h"

namespace fonklav {

/// The DDE messages of a hidden window. The system's DDE library is not used: its synchronous calls pump messages in
/// the middle of a handler, and it does not always say that the partner has gone.
class Win32DdeTransport final : public DdeTransport, private WindowMessages {
 public:
  explicit Win32DdeTransport(HINSTANCE instance) : instance_(instance) {}
  Win32DdeTransport(const Win32DdeTransport&) = delete;
  Win32DdeTransport& operator=(const Win32DdeTransport&) = delete;
  /// Gives a partner that was told the end a short time to answer.
  ~Win32DdeTransport() override;

  bool Initiate(std::string_view application, std::string_view topic, DdeSink& sink) override;
  bool PostAdvise(std::string_view item) override;
  [[nodiscard]] Block PostExecute(std::string_view bytes) override;
  void Free(Block block) noexcept override;
  void PostTerminate() noexcept override;
  [[nodiscard]] bool PartnerAlive() const override;

 private:
  struct Value;

  std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnInitiateAnswer(HWND server, LPARAM atoms);
  void OnAck(LPARAM lParam);
  void OnData(LPARAM lParam);
  void OnTerminate();
  void AnswerData(LPARAM lParam, UINT_PTR item, bool accepted);
  [[nodiscard]] bool Talking() const { return partner_ != nullptr && !terminated_; }
  /// Posts to the partner; whoever posts still owns what it posted when this is false.
  [[nodiscard]] bool PostToPartner(UINT message, LPARAM lParam) const;

  HINSTANCE instance_;
  HiddenWindow window_;
  DdeSink* sink_{nullptr};  ///< not owned; set while the partner may be heard
  HWND partner_{nullptr};
  DWORD partnerThread_{0};
  bool initiating_{false};
  bool terminated_{false};    ///< we have told the end
  bool partnerEnded_{false};  ///< the partner has told it
  UniqueMemory adviseOptions_;
  UniqueAtom adviseItem_;
};

}  // namespace fonklav
