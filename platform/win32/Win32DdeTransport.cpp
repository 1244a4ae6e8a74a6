#include "platform/win32/Win32DdeTransport.h"

#include <dde.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "platform/DdeValue.h"
#include "util/CaseFold.h"

namespace fonklav {
namespace {

constexpr const char* kClassName = "FonklavTAPI.Link";
// A partner that is killed says nothing, so it has to be looked at now and then.
constexpr UINT_PTR kTick = 1;             ///< the number of the window's timer
constexpr UINT kTickTime = 250;           ///< milliseconds
constexpr UINT kIdleTickTime = 1700;      ///< as rarely as still shows within 2 seconds that the partner has gone
constexpr ULONGLONG kFarewellTime = 500;  ///< for the partner to answer our end, in milliseconds

// Posted to our own window. Of the messages that come from a server, the answer to WM_DDE_INITIATE alone is sent and
// not posted: what follows from it must not run while the server waits for its SendMessage to return.
constexpr UINT kDealtWithMessage = WM_APP;     ///< a window has dealt with the question
constexpr UINT kAnsweredMessage = WM_APP + 1;  ///< there is a partner

static_assert(offsetof(DDEDATA, Value) == sizeof(DdeValue::flags) + sizeof(DdeValue::format));
static_assert(DdeValue::kText == CF_TEXT);

/// The SENDASYNCPROC of the question. The system calls it while this thread looks for messages, whenever the asked
/// window gets round to it. It carries the number of our window and no pointer, because all may have gone by then.
void CALLBACK DealtWith(HWND /*asked*/, UINT /*message*/, ULONG_PTR link, LRESULT /*result*/) {
  PostMessageA(reinterpret_cast<HWND>(link), kDealtWithMessage, 0, 0);
}

UniqueAtom Atom(std::string_view name) { return UniqueAtom{GlobalAddAtomA(std::string(name).c_str())}; }

/// What an atom stands for, empty when it stands for nothing any more. Atoms are told apart by it: the number of one
/// says nothing once our own atom of that name has been deleted.
std::string NameOfAtom(ATOM atom) {
  std::array<char, 256> text{};  // no atom's name is longer
  return {text.data(), GlobalGetAtomNameA(atom, text.data(), static_cast<int>(text.size()))};
}

/// Memory that DDE may hand to another process. It is movable because DDE passes a handle, which each side locks to see
/// the bytes. The rest behind `size` is zeros.
UniqueMemory Share(const void* bytes, std::size_t size, std::size_t allocated) {
  UniqueMemory memory{GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE | GMEM_ZEROINIT, allocated)};
  void* const target = memory ? GlobalLock(memory.Get()) : nullptr;
  if (target == nullptr) return {};
  if (size != 0) std::memcpy(target, bytes, size);
  GlobalUnlock(memory.Get());
  return memory;
}

std::optional<DdeValue> ReadValue(HGLOBAL memory) {
  const auto* const data = static_cast<const std::byte*>(GlobalLock(memory));
  if (data == nullptr) return std::nullopt;
  auto value = DdeValue::Read({data, GlobalSize(memory)});
  GlobalUnlock(memory);
  return value;
}

}  // namespace

Win32DdeTransport::~Win32DdeTransport() {
  // WM_DDE_TERMINATE is answered by the same, and a window should not go before the answer has come. Only DDE messages
  // are dispatched meanwhile: what would handle the others has gone already.
  const ULONGLONG begin = GetTickCount64();
  while (ended_ && !partnerEnded_ && PartnerAlive() && GetTickCount64() - begin < kFarewellTime) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    for (MSG message{}; PeekMessageA(&message, window_.Get(), WM_DDE_FIRST, WM_DDE_LAST, PM_REMOVE) != FALSE;) {
      DispatchMessageA(&message);
    }
  }
  // What still arrives from here on finds nobody.
  if (window_) SetWindowLongPtrA(window_.Get(), GWLP_USERDATA, 0);
}

