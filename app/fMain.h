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

  /// Opens the panel of this number in the lower half, or closes it when it is the one that is open.
  void cmdInfo_Click(std::int16_t index);

  // Start-up
  /// "/sett", "/run" or a number to be dialed by hand; false, and the user was told, for anything else.
  [[nodiscard]] bool ReadCommandLine();
  /// Gives the window and the status box their texts in the user's language.
  void Language();
  /// Reads the settings file and runs the line stage with what stands in it.
  void ReLoadSettings();
  void ShowCollapsed();
  /// A stage of the start: 0 the link, 1 the line. The third timer ticks for nobody.
  void tmStart_Timer(int index);
  void OpenLink();
  /// The question of the link has its outcome: the window, if it was asked for, and then the line stage.
  void EndLinkStage();
  void ShowAsAsked();
  /// The line stage: a new line object in place of the old one, and the stored line bound to it.
  void BindLineObject();
  /// Registers with telephony for its newest version and, where that fails, once more for the old ones.
  void CreateLine(const LinePointer& line);
  void LineCreated(const LinePointer& line, std::string_view debugText);
  /// Leaves no line in the list and the table, and no button to dial.
  void StageWithoutLine();
  /// Tells once a run why telephony has refused its newest version.
  void ReportFirstFailure();
  void ReportWrongVersion();
  /// Tells once a run, in a box, that the system's location has no area code.
  void ReportMissingAreaCodes();

  // Link
  /// The linked value has changed: a command, or nothing where the main program clears it.
  void txtDDE_Change();
  /// Acknowledges a command and does what it says; one that nobody knows is not even acknowledged.
  void Obey(const CommandMessage& message);
  void ShowSettings();
  /// Puts the number into its box and does what the dial button does, grey or not.
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
  /// Looks for the stored line among those that there are, binds it, and tells in either case.
  void SetLine();
  void ReportMissingLine();
  void ReportBoundLine(std::int16_t id);
  /// Brings the list up to the table of lines; ticks the stored one where nothing is ticked.
  void RefreshTAPIList();
  /// One line is ticked, ever: the new tick takes away the old one, and the last cannot be taken away.
  void lstTAPI_ItemCheck(std::size_t index);
  /// The report on the device; the ticked line stays the one that is dialed on.
  void lstTAPI_Click(std::size_t index);

  // Settings
  void cmdSave_Click();
  /// Gives up what was not saved. Also the command "unload", and what the end of the link comes to.
  void cmdExit_Click();
  void Unload(UnloadMode mode);
  /// Only hides the form, by `cancel`, while the link is open and neither the session nor the task manager ends it.
  void Form_QueryUnload(bool& cancel, UnloadMode mode);
  /// For good: gives the line back, ends the link and the message loop.
  void Form_Unload();

  // Calls
  void cmdWahl_Click();
  /// The second half of a dial, on the line that is open now.
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
  /// Enables the dial button where there is a number and a voice line of a known version.
  void ApplyDialButtonRule();

  /// The line object, counted for as long as the caller is inside it: telephony may dispatch messages in the middle of
  /// its own functions, and what they bring may release the form's line. Throws RunTimeError 91 when there is none, and
  /// 401, which no log shows, once the form has unloaded: a handler that the end has interrupted has nothing more to
  /// do.
  [[nodiscard]] LinePointer Line(int line = __builtin_LINE()) const;
  [[nodiscard]] bool LineIsOpen() const { return tapiline_ && tapiline_->IsOpen(); }
  /// Lets go of the line object, which gives back what it holds and is heard of no more.
  void ReleaseLine();
  void DebugLine(std::string_view text, std::string_view of = {}) const { DebugTapi(services_.diagnostics, text, of); }

  FormServices services_;
  FormControls& controls_;
  Reports reports_;
  FormTexts texts_;
  LinePointer tapiline_;
  std::string ownAccessCode_;         ///< the outside-line code of the system's location
  std::string txtDDE_;                ///< the linked value last received
  std::int16_t shownPanel_{-1};       ///< -1: none
  bool SettModeFlag_{false};          ///< started with "/sett": the window is shown
  bool LinkOpenFlag_{false};          ///< the main program takes reports; closing the window only hides it
  bool TAPICheckShownFlag_{false};    ///< the first failure of telephony was told
  bool AreaCodeMsgShownFlag_{false};  ///< the missing area codes were told
  bool DebugFlag_{false};             ///< as the main program has set it; nothing here depends on it
  bool shownAsAsked_{false};          ///< the start has shown the window, or left it hidden
  bool unloaded_{false};
};

}  // namespace fonklav
