#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "platform/Ports.h"
#include "platform/Telephony.h"
#include "util/Diagnostics.h"

namespace fonklav {

class CvbTAPILine;

/// The line callback. What telephony hands back as the callback instance is a number of ours, never an address: it is
/// looked up here and names a living line object or nothing. Numbers are not used again.
class mTAPIvb : public LineMessageSink {
 public:
  mTAPIvb(Diagnostics& diagnostics, MessageLoop& loop) : diagnostics_(diagnostics), loop_(loop) {}

  /// Makes an object known and returns its number, never 0. `call` is where telephony writes the handle of the object's
  /// call: it is kept until the object is forgotten.
  [[nodiscard]] std::uintptr_t Register(const std::shared_ptr<CvbTAPILine>& line, std::shared_ptr<HCALL> call);
  /// Forgets an object; the end of the object calls it, unless telephony may still write to its cell.
  void Unregister(std::uintptr_t instance) { lines_.erase(instance); }

  void LineCallBackProc(std::uint32_t hDevice, std::uint32_t dwMsg, std::uintptr_t dwCallbackInstance,
                        std::uintptr_t dwParam1, std::uintptr_t dwParam2, std::uintptr_t dwParam3) noexcept override;

 private:
  struct Known {
    std::weak_ptr<CvbTAPILine> line;
    std::shared_ptr<HCALL> call;
  };

  Diagnostics& diagnostics_;
  MessageLoop& loop_;
  std::uintptr_t last_{0};  ///< the number given last
  std::map<std::uintptr_t, Known> lines_;
};

}  // namespace fonklav
