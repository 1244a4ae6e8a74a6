#include "sim/suite/DdeServer.h"

#include <dde.h>

#include <stdexcept>
#include <utility>
#include <vector>

namespace fonklav::suite {

namespace {

/// The library hands its callback neither a context nor a window of ours, but calls it on the thread that has
/// initialised the library: so each thread knows its server.
DdeServer*& ServerOfThread() {
  thread_local DdeServer* server = nullptr;
  return server;
}

HDDEDATA Flag(bool value) { return reinterpret_cast<HDDEDATA>(static_cast<ULONG_PTR>(value ? 1 : 0)); }

}  // namespace

static_assert(static_cast<WORD>(Server::Answer::Accept) == DDE_FACK);
static_assert(static_cast<WORD>(Server::Answer::Busy) == DDE_FBUSY);

DdeServer::DdeServer(Listener listener) : Server(std::move(listener)) {
  ServerOfThread() = this;
  if (DdeInitializeA(&instance_, &DdeServer::Callback, APPCLASS_STANDARD, 0) != DMLERR_NO_ERROR) {
    ServerOfThread() = nullptr;
    throw std::runtime_error("the DDE library does not start");
  }
  service_ = DdeCreateStringHandleA(instance_, kService, CP_WINANSI);
  topic_ = DdeCreateStringHandleA(instance_, kTopic, CP_WINANSI);
  item_ = DdeCreateStringHandleA(instance_, kItem, CP_WINANSI);
  DdeNameService(instance_, service_, nullptr, DNS_REGISTER);
}

DdeServer::~DdeServer() {
  for (const HSZ name : {service_, topic_, item_}) DdeFreeStringHandle(instance_, name);
  DdeUninitialize(instance_);
  ServerOfThread() = nullptr;
}

void DdeServer::Publish(std::string value) {
  value_ = std::move(value);
  DdePostAdvise(instance_, topic_, item_);
}

bool DdeServer::Terminate() {
  if (conversation_ == nullptr) return false;
  CONVINFO info{};
  info.cb = sizeof info;
  const bool known = DdeQueryConvInfo(conversation_, QID_SYNC, &info) != 0;
  // Wine's server side refuses to disconnect; the message that a disconnect consists of does the same there.
  bool ended = DdeDisconnect(conversation_) != FALSE;
  if (!ended && known) {
    ended = PostMessageA(info.hwndPartner, WM_DDE_TERMINATE, reinterpret_cast<WPARAM>(info.hwnd), 0) != FALSE;
  }
  conversation_ = nullptr;
  return ended;
}

HDDEDATA CALLBACK DdeServer::Callback(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second, HDDEDATA data,
                                      ULONG_PTR, ULONG_PTR) {
  auto* const server = ServerOfThread();
  return server == nullptr ? nullptr : server->Handle(type, format, conversation, first, second, data);
}

HDDEDATA DdeServer::Handle(UINT type, UINT format, HCONV conversation, HSZ first, HSZ second, HDDEDATA data) {
  switch (type) {
    case XTYP_CONNECT:
      return Flag(Is(first, topic_) && Is(second, service_));
    case XTYP_CONNECT_CONFIRM:
      conversation_ = conversation;
      listener_.linkEvent("conversation open");
      return nullptr;
    case XTYP_ADVSTART:
      listener_.linkEvent(acceptAdvise_ ? "link to the item established" : "link to the item refused");
      return Flag(acceptAdvise_ && Is(second, item_) && format == CF_TEXT);
    case XTYP_ADVREQ:
      // Wine's library hands one reference to the item's name to all links, and each of them takes one away.
      GlobalAddAtomA(kItem);
      return Value();
    case XTYP_REQUEST:
      return Value();
    case XTYP_EXECUTE:
      return OnExecute(data);
    case XTYP_DISCONNECT:
      conversation_ = nullptr;
      listener_.linkEvent("conversation closed");
      return nullptr;
    default:
      return nullptr;
  }
}

HDDEDATA DdeServer::OnExecute(HDDEDATA data) {
  std::vector<unsigned char> bytes(DdeGetData(data, nullptr, 0, 0) + std::size_t{1});
  DdeGetData(data, bytes.data(), static_cast<DWORD>(bytes.size() - 1), 0);
  listener_.report(reinterpret_cast<const char*>(bytes.data()));
  return reinterpret_cast<HDDEDATA>(static_cast<ULONG_PTR>(answer_));
}

HDDEDATA DdeServer::Value() {
  auto* bytes = reinterpret_cast<BYTE*>(value_.data());
  return DdeCreateDataHandle(instance_, bytes, static_cast<DWORD>(value_.size() + 1), 0, item_, CF_TEXT, 0);
}

}  // namespace fonklav::suite
