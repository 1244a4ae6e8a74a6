#include "app/modSaveSetting.h"

#include "app/Controls.h"
#include "config/modAPI_INI.h"
#include "tapi/mTAPIFunctions.h"
#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {
namespace {

constexpr const char* kFile = "\\data\\sett_TAPI.ini";
constexpr const char* kDimensions = "Dimensions";
constexpr const char* kDial = "TAPIDial";
constexpr const char* kGeneral = "General";
constexpr std::int32_t kDefaultPosition = 600;

}  // namespace

void modSaveSetting::LoadSettings() {
  Procedure(diagnostics_, "modSaveSetting.LoadSettings", {}, [&] {
    const auto position = [&](const char* key) {
      return static_cast<float>(ini_.GetSettLng(kDimensions, key, kDefaultPosition, 0, 0, false, kFile));
    };
    form_.Top(position("TopTAPI"));
    form_.Left(position("LeftTAPI"));
    lines_.TAPILine = ini_.GetSettStr(kDial, "TAPILine", "", kFile);
    settings_.TAPIAmtVW = ini_.GetSettStr(kDial, "TAPIAmtVW", "", kFile);
    limits_.logLineLimit = ini_.GetSettLng(kGeneral, "LogCount", 25, 10, 1000, false, kFile);
    limits_.backupCount = ini_.GetSettLng(kGeneral, "BackupCount", 9, 0, 9, false, kFile);
  });
}

void modSaveSetting::SaveSettings() {
  Procedure(diagnostics_, "modSaveSetting.SaveSettings", {}, [&] {
    ini_.SetSettStr(kDimensions, "TopTAPI", DecimalText(form_.Top()), kFile);
    ini_.SetSettStr(kDimensions, "LeftTAPI", DecimalText(form_.Left()), kFile);
    ini_.SetSettStr(kDial, "TAPILine", lines_.TAPILine, kFile);
    ini_.SetSettStr(kDial, "TAPIAmtVW", settings_.TAPIAmtVW, kFile);
  });
}

}  // namespace fonklav
