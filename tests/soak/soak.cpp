#include <cstdlib>
#include <iostream>

#include "tests/app/BareDialer.h"
#include "tests/app/CountedMemory.h"

// Dials over and over with the whole program on simulated telephony. What it holds after a tenth of the cycles it must
// hold at the end, to the byte.
namespace fonklav::test {
namespace {

/// One call by command and its end, from this side or the far one; at times the settings are saved or given up, which
/// makes a new line object. False when the call was not connected and ended.
bool Cycle(BareDialer& dialer, long number) {
  dialer.Command("cmd|call|0301234567", 100);
  const bool connected = dialer.sim.LiveCalls() == 1;
  if (number % 2 == 0) dialer.Command("cmd|hangup");
  if (number % 2 == 1) dialer.sim.RemoteHangUp();
  dialer.Pump(100);
  if (number % 5 == 0) dialer.Command("unload", 100);
  if (number % 5 == 1) dialer.Input().Click(ControlId::cmdSave);
  if (number % 5 == 2) dialer.Input().ClickEntry(0);
  dialer.Command("", 100);
  // What grows by design: the status box, and what the simulator and a fake remember.
  dialer.Input().Click(ControlId::cmdLogClear);
  dialer.sim.ForgetCalls();
  dialer.profile.asked.clear();
  return connected && dialer.sim.OpenLines() == 0 && dialer.view.unloads == 0;
}

int Soak(long cycles) {
  BareDialer dialer(kTwoLinesAndACall);
  dialer.view.remembers = dialer.dde.remembers = false;
  dialer.StoreLine("A");
  if (!dialer.Start("/run")) return 1;
  Memory tenth;
  for (long cycle = 1; cycle <= cycles; ++cycle) {
    if (!Cycle(dialer, cycle)) {
      std::cerr << "cycle " << cycle << ": the call did not come about\n";
      return 1;
    }
    if (cycle == cycles / 10) tenth = memory;
  }
  const Memory end = memory;
  std::cout << "what | after a tenth | at the end\n"
            << "heap blocks | " << tenth.blocks << " | " << end.blocks << "\nheap bytes | " << tenth.bytes << " | "
            << end.bytes << '\n';
  return tenth.blocks == end.blocks && tenth.bytes == end.bytes && end.blocks > 0 && dialer.ErrorLog().empty() ? 0 : 1;
}

}  // namespace
}  // namespace fonklav::test

int main(int argc, char** argv) {
  // A tenth has to see each kind of cycle.
  const long cycles = argc == 2 ? std::atol(argv[1]) : 0;
  return cycles >= 100 && cycles % 100 == 0 ? fonklav::test::Soak(cycles) : 2;
}
