#include "app/fMain.h"
#include "config/Configuration.h"
#include "util/Procedure.h"

// Every text of the window, in the user's language.
namespace fonklav {

std::string fMain::Lookup(const SingleText& text) {
  return services_.config.language.LoadLangKey(std::string(text.key), std::string(text.defaultText));
}

void fMain::Language() {
  Procedure(services_.diagnostics, "fMain.Language", {}, [&] {
    const std::string head = Lookup(kHeadText);  // one after the other: the trace shows the order
    const std::string settings = Lookup(kSettingsText);
    controls_.form.Caption("Rufmon -  " + head + " " + settings);
    for (const FormTextRow& row : kFormTexts) texts_.*row.text = Lookup({row.key, row.defaultText});
    for (const ControlTextRow& row : kControlTexts) ApplyText(row);
  });
}

void fMain::ApplyText(const ControlTextRow& row) {
  Control* control = controls_.Find(row.control);
  if (control == nullptr) return;
  if (row.text != nullptr) return control->Text(texts_.*row.text);
  // The default is what the control shows by its layout, so a missing key leaves it as it is.
  if (row.toolTip) return control->ToolTip(Lookup({row.key, control->ToolTip()}));
  control->Text(Lookup({row.key, control->Text()}));
}

}  // namespace fonklav
