#pragma once

#include <string>
#include <string_view>

#include "config/ConfigState.h"
#include "config/modAPI_Files.h"
#include "config/modAPI_INI.h"
#include "util/Diagnostics.h"

namespace fonklav {

/// A text of the program: its key in the language files, and the German that is built in. Both are UTF-8; an "&" marks
/// the access key where the text is a caption.
struct TextKey {
  std::string_view key;
  std::string_view german;
};

/// Whether this build is for translators: texts are shown with marks and missing ones are logged.
#ifdef FONKLAV_LANGUAGE_CHECK
inline constexpr bool kLanguageCheck = true;
#else
inline constexpr bool kLanguageCheck = false;
#endif

/// The texts that the user sees, by key from the language file, with German built in. In the translators' check mode
/// found texts stand in brackets and missing ones between question marks, and the missing ones are logged.
class modLanguage {
 public:
  modLanguage(Diagnostics& diagnostics, ConfigState& state, const modAPI_INI& ini, const modAPI_Files& files,
              bool checkMode)
      : diagnostics_(diagnostics), state_(state), ini_(ini), files_(files), checkMode_(checkMode) {}

  /// Chooses the language file by the code in its name ("44"). An empty code asks the suite's main settings. A file
  /// that is not there is no error: the German texts stand.
  void LanguageInit(const std::string& code);
  /// The text under `key`; `defaultText` when there is none or it is empty. "<CR>" and "<TAB>" are replaced in both.
  [[nodiscard]] std::string LoadLangKey(const std::string& key, const std::string& defaultText) const;
  [[nodiscard]] std::string LoadLangKey(const TextKey& text) const {
    return LoadLangKey(std::string(text.key), std::string(text.german));
  }

 private:
  /// A text as translators see it; one that is missing is logged, each time that it is asked for.
  [[nodiscard]] std::string Marked(const std::string& value, const std::string& key,
                                   const std::string& defaultText) const;
  void LogMissing(const std::string& key, const std::string& defaultText) const;

  Diagnostics& diagnostics_;
  ConfigState& state_;
  const modAPI_INI& ini_;
  const modAPI_Files& files_;
  bool checkMode_;
};

}  // namespace fonklav
