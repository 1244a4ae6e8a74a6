#include "sim/suite/Server.h"

#include <ddeml.h>

#include <cstdlib>
#include <cstring>
#include <latch>
#include <thread>
#include <utility>

namespace fonklav::suite {

namespace {

constexpr UINT_PTR kNobodysMemory = 0x12340;  ///< too large to be taken for an atom

/// Both halves of a message's parameter, which the message's receiver has to free.
std::pair<UINT_PTR, UINT_PTR> Unpacked(UINT message, LPARAM lParam) {
  std::pair<UINT_PTR, UINT_PTR> halves;
  UnpackDDElParam(message, lParam, &halves.first, &halves.second);
  FreeDDElParam(message, lParam);
  return halves;
}

}  // namespace

Server::Server(Listener listener)
    : listener_(std::move(listener)),
      // Of a kind of message: how often and how late it is answered, meanwhile nothing is done, and the status word.
      habits_{{"offline", 0},         {"busy-at-link", 0},   {"second-answer", 0},      {"busy-at-advise", 0},
              {"end-at-advise", 0},   {"advise-answers", 1}, {"advise-delay", 0},       {"advise-status", 0x8000},
              {"execute-answers", 1}, {"execute-delay", 0},  {"execute-status", 0x8000}},
      window_(MakeWindow()),
      stranger_(MakeWindow()) {}

UniqueWindow Server::MakeWindow() {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = &Server::WindowProc;
  windowClass.lpszClassName = "suite on DDE messages";
  RegisterClassA(&windowClass);  // a second registration fails, and the first still holds
  UniqueWindow window{
      CreateWindowA(windowClass.lpszClassName, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr)};
  SetWindowLongPtrA(window.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  return window;
}

LRESULT CALLBACK Server::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const server = reinterpret_cast<Server*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (server == nullptr || message < WM_DDE_FIRST || message > WM_DDE_LAST) {
    return DefWindowProcA(window, message, wParam, lParam);
  }
  if (window == server->window_.Get()) {
    server->Hear(message, reinterpret_cast<HWND>(wParam), lParam);
  } else if (message == WM_DDE_TERMINATE) {
    server->listener_.linkEvent("the other server is told the end");
  }
  return 0;
}

void Server::Hear(UINT message, HWND client, LPARAM lParam) {
  if (message == WM_DDE_INITIATE) return OnInitiate(client, lParam);
  if (!clients_.contains(client)) return;
  if (message == WM_DDE_ADVISE) OnAdvise(client, lParam);
  if (message == WM_DDE_EXECUTE) OnExecute(client, lParam);
  if (message == WM_DDE_ACK) OnAck(lParam);
  if (message == WM_DDE_TERMINATE) {
    Post(client, WM_DDE_TERMINATE, 0);
    clients_.erase(client);
    linked_.erase(client);
    listener_.linkEvent("conversation closed");
  }
}

void Server::OnInitiate(HWND client, LPARAM atoms) {
  // The system gives names that differ in the case of letters alone the same atom.
  if (LOWORD(atoms) != service_.Get() || HIWORD(atoms) != topic_.Get()) return;
  if (const unsigned busy = habits_["busy-at-link"]; busy != 0) {
    listener_.linkEvent("is asked, and busy for " + std::to_string(busy) + " ms");
    Sleep(busy);
  }
  if (habits_["offline"] != 0) return;
  clients_.insert(client);
  listener_.linkEvent("conversation open");
  for (const HWND each : {window_.Get(), stranger_.Get()}) {
    if (each == stranger_.Get() && habits_["second-answer"] == 0) continue;
    SendMessageA(client, WM_DDE_ACK, reinterpret_cast<WPARAM>(each),
                 MAKELPARAM(GlobalAddAtomA(kService), GlobalAddAtomA(kTopic)));
  }
}

void Server::OnAdvise(HWND client, LPARAM lParam) {
  const auto [options, item] = Unpacked(WM_DDE_ADVISE, lParam);
  if (habits_["end-at-advise"] != 0) {
    Terminate();
    return;
  }
  if (habits_["busy-at-advise"] != 0) {
    --habits_["busy-at-advise"];
    listener_.linkEvent("is asked for the item, and busy");
    return Post(client, WM_DDE_ACK, PackDDElParam(WM_DDE_ACK, DDE_FBUSY, item));
  }
  const bool accepted = (habits_["advise-status"] & DDE_FACK) != 0;
  listener_.linkEvent(accepted ? "link to the item established" : "link to the item refused");
  if (accepted) linked_.insert(client);
  if (accepted && habits_["advise-answers"] != 0) GlobalFree(reinterpret_cast<HGLOBAL>(options));
  Answer("advise", client, item);
}

void Server::OnExecute(HWND client, LPARAM lParam) {
  const UINT_PTR memory = Unpacked(WM_DDE_EXECUTE, lParam).second;
  const HGLOBAL text = reinterpret_cast<HGLOBAL>(memory);
  const std::string report(static_cast<const char*>(GlobalLock(text)), GlobalSize(text));
  GlobalUnlock(text);
  Answer("execute", client, memory);
  listener_.report(report.c_str());
}

void Server::OnAck(LPARAM lParam) {
  const auto [status, item] = Unpacked(WM_DDE_ACK, lParam);
  GlobalDeleteAtom(static_cast<ATOM>(item));
  listener_.linkEvent((status & DDE_FACK) != 0 ? "the value was taken" : "the value was refused");
}

void Server::Answer(const std::string& kind, HWND client, UINT_PTR what) {
  Sleep(habits_[kind + "-delay"]);
  for (unsigned copy = 0; copy < habits_[kind + "-answers"]; ++copy) {
    Post(client, WM_DDE_ACK, PackDDElParam(WM_DDE_ACK, habits_[kind + "-status"], what));
  }
}

void Server::PostValue(HWND sender, const Value& value) const {
  for (const HWND client : linked_) {
    const std::size_t size = offsetof(DDEDATA, Value) + value.bytes.size();
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE | GMEM_ZEROINIT, size);
    auto* const data = static_cast<DDEDATA*>(GlobalLock(memory));
    data->fRelease = 1;
    data->fAckReq = value.asking ? 1 : 0;
    data->cfFormat = static_cast<short>(value.format);
    std::memcpy(data->Value, value.bytes.data(), value.bytes.size());
    GlobalUnlock(memory);
    PostMessageA(client, WM_DDE_DATA, reinterpret_cast<WPARAM>(sender),
                 PackDDElParam(WM_DDE_DATA, reinterpret_cast<UINT_PTR>(memory), GlobalAddAtomA(value.item)));
  }
}

