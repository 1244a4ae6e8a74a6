#pragma once

#include <cstdint>
#include <string>

#include "tapi/LineState.h"
#include "util/Diagnostics.h"

namespace fonklav {

class CvbTAPILine;

/// The table of usable lines and the report about one of them.
class mTAPIFunctions {
 public:
  mTAPIFunctions(Diagnostics& diagnostics, LineState& state) : diagnostics_(diagnostics), state_(state) {}

  /// Empties the table down to its one record without a line.
  void ResetTable();
  /// Fills the table with the lines that can place voice calls, in the order of telephony's devices. Leaves the table
  /// alone when telephony has no device at all. The line object's current line is the last device afterwards.
  void GetTAPIInterfaces(CvbTAPILine& line);
  /// The device index of the first line whose name begins with `name`, -1 when there is none or the name is empty. A
  /// prefix match on purpose: a stored name still finds its line when the driver has appended something to it.
  [[nodiscard]] std::int16_t GetLineID(const std::string& name) const;
  /// The report on a device's capabilities; makes that device the current line.
  [[nodiscard]] std::string GetLineInfo(CvbTAPILine& line, std::int16_t lineIndex) const;

 private:
  Diagnostics& diagnostics_;
  LineState& state_;
};

}  // namespace fonklav
