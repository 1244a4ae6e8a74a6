#pragma once

#include <array>
#include <string>
#include <string_view>

#include "app/Controls.h"
#include "config/modLanguage.h"

namespace fonklav {

/// The texts that the form keeps for captions and reports, in the user's language.
struct FormTexts {
  std::string hangUp;            ///< the button, and the step that its press is
  std::string registering;       ///< first step of a dial; the line's name follows
  std::string preparation;       ///< the line is open
  std::string checkTapi;         ///< telephony has refused its newest version, the old ones are tried
  std::string errorVersion;      ///< no version at all
  std::string noDeviceSelected;  ///< nothing stored
  std::string device;            ///< before the name of a stored line that is not there
  std::string unavailable;       ///< behind that name
  std::string call;              ///< the button, and the step when telephony has taken the number
  std::string ring;              ///< the step when the network is being dialed
  std::string connected;
  std::string disconnected;
  std::string idle;
};

/// One text: its key in the language files and the German text that is built in.
struct FormTextRow {
  TextKey text;
  std::string FormTexts::*field;
};

inline constexpr std::array kFormTexts{
    FormTextRow{{"TAPI_Button_HangUp", "Auflegen"}, &FormTexts::hangUp},
    FormTextRow{{"TAPIConfig_Info_Register", "Anmeldung"}, &FormTexts::registering},
    FormTextRow{{"TAPIConfig_Info_Preparation", "Vorbereitung"}, &FormTexts::preparation},
    FormTextRow{{"TAPIConfig_Info_CheckTAPI", "Prüfe auf TAPI 1.3 - 1.4..."}, &FormTexts::checkTapi},
    FormTextRow{{"TAPIConfig_Info_ErrorVersion", "Fehlende oder falsche TAPI-Version!"}, &FormTexts::errorVersion},
    FormTextRow{{"TAPIConfig_Info_NoDeviceSelected", "Kein TAPI-Gerät ausgewählt!"}, &FormTexts::noDeviceSelected},
    FormTextRow{{"TAPIConfig_String_Device", "Gerät"}, &FormTexts::device},
    FormTextRow{{"TAPIConfig_Info_UnAvailable", "nicht verfügbar!"}, &FormTexts::unavailable},
    FormTextRow{{"TAPI_Button_Call", "Wählen"}, &FormTexts::call},
    FormTextRow{{"TAPIConfig_String_Ring", "Klingeln"}, &FormTexts::ring},
    FormTextRow{{"TAPIConfig_String_Connected", "Verbunden"}, &FormTexts::connected},
    FormTextRow{{"TAPIConfig_String_Disconnected", "Getrennt"}, &FormTexts::disconnected},
    FormTextRow{{"TAPIConfig_String_Idle", "Leerlauf"}, &FormTexts::idle},
};

/// Where a control's text comes from: a key of the language files, whose default is the control's own layout text, or
/// one of the texts above.
struct ControlTextRow {
  ControlId control;
  std::string_view key;
  std::string FormTexts::*text;
  bool toolTip;
};

inline constexpr std::array kControlTexts{
    ControlTextRow{ControlId::frmInfo1, "TAPIConfig_Frame_Test", nullptr, false},
    ControlTextRow{ControlId::cmdLogClear, "TAPIConfig_Button_Clear", nullptr, false},
    ControlTextRow{ControlId::cmdHangUp, "", &FormTexts::hangUp, false},
    ControlTextRow{ControlId::cmdWahl, "", &FormTexts::call, false},
    ControlTextRow{ControlId::lbLineIDActive, "TAPIConfig_Label_LineID", nullptr, false},
    ControlTextRow{ControlId::Label1, "String_Number", nullptr, false},
    ControlTextRow{ControlId::cmdInfo1, "TAPIConfig_Button_Test", nullptr, false},
    ControlTextRow{ControlId::frmInfo0, "TAPIConfig_Frame_DeviceInfo", nullptr, false},
    ControlTextRow{ControlId::cmdInfo0, "TAPIConfig_Button_DeviceInfo", nullptr, false},
    ControlTextRow{ControlId::cmdSave, "Button_OK", nullptr, false},
    ControlTextRow{ControlId::Frame2, "Settings_String_TAPIDevice", nullptr, false},
    ControlTextRow{ControlId::txtSettVW, "Settings_ToolTip_Prefix", nullptr, true},
    ControlTextRow{ControlId::labTAPIConfig0, "TAPIConfig_Label_NationalPrefix1", nullptr, false},
    ControlTextRow{ControlId::labTAPIConfig1, "TAPIConfig_Label_NationalPrefix2", nullptr, false},
    ControlTextRow{ControlId::cmdExit, "Button_Cancel", nullptr, false},
};

// Texts that are looked up where they are needed.
inline constexpr TextKey kHeadText{"Settings_Label_HeadTAPI", "TAPI Wählhilfe"};
inline constexpr TextKey kSettingsText{"Display_Menu_Settings", "Einstellungen"};
inline constexpr TextKey kLineIdText{"TAPIConfig_Label_LineID", "LineID"};
inline constexpr TextKey kDirectCallText{"Import_Msg_DirectCallNotProvided",
                                         "Ein Direktaufruf dieses Tools ist nicht vorgesehen!"};

}  // namespace fonklav
