#include "util/Diagnostics.h"

namespace fonklav {

void DebugTapi(const Diagnostics& diagnostics, std::string_view text) {
  if (!diagnostics.log) return;
  std::string line = "TAPI " + diagnostics.tag + " ";
  line += text;
  diagnostics.log->LogDebug_TAPI(line, {});
}

}  // namespace fonklav
