#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "sim/LineSimulator.h"
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

/// How far a line object has come: registered, open, with a call whose reply has come.
enum class Stage { Made, Created, Open, Calling };

/// A line object on simulated telephony, or on another kind of it, with nothing above it.
struct TapiSystem : Recorded {
  explicit TapiSystem(const std::string& scenario, Stage stage = Stage::Made, LineSimulator* other = nullptr)
      : own(Scenario::Parse(scenario)), sim(other != nullptr ? *other : own), line(MakeLine()) {
    bool reached = stage < Stage::Created || line->Create();
    reached = reached && (stage < Stage::Open || line->OpenLine());
    reached = reached && (stage < Stage::Calling || line->MakeCallAsynch("1"));
    if (!reached) throw std::logic_error("the line object does not come as far as the test wants it");
    if (stage == Stage::Calling) Pump(10);
  }

  std::shared_ptr<CvbTAPILine> MakeLine() {
    return CvbTAPILine::Make({diagnostics, sim, icons, codePage, callback, "FonklavTAPI"}, events);
  }

  void State(std::uint32_t state) { line->LineProcHandler(0, LINE_CALLSTATE, state, 0, 0); }

  void Pump(int milliseconds) {
    sim.Advance(std::chrono::milliseconds(milliseconds));
    loop.Run();
  }

  LineSimulator own;
  LineSimulator& sim;
  FakeCodePage codePage;
  FakeIconPainter icons;
  FakeMessageLoop loop;
  mTAPIvb callback{diagnostics, loop};
  RecordedEvents events;
  std::shared_ptr<CvbTAPILine> line;
};

}  // namespace fonklav::test
