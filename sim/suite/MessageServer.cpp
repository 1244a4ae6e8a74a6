#include "sim/suite/MessageServer.h"

#include <dde.h>

#include <cstring>
#include <utility>

namespace fonklav::suite {

namespace {

constexpr const char* kClassName = "suite on DDE messages";
constexpr const char* kBystanderClass = "suite bystander";

HWND MakeWindow(const char* className, WNDPROC procedure) {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = procedure;
  windowClass.lpszClassName = className;
  RegisterClassA(&windowClass);  // a second registration fails, and the first still holds
  return CreateWindowA(className, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
}

bool Names(ATOM atom, const char* name) {
  char text[256]{};
  GlobalGetAtomNameA(atom, text, sizeof text);
  return lstrcmpiA(text, name) == 0;
}

/// A window that has nothing to do with the link and takes its time for whatever it is asked.
LRESULT CALLBACK BystanderProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_DDE_INITIATE) Sleep(static_cast<DWORD>(GetWindowLongPtrA(window, GWLP_USERDATA)));
  return DefWindowProcA(window, message, wParam, lParam);
}

void StandBy(const std::stop_token& stop, unsigned milliseconds) {
  const HWND window = MakeWindow(kBystanderClass, &BystanderProc);
  SetWindowLongPtrA(window, GWLP_USERDATA, static_cast<LONG_PTR>(milliseconds));
  while (!stop.stop_requested()) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != FALSE;) DispatchMessageA(&message);
  }
  DestroyWindow(window);
}

}  // namespace

MessageServer::MessageServer(Listener listener) : Server(std::move(listener)) {
  window_ = MakeWindow(kClassName, &WindowProc);
  SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

MessageServer::~MessageServer() {
  SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

bool MessageServer::Misbehave(std::string_view how, unsigned amount) {
  if (how == "busy-at-link") {
    busyAtLink_ = amount;
  } else if (how == "busy-at-advise") {
    busyAtAdvise_ = amount;
  } else if (how == "bystander") {
    bystanders_.emplace_back(&StandBy, amount);
  } else {
    return false;
  }
  return true;
}

LRESULT CALLBACK MessageServer::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const server = reinterpret_cast<MessageServer*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (server == nullptr || message < WM_DDE_FIRST || message > WM_DDE_LAST) {
    return DefWindowProcA(window, message, wParam, lParam);
  }
  const HWND client = reinterpret_cast<HWND>(wParam);
  if (message == WM_DDE_INITIATE) server->OnInitiate(client, lParam);
  if (message == WM_DDE_TERMINATE) server->OnTerminate(client);
  if (client != server->client_) return 0;
  if (message == WM_DDE_ADVISE) server->OnAdvise(lParam);
  if (message == WM_DDE_EXECUTE) server->OnExecute(lParam);
  return 0;
}

void MessageServer::OnInitiate(HWND client, LPARAM atoms) {
  if (withdrawn_ || !Names(LOWORD(atoms), kService) || !Names(HIWORD(atoms), kTopic)) return;
  if (busyAtLink_ != 0) {
    listener_.linkEvent("is asked, and busy for " + std::to_string(busyAtLink_) + " ms");
    Sleep(busyAtLink_);
  }
  client_ = client;
  listener_.linkEvent("conversation open");
  SendMessageA(client, WM_DDE_ACK, reinterpret_cast<WPARAM>(window_),
               MAKELPARAM(GlobalAddAtomA(kService), GlobalAddAtomA(kTopic)));
}

void MessageServer::OnAdvise(LPARAM lParam) {
  UINT_PTR options = 0;
  UINT_PTR item = 0;
  UnpackDDElParam(WM_DDE_ADVISE, lParam, &options, &item);
  Answer answer = acceptAdvise_ ? Answer::Accept : Answer::Refuse;
  if (busyAtAdvise_ != 0) {
    --busyAtAdvise_;
    answer = Answer::Busy;
  }
  linked_ = answer == Answer::Accept;
  listener_.linkEvent(linked_                  ? "link to the item established"
                      : answer == Answer::Busy ? "is asked for the item, and busy"
                                               : "link to the item refused");
  if (linked_) GlobalFree(reinterpret_cast<HGLOBAL>(options));
  Post(WM_DDE_ACK, ReuseDDElParam(lParam, WM_DDE_ADVISE, WM_DDE_ACK, static_cast<UINT_PTR>(answer), item));
}

void MessageServer::OnExecute(LPARAM lParam) {
  UINT_PTR unused = 0;
  UINT_PTR memory = 0;
  UnpackDDElParam(WM_DDE_EXECUTE, lParam, &unused, &memory);
  const HGLOBAL text = reinterpret_cast<HGLOBAL>(memory);
  std::string report(static_cast<const char*>(GlobalLock(text)), GlobalSize(text));
  GlobalUnlock(text);
  Post(WM_DDE_ACK, ReuseDDElParam(lParam, WM_DDE_EXECUTE, WM_DDE_ACK, static_cast<UINT_PTR>(answer_), memory));
  listener_.report(report.c_str());
}

void MessageServer::OnTerminate(HWND client) {
  if (client == client_) {
    Post(WM_DDE_TERMINATE, 0);
    client_ = nullptr;
    linked_ = false;
    listener_.linkEvent("conversation closed");
  }
}

void MessageServer::Publish(std::string value) {
  if (!linked_) return;
  const std::size_t size = offsetof(DDEDATA, Value) + value.size() + 1;
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE | GMEM_ZEROINIT, size);
  auto* const data = static_cast<DDEDATA*>(GlobalLock(memory));
  data->fRelease = 1;
  data->cfFormat = CF_TEXT;
  std::memcpy(data->Value, value.c_str(), value.size() + 1);
  GlobalUnlock(memory);
  Post(WM_DDE_DATA, PackDDElParam(WM_DDE_DATA, reinterpret_cast<UINT_PTR>(memory), GlobalAddAtomA(kItem)));
}

bool MessageServer::Terminate() {
  if (client_ == nullptr) return false;
  Post(WM_DDE_TERMINATE, 0);
  client_ = nullptr;
  linked_ = false;
  return true;
}

void MessageServer::Post(UINT message, LPARAM lParam) const {
  PostMessageA(client_, message, reinterpret_cast<WPARAM>(window_), lParam);
}

}  // namespace fonklav::suite
