#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "app/DdeConversation.h"
#include "app/FormTexts.h"
#include "app/FormView.h"
#include "app/Protocol.h"
#include "tapi/CvbTAPILine.h"
#include "tapi/mTAPIFunctions.h"

namespace fonklav {

class CodePage;
class NumberLocale;
class Process;
class modFunctions;
class modKeyPressCheck;
class modSaveSetting;
struct Configuration;
struct DialSettings;

/// What the form works with. All of it outlives the form.
struct FormServices {
  Diagnostics& diagnostics;
  Configuration& config;
  CodePage& codePage;
  NumberLocale& numberLocale;
  Process& process;
  DdeConversation& link;
  LineState& lines;
  DialSettings& settings;
  mTAPIFunctions& lineFunctions;
  modFunctions& functions;
  modKeyPressCheck& keyPressCheck;
  modSaveSetting& saveSetting;
  LineServices lineServices;
};

/// The dialer's one window, without its paint: what it holds, what its buttons do, what the main program tells it and
/// hears from it, and the one line object. Its procedures are grouped into files by what the user does, and each file
/// calls procedures of itself and of those before it alone: _Calls, _Lines, _Startup, _Settings, _Link, and fMain.cpp,
/// where the window comes in.
class fMain final : public FormInput, private LineEvents, private LinkEvents {
 public:
  fMain(const FormServices& services, FormControls& controls);
  fMain(const fMain&) = delete;
  fMain& operator=(const fMain&) = delete;
  ~fMain() override;

  /// Start-up up to the first timer; false when the program is to end at once.
  [[nodiscard]] bool Form_Load();

  void Click(ControlId button) noexcept override;
  void KeyPress(ControlId box, int characterCode) noexcept override;
  void Edit(ControlId box, const std::string& text) noexcept override;
  void TickEntry(std::size_t index, bool ticked) noexcept override;
  void ClickEntry(std::size_t index) noexcept override;
  void TimerTick(TimerId timer) noexcept override;
  void Moved(float top, float left) noexcept override;
  void Resized(float width, float height) noexcept override;
  void CloseRequested(UnloadMode mode) noexcept override;

 private:
  using LinePointer = std::shared_ptr<CvbTAPILine>;

  void cmdInfo_Click(std::int16_t index);

  // Start-up
  [[nodiscard]] bool ReadCommandLine();
  void Language();
  void ReLoadSettings();
  void ShowCollapsed();
  void tmStart_Timer(int index);
  void OpenLink();
  void EndLinkStage();
  void ShowAsAsked();
  void BindLineObject();
  void CreateLine(const LinePointer& line);
  void LineCreated(const LinePointer& line, std::string_view debugText);
  void StageWithoutLine();
  void ReportFirstFailure();
  void ReportWrongVersion();
  void ReportMissingAreaCodes();

  // Link
  void txtDDE_Change();
  void Obey(const CommandMessage& message);
  void ShowSettings();
  void Dial(std::string_view number);
  void SetDebugFlag(std::string_view flag);
  void txtDDE_LinkLate() noexcept override;
  void txtDDE_LinkFailed() noexcept override;
  void txtDDE_LinkOpen() noexcept override;
  void txtDDE_LinkError() noexcept override;
  void txtDDE_LinkClose() noexcept override;
  void txtDDE_LinkData(const std::string& bytes) noexcept override;
  void txtDDE_SendFailed() noexcept override { LinkOpenFlag_ = false; }

  // Lines
  void SetLine();
  void ReportMissingLine();
  void ReportBoundLine(std::int16_t id);
  void RefreshTAPIList();
  void lstTAPI_ItemCheck(std::size_t index);
  void lstTAPI_Click(std::size_t index);

  // Settings
  void cmdSave_Click();
  void cmdExit_Click();
  void Unload(UnloadMode mode);
  void Form_QueryUnload(bool& cancel, UnloadMode mode);
  void Form_Unload();

  // Calls
  void cmdWahl_Click();
  void RequestCall();
  void ReportNoCall(const char* prefix, std::string_view what, Sender sender);
  void cmdHangUp_Click();
  void cmdLogClear_Click();
  void txtNumber_Change();
  void txtNumber_KeyPress(std::int16_t keyAscii);
  void txtSettVW_KeyPress(std::int16_t keyAscii);
  void tapiline_MakeCallResult(std::int32_t errorCode) override;
  void tapiline_DropCallResult(std::int32_t errorCode) override;
  void tapiline_Dialing() override;
  void tapiline_Connected() override;
  void tapiline_Idle() override;
  void tapiline_Disconnected() override;
  void ApplyDialButtonRule();

  /// The line object, counted for as long as the caller is inside it: telephony may dispatch messages in the middle of
  /// its own functions, and what they bring may release the form's line. Throws RunTimeError 91 when there is none, and
  /// 401, which no log shows, once the form has unloaded: a handler that the end has interrupted has nothing more to
  /// do.
  [[nodiscard]] LinePointer Line(int line = __builtin_LINE()) const;
  [[nodiscard]] bool LineIsOpen() const { return tapiline_ && tapiline_->IsOpen(); }
  void ReleaseLine();
  void DebugLine(std::string_view text, std::string_view of = {}) const { DebugTapi(services_.diagnostics, text, of); }

  FormServices services_;
  FormControls& controls_;
  Reports reports_;
  FormTexts texts_;
  LinePointer tapiline_;
  std::string ownAccessCode_;  ///< the outside-line code of the system's location
  std::string txtDDE_;         ///< the linked value last received
  std::int16_t shownPanel_{-1};
  bool SettModeFlag_{false};
  bool LinkOpenFlag_{false};
  bool TAPICheckShownFlag_{false};
  bool AreaCodeMsgShownFlag_{false};
  bool DebugFlag_{false};
  bool shownAsAsked_{false};  ///< the start has shown the window, or left it hidden
  bool unloaded_{false};
};

}  // namespace fonklav
