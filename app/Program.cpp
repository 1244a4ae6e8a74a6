#include "app/Program.h"

#include "app/DdeConversation.h"
#include "app/fMain.h"
#include "app/modSaveSetting.h"
#include "config/Configuration.h"
#include "diag/clsErrorHandling.h"
#include "tapi/mTAPIFunctions.h"
#include "tapi/mTAPIvb.h"
#include "tapi/modFunctions.h"
#include "tapi/modKeyPressCheck.h"
#include "util/Diagnostics.h"

namespace fonklav {
namespace {

constexpr const char* kTitle = "FonklavTAPI";

}  // namespace

/// Everything a running dialer consists of, the known before those that know them.
struct Program::Parts {
  explicit Parts(const Ports& all) : ports(all) {}
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;
  ~Parts() {
    // Nobody is shown anything any more. The log goes before the folders and texts that it writes by.
    controls.slot.view = nullptr;
    form.reset();
    link.Close();
    diagnostics.log.reset();
  }

  Ports ports;
  Diagnostics diagnostics;
  LogLimits limits;
  Configuration config{diagnostics, ports, [this]() -> std::unique_ptr<ProcedureLog> {
                         return std::make_unique<clsErrorHandling>(diagnostics, config, ports);
                       }};
  LineState lines;
  DialSettings settings;
  mTAPIvb callback{diagnostics, ports.loop};
  mTAPIFunctions lineFunctions{diagnostics, lines};
  modFunctions functions{diagnostics, ports.numberLocale};
  modKeyPressCheck keyPressCheck{diagnostics};
  FormControls controls;
  modSaveSetting saveSetting{diagnostics, config.ini, controls.form, lines, settings, limits};
  DdeConversation link{ports.dde, ports.clock};
  std::unique_ptr<fMain> form = std::make_unique<fMain>(
      FormServices{diagnostics, config, ports.codePage, ports.numberLocale, ports.process, link, lines, settings,
                   lineFunctions, functions, keyPressCheck, saveSetting,
                   LineServices{diagnostics, ports.telephony, ports.icons, ports.codePage, callback, kTitle}},
      controls);
};

Program::Program(const Ports& ports) : parts_(std::make_unique<Parts>(ports)) {}

Program::~Program() = default;

bool Program::Load(FormView& view) {
  parts_->controls.slot.view = &view;
  return parts_->form->Form_Load();
}

void Program::ReportFault(const std::string& fault) {
  parts_->config.messages.MsgBoxForward(fault, kMessageBoxCritical, "");
}

FormControls& Program::Controls() { return parts_->controls; }

FormInput& Program::Input() { return *parts_->form; }

}  // namespace fonklav
