#include "tapi/mTAPIFunctions.h"

#include <algorithm>

#include "tapi/CvbTAPILine.h"
#include "tapi/Int16.h"
#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {

void mTAPIFunctions::ResetTable() { state_.table.assign(1, LineRecord{}); }

void mTAPIFunctions::GetTAPIInterfaces(CvbTAPILine& line) {
  Procedure(diagnostics_, "mTAPIFunctions.GetTAPIInterfaces", {}, [&] {
    const std::int32_t lines = line.numLines();
    if (lines == 0) return;
    state_.table.clear();
    for (std::int32_t device = 0; device < lines; ++device) {
      line.CurrentLineID(device);
      if (line.NegotiatedAPIVersion() == 0 || !line.LineSupportsVoiceCalls()) continue;
      state_.table.push_back({ToInt16(device), WithoutNul(line.LineName())});
    }
  });
  if (state_.table.empty()) ResetTable();  // outside the guard: the table is whole after a fault as well
}

std::int16_t mTAPIFunctions::GetLineID(const std::string& name) const {
  return Procedure(diagnostics_, "mTAPIFunctions.GetLineID", {name}, std::int16_t{-1}, [&](std::int16_t& id) {
    if (name.empty()) return;
    const auto found = std::ranges::find_if(state_.table, [&](const auto& row) { return row.Name.starts_with(name); });
    if (found != state_.table.end()) id = found->ID;
  });
}

}  // namespace fonklav
