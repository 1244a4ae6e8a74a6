#include "tapi/mTAPIFunctions.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tapi/CvbTAPILine.h"
#include "tapi/Numbers.h"
#include "util/Procedure.h"
#include "util/Text.h"

namespace fonklav {

void mTAPIFunctions::ResetTable() { state_.table.assign(1, LineRecord{}); }

void mTAPIFunctions::GetTAPIInterfaces(CvbTAPILine& line) {
  // Whole before anybody sees it: telephony may let messages in meanwhile. After a fault it is what was found so far.
  std::vector<LineRecord> table;
  const std::int32_t lines = line.numLines();
  Procedure(diagnostics_, "mTAPIFunctions.GetTAPIInterfaces", {}, [&] {
    for (std::int32_t device = 0; device < lines; ++device) {
      line.CurrentLineID(device);
      if (line.NegotiatedAPIVersion() == 0 || !line.LineSupportsVoiceCalls()) continue;
      table.push_back({ToInt16(device), WithoutNul(line.LineName())});
    }
  });
  if (lines == 0) return;
  state_.table = std::move(table);
  if (state_.table.empty()) ResetTable();
}

std::int16_t mTAPIFunctions::GetLineID(const std::string& name) const {
  return Procedure(diagnostics_, "mTAPIFunctions.GetLineID", {name}, std::int16_t{-1}, [&](std::int16_t& id) {
    if (name.empty()) return;
    const auto found = std::ranges::find_if(state_.table, [&](const auto& row) { return row.Name.starts_with(name); });
    if (found != state_.table.end()) id = found->ID;
  });
}

}  // namespace fonklav
