#include "sim/suite/MessageServer.h"

#include <dde.h>

#include <cstdlib>
#include <future>
#include <map>
#include <utility>

// All that no good server does.
namespace fonklav::suite {

namespace {

constexpr const char* kBystanderClass = "suite bystander";
constexpr UINT_PTR kNobodysMemory = 0x12340;  ///< too large to be taken for an atom

/// A window that has nothing to do with the link and takes its time for whatever it is asked.
LRESULT CALLBACK BystanderProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_DDE_INITIATE) Sleep(static_cast<DWORD>(GetWindowLongPtrA(window, GWLP_USERDATA)));
  return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

void MessageServer::StandBy(const std::stop_token& stop, unsigned milliseconds, std::promise<void> ready) {
  const HWND window = MakeWindow(kBystanderClass, &BystanderProc);
  SetWindowLongPtrA(window, GWLP_USERDATA, static_cast<LONG_PTR>(milliseconds));
  ready.set_value();
  while (!stop.stop_requested()) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != FALSE;) DispatchMessageA(&message);
  }
  DestroyWindow(window);
}

bool MessageServer::Misbehave(std::string_view how, const std::string& detail) {
  const auto amount = static_cast<unsigned>(std::strtoul(detail.c_str(), nullptr, 10));
  unsigned* const number = NumberOf(how);
  if (number != nullptr) *number = amount;
  return number != nullptr || PostOddValue(how, detail) || ActOddly(how, amount);
}

unsigned* MessageServer::NumberOf(std::string_view how) {
  const std::map<std::string_view, unsigned*> numbers{
      {"busy-at-link", &busyAtLink_},        {"busy-at-advise", &busyAtAdvise_},  {"end-at-advise", &endAtAdvise_},
      {"second-answer", &secondAnswer_},     {"advise-answers", &advise_.copies}, {"advise-delay", &advise_.delay},
      {"execute-answers", &execute_.copies}, {"execute-delay", &execute_.delay}};
  const auto found = numbers.find(how);
  return found == numbers.end() ? nullptr : found->second;
}

bool MessageServer::PostOddValue(std::string_view how, const std::string& text) {
  const std::string whole(text.c_str(), text.size() + 1);
  const std::map<std::string_view, Value> values{{"value-without-end", {text}},
                                                 {"value-empty", {""}},
                                                 {"value-asking", {whole, CF_TEXT, true}},
                                                 {"value-no-text", {whole, CF_UNICODETEXT}},
                                                 {"value-no-text-asking", {whole, CF_UNICODETEXT, true}},
                                                 {"value-of-another-item", {whole, CF_TEXT, false, "txtOther"}}};
  const auto found = values.find(how);
  if (found != values.end()) PostValue(found->second, window_);
  return found != values.end();
}

bool MessageServer::ActOddly(std::string_view how, unsigned amount) {
  if (how == "bystander") {
    std::promise<void> ready;
    const auto there = ready.get_future();
    bystanders_.emplace_back(&StandBy, amount, std::move(ready));
    there.wait();
  } else if (how == "values") {
    for (unsigned number = 0; number < amount; ++number) PostValue({"frob " + std::to_string(number)}, window_);
  } else if (how == "value-of-size") {
    PostValue({std::string(amount, 'x')}, window_);
  } else if (how == "value-without-memory") {
    Post(WM_DDE_DATA, PackDDElParam(WM_DDE_DATA, 0, GlobalAddAtomA(kItem)));
  } else if (how == "stray-answer") {
    AnswerAs({}, Answer::Refuse, kNobodysMemory);
  } else if (how == "stranger") {
    StrangerSpeaks();
  } else if (how == "vanish") {
    DestroyWindow(std::exchange(window_, nullptr));
  } else {
    return false;
  }
  return true;
}

/// A window that the client does not talk to says all that the server may say.
void MessageServer::StrangerSpeaks() const {
  const auto stranger = reinterpret_cast<WPARAM>(stranger_);
  PostValue({"cmd|hangup"}, stranger_);
  PostMessageA(client_, WM_DDE_ACK, stranger, PackDDElParam(WM_DDE_ACK, 0, GlobalAddAtomA(kItem)));
  PostMessageA(client_, WM_DDE_TERMINATE, stranger, 0);
}

}  // namespace fonklav::suite
