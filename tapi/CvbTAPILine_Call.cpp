#include <utility>

#include "platform/Ports.h"
#include "platform/Telephony.h"
#include "tapi/CvbTAPILine.h"
#include "tapi/Numbers.h"
#include "util/Procedure.h"
#include "util/Scope.h"

// The open line, the call on it, and the line messages that tell how it goes.
namespace fonklav {

// lineMakeCall and lineDrop answer at once with a number above 0, by which LINE_REPLY brings the outcome later. A 0,
// which would be a request without a reply, is none of theirs.
bool CvbTAPILine::Accepted(std::int32_t result, std::uint32_t& requestId) {
  if (result > 0) {
    requestId = static_cast<std::uint32_t>(result);
  } else {
    lastError_ = result;
  }
  return result > 0;
}

bool CvbTAPILine::OpenLine(std::uint32_t privileges, std::uint32_t mediamodes) {
  return Procedure(services_.diagnostics, "CvbTAPILine.OpenLine", {privileges, mediamodes}, false, [&](bool& open) {
    if (IsOpen()) return;
    const Scope scope(opening_);
    // Without a registration there is no version, and nothing to open.
    const std::uint32_t version = AtIndex(apiVersions_, currentLineId_);
    HLINE line = 0;
    open = Succeeded(services_.telephony.lineOpen(hLineApp_, static_cast<std::uint32_t>(currentLineId_), line, version,
                                                  0, instance_, privileges, mediamodes));
    if (open) {
      hLine_ = line;
    } else {
      static_cast<void>(ErrorString(lastError_));  // for the trace
    }
  });
}

bool CvbTAPILine::MakeCallAsynch(const std::string& phonenumber) {
  return Procedure(services_.diagnostics, "CvbTAPILine.MakeCallAsynch", {phonenumber}, false, [&](bool& accepted) {
    if (hLine_ == 0) return;
    if (phonenumber.empty()) {
      accepted = Accepted(services_.telephony.lineMakeCall(hLine_, *hCall_, nullptr, 0), makeCallRequestId_);
      return;
    }
    DebugTapi(services_.diagnostics, "MakeCallAsynch - Number: ", phonenumber);
    const std::string dialable = TransformPhoneNumber(phonenumber);
    DebugTapi(services_.diagnostics, "MakeCallAsynch - To API: ", dialable);
    // Translating may have let messages in, and with them the end of this line or of its owner's interest.
    if (hLine_ == 0 || events_ == nullptr) return;
    const std::string address = services_.codePage.ToBytes(dialable);
    accepted = Accepted(services_.telephony.lineMakeCall(hLine_, *hCall_, address.c_str(), 0), makeCallRequestId_);
  });
}

bool CvbTAPILine::DropCallAsynch() {
  return Procedure(services_.diagnostics, "CvbTAPILine.DropCallAsynch", {}, false, [&](bool& accepted) {
    if (*hCall_ == 0) return;
    accepted = Accepted(services_.telephony.lineDrop(*hCall_), dropRequestId_);
  });
}

bool CvbTAPILine::CloseLine() {
  return Procedure(services_.diagnostics, "CvbTAPILine.CloseLine", {}, false, [&](bool& closed) {
    if (hLine_ == 0) return;
    closed = Succeeded(services_.telephony.lineClose(std::exchange(hLine_, 0)));
  });
}

void CvbTAPILine::LineProcHandler(std::uint32_t hDevice, std::uint32_t dwMsg, std::uint32_t dwParam1,
                                  std::uint32_t dwParam2, std::uint32_t dwParam3) {
  const ProcedureName name{"CvbTAPILine.LineProcHandler", "LineProcHandler"};
  const LogArgs arguments{Signed(hDevice), Signed(dwMsg), Signed(dwParam1), Signed(dwParam2), Signed(dwParam3)};
  Procedure(services_.diagnostics, name, arguments, [&] {
    if (dwMsg == LINE_REPLY) HandleReply(dwParam1, Signed(dwParam2));
    if (dwMsg == LINE_CALLSTATE) HandleCallState(dwParam1);
  });
}

void CvbTAPILine::HandleReply(std::uint32_t requestId, std::int32_t result) {
  if (requestId == 0) return;  // 0 stands for "none pending" and is no request
  if (requestId == makeCallRequestId_) {
    makeCallRequestId_ = 0;
    if (result != 0) CloseLine();  // no call state will come that could do it
    if (events_ != nullptr) events_->tapiline_MakeCallResult(result);
  } else if (requestId == dropRequestId_) {
    dropRequestId_ = 0;
    if (events_ != nullptr) events_->tapiline_DropCallResult(result);
  }
}

void CvbTAPILine::HandleCallState(std::uint32_t state) {
  switch (state) {
    case LINECALLSTATE_IDLE:
      HandleIdle();
      idle_ = true;
      break;
    case LINECALLSTATE_DIALING:
      if (events_ != nullptr) events_->tapiline_Dialing();
      break;
    case LINECALLSTATE_CONNECTED:
      if (events_ != nullptr) events_->tapiline_Connected();
      idle_ = false;
      break;
    case LINECALLSTATE_DISCONNECTED:
      HandleDisconnected();
      idle_ = false;
      break;
    default:  // every other state passes without a word
      break;
  }
}

void CvbTAPILine::HandleIdle() {
  if (*hCall_ != 0) {
    // The handle stays after this, and a second IDLE gives it back again. Telephony refuses that, which is harmless.
    services_.telephony.lineDeallocateCall(*hCall_);
    CloseLine();
  }
  if (events_ != nullptr) events_->tapiline_Idle();
}

void CvbTAPILine::HandleDisconnected() {
  // The far end has hung up; without a drop of ours the call would never become idle.
  static_cast<void>(DropCallAsynch());
  if (events_ != nullptr) events_->tapiline_Disconnected();
}

}  // namespace fonklav
