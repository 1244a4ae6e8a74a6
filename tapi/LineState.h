#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace fonklav {

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

}  // namespace fonklav
