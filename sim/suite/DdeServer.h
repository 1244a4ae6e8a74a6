#pragma once

#include <windows.h>
// ddeml.h needs the types of windows.h.
#include <ddeml.h>

#include <string>

#include "sim/suite/Server.h"

namespace fonklav::suite {

/// The server on the system's DDE library, so that the dialer's link meets a peer that does not share a line with it.
class DdeServer final : public Server {
 public:
  /// Registers the service name. Throws std::runtime_error when the system refuses.
  explicit DdeServer(Listener listener);
  /// Withdraws the name; a conversation that is still open ends.
  ~DdeServer() override;

  void Publish(std::string value) override;
  bool Terminate() override;
  void Withdraw() override { DdeNameService(instance_, service_, nullptr, DNS_UNREGISTER); }

 private:
  static HDDEDATA CALLBACK Callback(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second, HDDEDATA data,
                                    ULONG_PTR, ULONG_PTR);
  HDDEDATA Handle(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second, HDDEDATA data);
  HDDEDATA OnExecute(HDDEDATA data);
  HDDEDATA Value();
  [[nodiscard]] bool Is(HSZ name, HSZ wanted) const { return DdeCmpStringHandles(name, wanted) == 0; }

  std::string value_;
  DWORD instance_{};
  HCONV conversation_{};
  HSZ service_{};
  HSZ topic_{};
  HSZ item_{};
};

}  // namespace fonklav::suite