bool Win32DdeTransport::MakeWindow() {
  if (window_) return true;
  WNDCLASSEXA windowClass{};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = &WindowProc;
  windowClass.hInstance = instance_;
  windowClass.lpszClassName = kClassName;
  RegisterClassExA(&windowClass);  // a second registration of the same class is refused, and not needed
  window_.Reset(CreateWindowExA(0, kClassName, "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, instance_, nullptr));
  if (!window_) return false;
  SetWindowLongPtrA(window_.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  return true;
}

LRESULT CALLBACK Win32DdeTransport::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  try {
    auto* const transport = reinterpret_cast<Win32DdeTransport*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (transport != nullptr && transport->OnMessage(message, wParam, lParam)) return 0;
  } catch (...) {
    // Nothing may be thrown through the system's code. What throws here is want of memory; the message counts as lost.
    return 0;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

bool Win32DdeTransport::Ask(std::string_view application, std::string_view topic, DdeSink& sink) {
  application_ = application;
  topic_ = topic;
  applicationAtom_ = Atom(application);
  topicAtom_ = Atom(topic);
  if (!applicationAtom_ || !topicAtom_ || !MakeWindow()) return false;
  sink_ = &sink;
  // EnumWindows lists the top-level windows, which a broadcast would reach as well.
  toDealWith_ = 1;  // this function itself: nobody has declined before everybody was asked
  EnumWindows(&AskWindow, reinterpret_cast<LPARAM>(this));
  SetTimer(window_.Get(), kTick, kTickTime, nullptr);
  return PostMessageA(window_.Get(), kDealtWithMessage, 0, 0) != FALSE;
}

BOOL CALLBACK Win32DdeTransport::AskWindow(HWND window, LPARAM transport) {
  auto& self = *reinterpret_cast<Win32DdeTransport*>(transport);
  // Our own windows are no servers, and SendMessageCallback calls a window of its own thread like SendMessage.
  if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId()) return TRUE;
  const HWND link = self.window_.Get();
  const LPARAM atoms = MAKELPARAM(self.applicationAtom_.Get(), self.topicAtom_.Get());
  // WM_DDE_INITIATE has to be sent, and a SendMessage, to HWND_BROADCAST above all, would wait for a program that is
  // busy, and without end for one that hangs. This one returns at once.
  if (SendMessageCallbackA(window, WM_DDE_INITIATE, reinterpret_cast<WPARAM>(link), atoms, &DealtWith,
                           reinterpret_cast<ULONG_PTR>(link)) != FALSE) {
    ++self.toDealWith_;
  }
  return TRUE;
}

bool Win32DdeTransport::PostAdvise(std::string_view item) {
  DDEADVISE options{};
  options.cfFormat = CF_TEXT;  // and not deferred: the value itself comes with each change
  item_ = item;
  adviseOptions_ = Share(&options, sizeof options, sizeof options);
  adviseItem_ = Atom(item);
  if (!adviseOptions_ || !adviseItem_) return false;
  // One lParam holds a handle and an atom. What PackDDElParam allocates for that is the receiver's to free, once there
  // is a receiver.
  const LPARAM packed =
      PackDDElParam(WM_DDE_ADVISE, reinterpret_cast<UINT_PTR>(adviseOptions_.Get()), adviseItem_.Get());
  if (PostToPartner(WM_DDE_ADVISE, packed)) return true;
  FreeDDElParam(WM_DDE_ADVISE, packed);
  return false;
}

DdeExecute Win32DdeTransport::PostExecute(std::string_view bytes) {
  UniqueMemory text = Share(bytes.data(), bytes.size(), bytes.size() + 1);  // the terminating zero is sent as well
  if (!text) return 0;
  // Put away first, as that may fail for want of memory: once the message is on its way its memory must not get lost.
  // The lParam of WM_DDE_EXECUTE is the handle alone, not packed.
  posted_.push_back({lastExecute_ + 1, std::move(text)});
  if (!PostToPartner(WM_DDE_EXECUTE, reinterpret_cast<LPARAM>(posted_.back().memory.Get()))) {
    posted_.pop_back();
    return 0;
  }
  return ++lastExecute_;
}

void Win32DdeTransport::End() noexcept {
  if (Talking()) PostMessageA(partner_, WM_DDE_TERMINATE, reinterpret_cast<WPARAM>(window_.Get()), 0);
  KillTimer(window_.Get(), kTick);
  ended_ = true;
  sink_ = nullptr;
  posted_.clear();
  adviseOptions_.Reset();
  adviseItem_.Reset();
  applicationAtom_.Reset();
  topicAtom_.Reset();
}

bool Win32DdeTransport::PartnerAlive() const {
  // The number of a window that has gone may be given to another one.
  return partner_ != nullptr && GetWindowThreadProcessId(partner_, nullptr) == partnerThread_;
}

bool Win32DdeTransport::PostToPartner(UINT message, LPARAM lParam) const {
  return Talking() && PostMessageA(partner_, message, reinterpret_cast<WPARAM>(window_.Get()), lParam) != FALSE;
}

bool Win32DdeTransport::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_TIMER) {
    const UINT wanted = sink_ != nullptr && !sink_->OnTick() ? kIdleTickTime : kTickTime;
    // Not where the sink has ended the conversation, and with it the ticks.
    if (sink_ != nullptr && wanted != tickTime_) SetTimer(window_.Get(), kTick, tickTime_ = wanted, nullptr);
  } else if (message == kDealtWithMessage) {
    OnDealtWith();
  } else if (message == kAnsweredMessage) {
    if (sink_ != nullptr) sink_->OnAnswer();
  } else if (message < WM_DDE_FIRST || message > WM_DDE_LAST) {
    return false;
  } else if (const HWND sender = reinterpret_cast<HWND>(wParam); partner_ == nullptr || sender != partner_) {
    // The answer to the question is the one message that anybody may send. Its lParam is two atoms, not packed.
    if (message == WM_DDE_ACK) OnInitiateAnswer(sender, lParam);
  } else {
    if (message == WM_DDE_ACK) OnAck(lParam);
    if (message == WM_DDE_DATA) OnData(lParam);
    if (message == WM_DDE_TERMINATE) OnTerminate();
  }
  return true;
}

void Win32DdeTransport::OnDealtWith() {
  if (toDealWith_ == 0 || --toDealWith_ != 0) return;
  applicationAtom_.Reset();
  topicAtom_.Reset();
  if (partner_ == nullptr && sink_ != nullptr) sink_->OnNobody();
}

void Win32DdeTransport::OnInitiateAnswer(HWND server, LPARAM atoms) {
  if (!EqualsIgnoringCase(NameOfAtom(LOWORD(atoms)), application_) ||
      !EqualsIgnoringCase(NameOfAtom(HIWORD(atoms)), topic_))
    return;
  // The server has made these two for its answer; the client deletes them.
  const UniqueAtom application{LOWORD(atoms)};
  const UniqueAtom topic{HIWORD(atoms)};
  if (partner_ == nullptr && sink_ != nullptr) {
    partner_ = server;
    partnerThread_ = GetWindowThreadProcessId(server, nullptr);
    PostMessageA(window_.Get(), kAnsweredMessage, 0, 0);
  } else {
    PostMessageA(server, WM_DDE_TERMINATE, reinterpret_cast<WPARAM>(window_.Get()), 0);
  }
}

void Win32DdeTransport::OnAck(LPARAM lParam) {
  UINT_PTR status = 0;
  UINT_PTR what = 0;
  if (UnpackDDElParam(WM_DDE_ACK, lParam, &status, &what) == FALSE) return;
  FreeDDElParam(WM_DDE_ACK, lParam);
  if (adviseItem_ && what == adviseItem_.Get()) {
    OnAdviseAck(static_cast<std::uint16_t>(status));
  } else {
    OnExecuteAck(reinterpret_cast<HGLOBAL>(what), static_cast<std::uint16_t>(status));
  }
}

void Win32DdeTransport::OnAdviseAck(std::uint16_t status) {
  // The item's atom has come back. The options belong to the server from the moment that it accepts them.
  if ((status & kDdeAckPositive) != 0) static_cast<void>(adviseOptions_.Release());
  adviseOptions_.Reset();
  adviseItem_.Reset();
  if (sink_ != nullptr) sink_->OnAdviseAck(status);
}

void Win32DdeTransport::OnExecuteAck(HGLOBAL memory, std::uint16_t status) {
  // The answer brings back the handle that was posted. Only now the memory may go: the server has read it in place.
  const auto found = std::ranges::find_if(posted_, [&](const Posted& posted) { return posted.memory.Get() == memory; });
  if (found == posted_.end()) return;
  const DdeExecute execute = found->execute;
  posted_.erase(found);
  if (sink_ != nullptr) sink_->OnExecuteAck(execute, status);
}

void Win32DdeTransport::OnData(LPARAM lParam) {
  UINT_PTR memory = 0;
  UINT_PTR item = 0;
  if (UnpackDDElParam(WM_DDE_DATA, lParam, &memory, &item) == FALSE) return;
  auto value = ReadValue(reinterpret_cast<HGLOBAL>(memory));
  // A server with several clients may post all of them the same atom. The first client deletes it, and the next finds
  // that it has no name any more. The value is good all the same.
  const std::string named = NameOfAtom(static_cast<ATOM>(item));
  const bool accepted = value && value->IsText() && (named.empty() || EqualsIgnoringCase(named, item_));
  const bool answer = value && value->WantsAnswer();
  // With fRelease the memory is the receiver's to free, unless the receiver declines the value.
  const bool ours = value && value->ToBeReleased() && (accepted || !answer);
  if (answer) {
    AnswerData(lParam, item, accepted);
  } else {
    FreeDDElParam(WM_DDE_DATA, lParam);
    GlobalDeleteAtom(static_cast<ATOM>(item));
  }
  if (ours) GlobalFree(reinterpret_cast<HGLOBAL>(memory));
  if (accepted && sink_ != nullptr) sink_->OnData(std::move(value->bytes));
}

void Win32DdeTransport::AnswerData(LPARAM lParam, UINT_PTR item, bool accepted) {
  // The item's atom goes back with the answer and is the server's to delete. ReuseDDElParam makes the answer's lParam
  // out of the one that came, which needs no freeing then.
  const LPARAM answer = ReuseDDElParam(lParam, WM_DDE_DATA, WM_DDE_ACK, accepted ? kDdeAckPositive : 0, item);
  if (PostToPartner(WM_DDE_ACK, answer)) return;
  FreeDDElParam(WM_DDE_ACK, answer);
  GlobalDeleteAtom(static_cast<ATOM>(item));
}

void Win32DdeTransport::OnTerminate() {
  partnerEnded_ = true;
  if (sink_ != nullptr) sink_->OnTerminate();
}

}  // namespace fonklav
