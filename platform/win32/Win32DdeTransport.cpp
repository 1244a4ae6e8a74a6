#include "platform/win32/Win32DdeTransport.h"

#include <dde.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace fonklav {
namespace {

constexpr const char* kClassName = "FonklavTAPI.Link";
constexpr UINT kAnswerTime = 1000;        ///< for one window to answer the initiate, in milliseconds
constexpr ULONGLONG kFarewellTime = 500;  ///< for the partner to answer our end

/// What the initiate goes out with. The atoms stay ours and are deleted afterwards.
struct Call {
  HWND client;
  LPARAM atoms;
  const HWND& partner;                 ///< set by the answer, which comes while the message is being sent
  std::vector<DWORD> silentThreads{};  ///< their windows would not answer either
};

BOOL CALLBACK SendInitiate(HWND window, LPARAM data) {
  auto& [client, atoms, partner, silentThreads] = *reinterpret_cast<Call*>(data);
  const DWORD thread = GetWindowThreadProcessId(window, nullptr);
  if (window == client || std::ranges::find(silentThreads, thread) != silentThreads.end()) return TRUE;
  // One window at a time and never waiting for one that hangs: a broadcast would wait for all of them.
  DWORD_PTR ignored = 0;
  const LRESULT answered = SendMessageTimeoutA(window, WM_DDE_INITIATE, reinterpret_cast<WPARAM>(client), atoms,
                                               SMTO_ABORTIFHUNG, kAnswerTime, &ignored);
  if (answered == 0) silentThreads.push_back(thread);
  return partner == nullptr ? TRUE : FALSE;
}

UniqueAtom Atom(std::string_view name) { return UniqueAtom{GlobalAddAtomA(std::string(name).c_str())}; }

/// Memory that DDE may hand to another process.
UniqueMemory Share(const void* bytes, std::size_t size, std::size_t allocated) {
  UniqueMemory memory{GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE | GMEM_ZEROINIT, allocated)};
  void* const target = memory ? GlobalLock(memory.Get()) : nullptr;
  if (target == nullptr) return {};
  if (size != 0) std::memcpy(target, bytes, size);
  GlobalUnlock(memory.Get());
  return memory;
}

}  // namespace

/// What a data message carried.
struct Win32DdeTransport::Value {
  bool isText{false};
  bool release{false};
  bool answer{false};
  std::string bytes;

  /// Copies it out of the partner's memory, which may be shorter than its head and need not end in a zero.
  static std::optional<Value> Read(HGLOBAL memory) {
    constexpr std::size_t head = offsetof(DDEDATA, Value);
    const std::size_t size = GlobalSize(memory);
    const auto* const data = static_cast<const char*>(size < head ? nullptr : GlobalLock(memory));
    if (data == nullptr) return std::nullopt;
    DDEDATA flags{};
    std::memcpy(&flags, data, head);
    const char* const end = std::find(data + head, data + size, '\0');
    Value value{flags.cfFormat == CF_TEXT, flags.fRelease != 0, flags.fAckReq != 0, {data + head, end}};
    GlobalUnlock(memory);
    return value;
  }
};

Win32DdeTransport::~Win32DdeTransport() {
  const ULONGLONG begin = GetTickCount64();
  while (terminated_ && !partnerEnded_ && PartnerAlive() && GetTickCount64() - begin < kFarewellTime) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    for (MSG message{}; PeekMessageA(&message, window_.Get(), WM_DDE_FIRST, WM_DDE_LAST, PM_REMOVE) != FALSE;) {
      DispatchMessageA(&message);
    }
  }
}

bool Win32DdeTransport::Initiate(std::string_view application, std::string_view topic, DdeSink& sink) {
  const UniqueAtom applicationAtom = Atom(application);
  const UniqueAtom topicAtom = Atom(topic);
  if (!applicationAtom || !topicAtom || !window_.Create(kClassName, instance_, *this)) return false;
  partner_ = nullptr;
  terminated_ = partnerEnded_ = false;
  initiating_ = true;
  Call call{window_.Get(), MAKELPARAM(applicationAtom.Get(), topicAtom.Get()), partner_};
  EnumWindows(&SendInitiate, reinterpret_cast<LPARAM>(&call));
  initiating_ = false;
  if (partner_ == nullptr) return false;
  sink_ = &sink;
  return true;
}

