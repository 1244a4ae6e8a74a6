#include "sim/suite/MessageServer.h"

#include <dde.h>

#include <cstring>
#include <utility>

namespace fonklav::suite {

namespace {

constexpr const char* kClassName = "suite on DDE messages";

bool Names(ATOM atom, const char* name) {
  char text[256]{};
  GlobalGetAtomNameA(atom, text, sizeof text);
  return lstrcmpiA(text, name) == 0;
}

}  // namespace

HWND MessageServer::MakeWindow(const char* className, WNDPROC procedure) {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = procedure;
  windowClass.lpszClassName = className;
  RegisterClassA(&windowClass);  // a second registration fails, and the first still holds
  return CreateWindowA(className, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
}

MessageServer::MessageServer(Listener listener)
    : Server(std::move(listener)),
      window_(MakeWindow(kClassName, &WindowProc)),
      stranger_(MakeWindow(kClassName, &WindowProc)) {
  for (const HWND each : {window_, stranger_}) SetWindowLongPtrA(each, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

MessageServer::~MessageServer() {
  for (const HWND each : {window_, stranger_}) DestroyWindow(each);
}

LRESULT CALLBACK MessageServer::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const server = reinterpret_cast<MessageServer*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (server == nullptr || message < WM_DDE_FIRST || message > WM_DDE_LAST) {
    return DefWindowProcA(window, message, wParam, lParam);
  }
  const HWND client = reinterpret_cast<HWND>(wParam);
  if (window == server->stranger_) {
    if (message == WM_DDE_TERMINATE) server->listener_.linkEvent("the other server is told the end");
    return 0;
  }
  if (message == WM_DDE_INITIATE) server->OnInitiate(client, lParam);
  if (message == WM_DDE_TERMINATE) server->OnTerminate(client);
  if (client != server->client_) return 0;
  if (message == WM_DDE_ADVISE) server->OnAdvise(lParam);
  if (message == WM_DDE_EXECUTE) server->OnExecute(lParam);
  if (message == WM_DDE_ACK) server->OnAck(lParam);
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
  for (const HWND each : {window_, stranger_}) {
    if (each == stranger_ && secondAnswer_ == 0) continue;
    SendMessageA(client, WM_DDE_ACK, reinterpret_cast<WPARAM>(each),
                 MAKELPARAM(GlobalAddAtomA(kService), GlobalAddAtomA(kTopic)));
  }
}

void MessageServer::OnAdvise(LPARAM lParam) {
  UINT_PTR options = 0;
  UINT_PTR item = 0;
  UnpackDDElParam(WM_DDE_ADVISE, lParam, &options, &item);
  FreeDDElParam(WM_DDE_ADVISE, lParam);
  if (endAtAdvise_ != 0) {
    Terminate();
    return;
  }
  Answer answer = acceptAdvise_ ? Answer::Accept : Answer::Refuse;
  if (busyAtAdvise_ != 0) {
    --busyAtAdvise_;
    answer = Answer::Busy;
  }
  linked_ = answer == Answer::Accept;
  listener_.linkEvent(linked_                  ? "link to the item established"
                      : answer == Answer::Busy ? "is asked for the item, and busy"
                                               : "link to the item refused");
  if (linked_ && advise_.copies != 0) GlobalFree(reinterpret_cast<HGLOBAL>(options));
  AnswerAs(advise_, answer, item);
}

void MessageServer::OnExecute(LPARAM lParam) {
  UINT_PTR unused = 0;
  UINT_PTR memory = 0;
  UnpackDDElParam(WM_DDE_EXECUTE, lParam, &unused, &memory);
  const HGLOBAL text = reinterpret_cast<HGLOBAL>(memory);
  std::string report(static_cast<const char*>(GlobalLock(text)), GlobalSize(text));
  GlobalUnlock(text);
  AnswerAs(execute_, answer_, memory);
  listener_.report(report.c_str());
}

void MessageServer::OnAck(LPARAM lParam) {
  UINT_PTR status = 0;
  UINT_PTR item = 0;
  UnpackDDElParam(WM_DDE_ACK, lParam, &status, &item);
  FreeDDElParam(WM_DDE_ACK, lParam);
  GlobalDeleteAtom(static_cast<ATOM>(item));
  listener_.linkEvent((status & static_cast<UINT_PTR>(Answer::Accept)) != 0 ? "the value was taken"
                                                                            : "the value was refused");
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
  if (linked_) PostValue({std::string(value.c_str(), value.size() + 1)}, window_);
}

void MessageServer::AnswerAs(const Habit& habit, Answer answer, UINT_PTR what) const {
  Sleep(habit.delay);
  for (unsigned copy = 0; copy < habit.copies; ++copy) {
    Post(WM_DDE_ACK, PackDDElParam(WM_DDE_ACK, static_cast<UINT_PTR>(answer), what));
  }
}

void MessageServer::PostValue(const Value& value, HWND sender) const {
  const std::size_t size = offsetof(DDEDATA, Value) + value.bytes.size();
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE | GMEM_ZEROINIT, size);
  auto* const data = static_cast<DDEDATA*>(GlobalLock(memory));
  data->fRelease = 1;
  data->fAckReq = value.asking ? 1 : 0;
  data->cfFormat = static_cast<short>(value.format);
  std::memcpy(data->Value, value.bytes.data(), value.bytes.size());
  GlobalUnlock(memory);
  PostMessageA(client_, WM_DDE_DATA, reinterpret_cast<WPARAM>(sender),
               PackDDElParam(WM_DDE_DATA, reinterpret_cast<UINT_PTR>(memory), GlobalAddAtomA(value.item)));
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
