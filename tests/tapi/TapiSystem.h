#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sim/SimTelephony.h"
#include "tapi/CvbTAPILine.h"
#include "tapi/mTAPIvb.h"
#include "tests/fakes/FakePorts.h"
#include "tests/fakes/RecordingLog.h"

namespace fonklav::test {

/// Hears a line object's events and may do something while it does.
class RecordedEvents : public LineEvents {
 public:
  void tapiline_MakeCallResult(std::int32_t errorCode) override { Hear("MakeCallResult " + std::to_string(errorCode)); }
  void tapiline_DropCallResult(std::int32_t errorCode) override { Hear("DropCallResult " + std::to_string(errorCode)); }
  void tapiline_Dialing() override { Hear("Dialing"); }
  void tapiline_Connected() override { Hear("Connected"); }
  void tapiline_Idle() override { Hear("Idle"); }
  void tapiline_Disconnected() override { Hear("Disconnected"); }

  std::vector<std::string> heard;
  std::function<void(const std::string&)> onEvent;

 private:
  void Hear(const std::string& event) {
    heard.push_back(event);
    if (onEvent) onEvent(event);
  }
};

/// A line object on simulated telephony, or on another one, with nothing above it.
struct TapiSystem : Recorded {
  explicit TapiSystem(const std::string& scenario, Telephony* other = nullptr)
      : sim(Scenario::Parse(scenario)), telephony(other != nullptr ? *other : sim), line(MakeLine()) {}

  std::shared_ptr<CvbTAPILine> MakeLine() {
    return CvbTAPILine::Make({diagnostics, telephony, icons, codePage, callback, "FonklavTAPI"}, events);
  }

  /// A registered object with an open line.
  bool Open() { return line->Create() && line->OpenLine(); }

  /// An open line with a call whose reply has come.
  bool Call() {
    const bool accepted = Open() && line->MakeCallAsynch("1");
    Pump(10);
    return accepted;
  }
  void State(std::uint32_t state) { line->LineProcHandler(0, LINE_CALLSTATE, state, 0, 0); }

  void Pump(int milliseconds) {
    sim.Advance(std::chrono::milliseconds(milliseconds));
    loop.Run();
  }

  SimTelephony sim;
  Telephony& telephony;
  FakeCodePage codePage;
  FakeIconPainter icons;
  FakeMessageLoop loop;
  mTAPIvb callback{diagnostics, loop};
  RecordedEvents events;
  std::shared_ptr<CvbTAPILine> line;
};

}  // namespace fonklav::test
