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

  /// Makes an object known and returns its number, never 0.
  [[nodiscard]] std::uintptr_t Register(const std::shared_ptr<CvbTAPILine>& line);
  /// Forgets an object; the end of the object calls it.
  void Unregister(std::uintptr_t instance) { lines_.erase(instance); }

  void LineCallBackProc(std::uint32_t hDevice, std::uint32_t dwMsg, std::uintptr_t dwCallbackInstance,
                        std::uintptr_t dwParam1, std::uintptr_t dwParam2, std::uintptr_t dwParam3) noexcept override;

 private:
  Diagnostics& diagnostics_;
  MessageLoop& loop_;
  std::uintptr_t last_{0};  ///< the number given last
  std::map<std::uintptr_t, std::weak_ptr<CvbTAPILine>> lines_;
};

}  // namespace fonklav
