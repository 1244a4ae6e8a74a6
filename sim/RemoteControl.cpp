#include "sim/RemoteControl.h"

#include "sim/ScenarioLine.h"

namespace fonklav {

void RunControlLine(LineSimulator& simulator, std::string_view text) {
  ScenarioLine line(text, 1);
  if (line.Empty()) return;
  const std::string command = line.Word("a command");
  bool done = true;
  if (command == "answer") {
    done = simulator.RemoteAnswer();
  } else if (command == "hangup") {
    done = simulator.RemoteHangUp();
  } else if (command == "close") {
    done = simulator.ForceClose();
  } else if (command == "state") {
    const std::uint32_t state = line.ToState(line.Word("a call state"));
    done = simulator.InjectState(state, line.Number("detail", 0));
  } else if (command == "message") {
    simulator.InjectMessage(Scenario::ParseMessage(line));
  } else {
    simulator.Rules().Apply(text);
    return;
  }
  line.End();
  if (!done) line.Fail("there is no call or line for '" + command + "'");
}

}  // namespace fonklav
