#include "app/fMain.h"
#include "config/Configuration.h"
#include "util/Procedure.h"

// Every text of the window, in the user's language.
namespace fonklav {

using enum ControlId;

std::string fMain::Lookup(const TextKey& text) { return services_.config.language.LoadLangKey(text); }

void fMain::Language() {
  Procedure(services_.diagnostics, "fMain.Language", {}, [&] {
    const std::string head = Lookup(kHeadText);  // one after the other: the trace shows the order
    const std::string settings = Lookup(kSettingsText);
    controls_.form.Caption("Rufmon -  " + head + " " + settings);
    for (const FormTextRow& row : kFormTexts) texts_.*row.field = Lookup(row.text);
    for (const ControlTextRow& row : kControlTexts) ApplyText(row);
  });
}

void fMain::ApplyText(const ControlTextRow& row) {
  // The default is what stands there by the layout, so a missing key leaves it as it is.
  if (row.toolTip) return controls_.ToolTip(Lookup({row.key, controls_.ToolTip()}));
  Control& control = controls_[row.control];
  control.Text(row.text != nullptr ? texts_.*row.text : Lookup({row.key, control.Text()}));
}

}  // namespace fonklav
