#include "tapi/modFunctions.h"

#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {

bool modFunctions::fIsTelNumber(const std::string& text) const {
  return Procedure(diagnostics_, "modFunctions.fIsTelNumber", {text}, false, [&](bool& isNumber) {
    isNumber = IsNumeric(ReplaceAll(ReplaceAll(text, "#", ""), "*", ""), numberLocale_.Separators());
  });
}

}  // namespace fonklav