bool Win32DdeTransport::PostAdvise(std::string_view item) {
  DDEADVISE options{};
  options.cfFormat = CF_TEXT;  // and not deferred: the value itself comes with each change
  adviseOptions_ = Share(&options, sizeof options, sizeof options);
  adviseItem_ = Atom(item);
  if (!adviseOptions_ || !adviseItem_) return false;
  const LPARAM packed =
      PackDDElParam(WM_DDE_ADVISE, reinterpret_cast<UINT_PTR>(adviseOptions_.Get()), adviseItem_.Get());
  if (PostToPartner(WM_DDE_ADVISE, packed)) return true;
  FreeDDElParam(WM_DDE_ADVISE, packed);
  return false;
}

DdeTransport::Block Win32DdeTransport::PostExecute(std::string_view bytes) {
  UniqueMemory text = Share(bytes.data(), bytes.size(), bytes.size() + 1);  // the terminating zero is sent as well
  if (!text || !PostToPartner(WM_DDE_EXECUTE, reinterpret_cast<LPARAM>(text.Get()))) return 0;
  return reinterpret_cast<Block>(text.Release());
}

void Win32DdeTransport::Free(Block block) noexcept { MemoryHandle::Close(reinterpret_cast<HGLOBAL>(block)); }

void Win32DdeTransport::PostTerminate() noexcept {
  if (!Talking()) return;
  sink_ = nullptr;  // whatever still arrives is of no interest, and whoever listened may go
  PostMessageA(partner_, WM_DDE_TERMINATE, reinterpret_cast<WPARAM>(window_.Get()), 0);
  terminated_ = true;
}

bool Win32DdeTransport::PartnerAlive() const {
  // The number of a window that has gone may be given to another one.
  return partner_ != nullptr && GetWindowThreadProcessId(partner_, nullptr) == partnerThread_;
}

bool Win32DdeTransport::PostToPartner(UINT message, LPARAM lParam) const {
  return Talking() && PostMessageA(partner_, message, reinterpret_cast<WPARAM>(window_.Get()), lParam) != FALSE;
}

std::optional<LRESULT> Win32DdeTransport::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message < WM_DDE_FIRST || message > WM_DDE_LAST) return std::nullopt;
  const HWND sender = reinterpret_cast<HWND>(wParam);
  // An answer to the initiate is the one message that is sent and not posted, and its lParam is not packed.
  if (message == WM_DDE_ACK && (initiating_ || InSendMessage() != FALSE)) {
    OnInitiateAnswer(sender, lParam);
  } else if (sender == partner_ && partner_ != nullptr) {
    if (message == WM_DDE_ACK) OnAck(lParam);
    if (message == WM_DDE_DATA) OnData(lParam);
    if (message == WM_DDE_TERMINATE) OnTerminate();
  }
  return 0;
}

void Win32DdeTransport::OnInitiateAnswer(HWND server, LPARAM atoms) {
  const UniqueAtom application{LOWORD(atoms)};
  const UniqueAtom topic{HIWORD(atoms)};
  if (initiating_ && partner_ == nullptr) {
    partner_ = server;
    partnerThread_ = GetWindowThreadProcessId(server, nullptr);
  } else if (server != partner_) {
    PostMessageA(server, WM_DDE_TERMINATE, reinterpret_cast<WPARAM>(window_.Get()), 0);
  }
}

void Win32DdeTransport::OnAck(LPARAM lParam) {
  UINT_PTR status = 0;
  UINT_PTR what = 0;
  if (UnpackDDElParam(WM_DDE_ACK, lParam, &status, &what) == FALSE) return;
  FreeDDElParam(WM_DDE_ACK, lParam);
  if (adviseItem_ && what == adviseItem_.Get()) {
    // The item's atom has come back. The options belong to the server from the moment that it accepts them.
    if ((status & kDdeAckPositive) != 0) static_cast<void>(adviseOptions_.Release());
    adviseOptions_.Reset();
    adviseItem_.Reset();
  }
  if (sink_ != nullptr) sink_->OnAck(static_cast<std::uint16_t>(status), what);
}

void Win32DdeTransport::OnData(LPARAM lParam) {
  UINT_PTR memory = 0;
  UINT_PTR item = 0;
  if (UnpackDDElParam(WM_DDE_DATA, lParam, &memory, &item) == FALSE) return;
  auto value = Value::Read(reinterpret_cast<HGLOBAL>(memory));
  const bool accepted = value && value->isText;
  const bool answer = value && value->answer;
  const bool ours = value && value->release && (accepted || !answer);
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
  // The item's atom goes back with the answer and is the server's to delete.
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
