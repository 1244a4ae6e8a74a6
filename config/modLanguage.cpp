#include "config/modLanguage.h"

#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {

void modLanguage::LanguageInit(const std::string& code) {
  Procedure(diagnostics_, "modLanguage.LanguageInit", {code}, [&] {
    state_.languageCode =
        code.empty() ? ini_.GetSettStr("General", "Language", state_.languageCode, "", true, false) : code;
    state_.languageFile = ReplaceAll("\\base\\language_##.ini", "##", state_.languageCode);
    state_.languageFileMissing = !files_.FileExist(state_.programFolder + state_.languageFile);
  });
}

std::string modLanguage::LoadLangKey(const std::string& key, const std::string& defaultText) const {
  return Procedure(diagnostics_, "modLanguage.LoadLangKey", {key, defaultText}, std::string{}, [&](std::string& text) {
    text = defaultText;
    if (!state_.languageFileMissing) {
      std::string value = ini_.GetSettStr("Data", key, "", state_.programFolder + state_.languageFile, false, false);
      if (!value.empty()) text = std::move(value);
    }
    text = ReplaceAll(ReplaceAll(text, "<CR>", kCrLf), "<TAB>", "\t");
  });
}

}  // namespace fonklav