bool Server::Terminate() {
  for (const HWND client : clients_) Post(client, WM_DDE_TERMINATE, 0);
  linked_.clear();
  return !std::exchange(clients_, {}).empty();
}

void Server::Post(HWND client, UINT message, LPARAM lParam) const {
  PostMessageA(client, message, reinterpret_cast<WPARAM>(window_.Get()), lParam);
}

void Server::Misbehave(const std::string& how, const std::string& detail) {
  const auto amount = static_cast<unsigned>(std::strtoul(detail.c_str(), nullptr, 0));
  const std::string whole = detail + '\0';
  const std::map<std::string_view, Value> values{{"value-without-end", {detail}},
                                                 {"value-empty", {""}},
                                                 {"value-asking", {whole, CF_TEXT, true}},
                                                 {"value-no-text", {whole, CF_UNICODETEXT}},
                                                 {"value-no-text-asking", {whole, CF_UNICODETEXT, true}},
                                                 {"value-of-another-item", {whole, CF_TEXT, false, "txtOther"}},
                                                 {"value-of-size", {std::string(amount, 'x')}}};
  std::map<std::string_view, std::function<void()>> acts;
  acts["values"] = [&] {
    for (unsigned number = 0; number < amount; ++number) PostValue(window_.Get(), {"frob " + std::to_string(number)});
  };
  acts["value-without-memory"] = [&] {
    for (const HWND each : linked_) Post(each, WM_DDE_DATA, PackDDElParam(WM_DDE_DATA, 0, GlobalAddAtomA(kItem)));
  };
  acts["stray-answer"] = [&] {
    for (const HWND each : linked_) Post(each, WM_DDE_ACK, PackDDElParam(WM_DDE_ACK, 0, kNobodysMemory));
  };
  // A window that the client does not talk to says all that the server may say.
  acts["stranger"] = [&] {
    const auto stranger = reinterpret_cast<WPARAM>(stranger_.Get());
    PostValue(stranger_.Get(), {"cmd|hangup"});
    for (const HWND client : linked_) {
      PostMessageA(client, WM_DDE_ACK, stranger, PackDDElParam(WM_DDE_ACK, 0, GlobalAddAtomA(kItem)));
      PostMessageA(client, WM_DDE_TERMINATE, stranger, 0);
    }
  };
  // A window on a thread of its own that does not answer the question of the link, and takes its time for it, until
  // this program ends.
  acts["bystander"] = [&] {
    std::latch there(1);
    std::thread([&] {
      Server bystander({[](const std::string&) {}, [](std::string_view) {}});
      bystander.Misbehave("busy-at-link", detail);
      bystander.Misbehave("offline", "1");
      there.count_down();
      for (MSG message; GetMessageA(&message, nullptr, 0, 0) > 0;) DispatchMessageA(&message);
    }).detach();
    there.wait();
  };
  acts["vanish"] = [&] { window_.Reset(); };
  if (const auto habit = habits_.find(how); habit != habits_.end()) {
    habit->second = amount;
  } else if (const auto value = values.find(how); value != values.end()) {
    PostValue(window_.Get(), value->second);
  } else {
    acts.at(how)();
  }
}

}  // namespace fonklav::suite
