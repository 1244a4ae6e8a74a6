#include "config/modPrivateDummy.h"

#include "util/Procedure.h"

namespace fonklav {

std::int32_t modPrivateDummy::MsgBoxForward(const std::string& prompt, std::uint32_t style, const std::string& title) {
  return Procedure(diagnostics_, "modPrivateDummy.MsgBoxForward", {prompt, style, title}, 0, [&](std::int32_t& button) {
    const std::string shown = title.empty() ? "Rufmon - " + process_.ExecutableName() : title;
    button = boxes_.Show(prompt, style, shown);
  });
}

}  // namespace fonklav
