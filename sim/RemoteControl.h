#pragma once

#include <string_view>

#include "sim/LineSimulator.h"

namespace fonklav {

/// Runs one line of text that somebody says to a running simulator: "answer", "hangup", "close", "state NAME detail=N",
/// "message msg=N …", or any line of a scenario, which holds from then on. Throws ScenarioError for what is not
/// understood and for what cannot happen now, such as a hang-up without a call.
void RunControlLine(LineSimulator& simulator, std::string_view text);

}  // namespace fonklav
