#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "sim/SimTelephony.h"

namespace fonklav {

/// A bare program on the simulated telephony: registers, opens the first device, dials, and notes what it is told.
class TestLine : public LineMessageSink {
 public:
  explicit TestLine(const std::string& scenario) : sim(Scenario::Parse(scenario)) {}

  std::int32_t Register() {
    LINEINITIALIZEEXPARAMS params{};
    params.dwTotalSize = sizeof params;
    params.dwOptions = LINEINITIALIZEEXOPTION_USEHIDDENWINDOW;
    return sim.lineInitializeEx(app, *this, "test", devices, version, params);
  }
  std::int32_t Open() { return sim.lineOpen(app, 0, line, openVersion, 0, 77, LINECALLPRIVILEGE_NONE, 4); }
  std::int32_t Dial() { return sim.lineMakeCall(line, call, "0301234567", 0); }
  /// Everything up to a request for a call, each step of which must go through.
  std::int32_t RegisterOpenAndDial() { return Register() == 0 && Open() == 0 ? Dial() : -1; }

  void LineCallBackProc(std::uint32_t hDevice, std::uint32_t dwMsg, std::uintptr_t dwCallbackInstance,
                        std::uintptr_t dwParam1, std::uintptr_t dwParam2, std::uintptr_t dwParam3) noexcept override {
    heard.push_back({hDevice, dwMsg, dwCallbackInstance, dwParam1, dwParam2, dwParam3});
    if (onMessage) onMessage(heard.back());
  }

  /// "reply 1=0 state 10 …": the messages as one text, states and requests as numbers.
  [[nodiscard]] std::string Heard() const {
    std::string text;
    for (const auto& message : heard) {
      text += message.message == LINE_REPLY ? "reply " + std::to_string(message.p1) + '=' : "state ";
      text += HexText(message.message == LINE_REPLY ? message.p2 : message.p1) + ' ';
    }
    return text;
  }

  SimTelephony sim;
  HLINEAPP app{0};
  HLINE line{0};
  HCALL call{0};
  std::uint32_t devices{0};
  std::uint32_t version{TAPI_VERSION3_0};
  std::uint32_t openVersion{TAPI_VERSION3_0};
  std::vector<LineMessage> heard;
  std::function<void(const LineMessage&)> onMessage;
};

}  // namespace fonklav
