#include "tapi/mTAPIvb.h"

#include <utility>

#include "tapi/CvbTAPILine.h"
#include "tapi/Numbers.h"
#include "util/Procedure.h"

namespace fonklav {

std::uintptr_t mTAPIvb::Register(const std::shared_ptr<CvbTAPILine>& line, std::shared_ptr<HCALL> call) {
  lines_.emplace(++last_, Known{line, std::move(call)});
  return last_;
}

void mTAPIvb::LineCallBackProc(std::uint32_t hDevice, std::uint32_t dwMsg, std::uintptr_t dwCallbackInstance,
                               std::uintptr_t dwParam1, std::uintptr_t dwParam2, std::uintptr_t dwParam3) noexcept {
  const ProcedureName name{"mTAPIvb.LineCallBackProc", "LineCallBackProc"};
  const auto low = [](std::uintptr_t value) { return static_cast<std::uint32_t>(value); };
  const LogArgs arguments{Signed(hDevice),       Signed(dwMsg),         dwCallbackInstance,
                          Signed(low(dwParam1)), Signed(low(dwParam2)), Signed(low(dwParam3))};
  Procedure(diagnostics_, name, arguments, [&] {
    const auto found = lines_.find(dwCallbackInstance);
    if (found == lines_.end()) return;
    auto line = found->second.line.lock();  // a handler may release the object while this runs
    if (!line) return;
    line->LineProcHandler(hDevice, dwMsg, low(dwParam1), low(dwParam2), low(dwParam3));
    // The handler may have replaced the object, and this be its last reference. Its end shuts telephony down, which
    // must not happen inside telephony's own window procedure.
    if (line.use_count() == 1) loop_.Post([kept = std::move(line)]() mutable { kept.reset(); });
  });
}

}  // namespace fonklav
