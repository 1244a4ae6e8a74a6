#pragma once

#include <cstdint>

namespace fonklav {

/// Limits that the suite's settings give for logs. They are read and kept; this program's logs go by size.
struct LogLimits {
  std::int32_t logLineLimit{25};
  std::int32_t backupCount{9};
};

}  // namespace fonklav
