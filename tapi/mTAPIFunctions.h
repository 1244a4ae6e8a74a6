#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "util/Diagnostics.h"

namespace fonklav {

class CvbTAPILine;

/// One line that can place voice calls.
struct LineRecord {
  std::int16_t ID{0};  ///< telephony's device index
  std::string Name;    ///< as the driver reports it, without NUL characters
};

/// The process-wide state of the telephony layer.
struct LineState {
  /// The usable lines. Never empty: without a usable line it is one record with ID 0 and no name.
  std::vector<LineRecord> table{LineRecord{}};
  std::string TAPILine;    ///< name of the line that the user has chosen, empty when none
  bool LineOKFlag{false};  ///< the chosen line was found and is bound to the line object
};

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
