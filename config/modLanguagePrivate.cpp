#include "config/modLanguagePrivate.h"

#include "util/Procedure.h"

namespace fonklav {

void modLanguagePrivate::LoadTexts() {
  Procedure(diagnostics_, "modLanguagePrivate.LoadTexts", {}, [&] {
    language_.LanguageInit("");
    for (const SharedTextRow& row : kSharedTexts) {
      state_.texts.*row.field = language_.LoadLangKey(row.text);
    }
  });
}

}  // namespace fonklav
