#include "sim/SimTelephony.h"

#include "util/RunTimeError.h"

namespace fonklav {

void SimTelephony::OnEntry(std::string_view function) {
  if (libraryMissing_) throw RunTimeError(ErrorNumber::FileNotFound);
  if (missing_.contains(function)) throw RunTimeError(ErrorNumber::DllEntryPointNotFound);
}

}  // namespace fonklav
