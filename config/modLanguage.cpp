#include "config/modLanguage.h"

#include "Version.h"
#include "util/CaseFold.h"
#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {
namespace {

constexpr const char* kFilePattern = "\\base\\language_##.ini";
constexpr const char* kLanguageLog = "\\log\\language.log";

/// Keys that describe the file itself. They are never marked.
bool DescribesFile(const std::string& key) {
  return EqualsIgnoringCase(key, "language") || EqualsIgnoringCase(key, "countryid");
}

}  // namespace

void modLanguage::LanguageInit(const std::string& code) {
  Procedure(diagnostics_, "modLanguage.LanguageInit", {code}, [&] {
    state_.languageCode = code.empty() ? ini_.GetSettStr("General", "Language", state_.languageCode, "", true) : code;
    state_.languageFile = ReplaceAll(kFilePattern, "##", state_.languageCode);
    state_.languageFileMissing = !files_.FileExist(state_.programFolder + state_.languageFile);
  });
}

std::string modLanguage::LoadLangKey(const std::string& key, const std::string& defaultText) const {
  return Procedure(diagnostics_, "modLanguage.LoadLangKey", {key, defaultText}, std::string{}, [&](std::string& text) {
    text = defaultText;
    if (!state_.languageFileMissing) {
      const std::string file = state_.programFolder + state_.languageFile;
      const std::string value = ini_.GetSettStr("Data", key, "", file);
      if (!value.empty()) text = value;
      if (checkMode_ && !DescribesFile(key)) text = Marked(value, key, defaultText);
    }
    text = ReplaceAll(ReplaceAll(text, "<CR>", kCrLf), "<TAB>", "\t");
  });
}

std::string modLanguage::Marked(const std::string& value, const std::string& key,
                                const std::string& defaultText) const {
  if (!value.empty()) return "[" + value + "]";
  LogMissing(key, defaultText);
  return "?" + defaultText + "?";
}

void modLanguage::LogMissing(const std::string& key, const std::string& defaultText) const {
  if (!diagnostics_.log) return;
  std::string line = diagnostics_.tag + " v";
  line.append(kVersion).append(" | ").append(key).append(" | ").append(defaultText);
  diagnostics_.log->WriteLine(kLanguageLog, line);
}

}  // namespace fonklav
