#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <stdexcept>

#include "app/Program.h"
#include "tests/fakes/FakeSystem.h"

// Ports that do next to nothing, so that what is measured is the program.
namespace fonklav::bench {

inline void Check(bool done) {
  if (!done) throw RunTimeError(ErrorNumber::DeviceIOError);
}

struct CheapCodePage : CodePage {
  [[nodiscard]] std::string ToText(std::string_view bytes) const override { return std::string(bytes); }
  [[nodiscard]] std::string ToBytes(std::string_view text) const override { return std::string(text); }
};

struct CheapDde : test::FakeDdeTransport {
  DdeExecute PostExecute(std::string_view) override { return ++posts; }
  DdeExecute posts{0};
};

/// Every file is there, empty, and takes everything.
struct NoDisk : FileSystem {
  using Facts = std::optional<std::uint32_t>;
  [[nodiscard]] Facts GetAttributesA(const std::string&) const override { return 0x20; }
  [[nodiscard]] Facts GetAttributesW(const std::string& path) const override { return GetAttributesA(path); }
  bool DeleteA(const std::string&) override { return true; }
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string&) override { return std::make_unique<FileLock>(); }
  [[nodiscard]] std::string Read(const std::string&) const override { return {}; }
  [[nodiscard]] std::uint64_t Length(const std::string&) const override { return 0; }
  void Write(const std::string&, std::string_view) override {}
  void Append(const std::string&, std::string_view) override {}
  void Replace(const std::string&, std::string_view) override {}
};

/// One real file, whatever name is asked for, by the calls that the Windows adapter makes; or a full disk.
struct OneFile : NoDisk {
  OneFile() { Put(kPath, O_TRUNC, {}); }
  [[nodiscard]] Facts GetAttributesA(const std::string& path) const override { return Length(path), 0x20; }
  [[nodiscard]] std::uint64_t Length(const std::string&) const override {
    struct stat status {};
    Check(stat(kPath, &status) == 0);
    return static_cast<std::uint64_t>(status.st_size);
  }
  [[nodiscard]] std::string Read(const std::string& path) const override {
    std::string bytes(Length(path), '\0');
    const int file = open(kPath, O_RDONLY);
    Check(read(file, bytes.data(), bytes.size()) >= 0);
    close(file);
    return bytes;
  }
  void Append(const std::string&, std::string_view bytes) override {
    Check(!full);
    Put(kPath, O_APPEND, bytes);
  }
  void Replace(const std::string&, std::string_view bytes) override {
    Put("bench.new", O_TRUNC, bytes);
    Check(rename("bench.new", kPath) == 0);
  }
  /// How large the file was before, if that is to be looked at.
  static std::int64_t Put(const char* path, int how, std::string_view bytes, bool look = false) {
    const int file = open(path, O_WRONLY | O_CREAT | how, 0644);
    struct stat status {};
    Check((!look || fstat(file, &status) == 0) && write(file, bytes.data(), bytes.size()) >= 0);
    close(file);
    return status.st_size;
  }
  static constexpr const char* kPath = "bench.log";
  bool full{false};
};

/// Telephony that knows its answers by heart: the simulator's, from the first time that each was asked for.
struct CheapTelephony : LineSimulator {
  using LineSimulator::LineSimulator;
  std::int32_t lineInitializeEx(HLINEAPP& app, LineMessageSink& to, const char* name, std::uint32_t& count,
                                std::uint32_t& version, LINEINITIALIZEEXPARAMS& params) override {
    sink = &to;
    const auto result = LineSimulator::lineInitializeEx(app, to, name, count, version, params);
    registration = app;
    return result;
  }
  std::int32_t lineOpen(HLINEAPP, std::uint32_t, HLINE& line, std::uint32_t, std::uint32_t, std::uintptr_t number,
                        std::uint32_t, std::uint32_t) override {
    instance = number;
    line = 1;
    return 0;
  }
  std::int32_t lineClose(HLINE) override { return 0; }
  std::int32_t lineMakeCall(HLINE, HCALL& call, const char*, std::uint32_t) override {
    call = 1;
    return ++requests;
  }
  std::int32_t lineDeallocateCall(HCALL) override { return 0; }
  std::int32_t lineTranslateAddress(HLINEAPP app, std::uint32_t device, std::uint32_t version, const char* address,
                                    std::uint32_t card, std::uint32_t options, std::span<std::byte> out) override {
    const auto ask = [&] { LineSimulator::lineTranslateAddress(app, device, version, address, card, options, out); };
    return FromMemory(translated_, out, ask);
  }
  std::int32_t lineGetDevCaps(HLINEAPP app, std::uint32_t device, std::uint32_t version, std::uint32_t extension,
                              std::span<std::byte> out) override {
    const auto ask = [&] { LineSimulator::lineGetDevCaps(app, device, version, extension, out); };
    return FromMemory(capabilities_[device], out, ask);
  }

  LineMessageSink* sink{nullptr};
  HLINEAPP registration{0};
  std::uintptr_t instance{0};
  std::int32_t requests{0};

 private:
  template <typename Ask>
  static std::int32_t FromMemory(std::vector<std::byte>& memory, std::span<std::byte> out, const Ask& ask) {
    if (!memory.empty()) return std::ranges::copy(memory, out.begin()), 0;
    ask();
    std::uint32_t used = 0;
    std::memcpy(&used, out.data() + 2 * sizeof used, sizeof used);
    memory.assign(out.begin(), out.begin() + used);
    return 0;
  }

  std::vector<std::byte> translated_;
  std::map<std::uint32_t, std::vector<std::byte>> capabilities_;
};

struct CheapView : FormView {
  void ControlChanged(ControlId) override {}
  void TextAppended(ControlId, const std::string&) override {}
  void FormChanged() override {}
  void TimerChanged(TimerId) override {}
  void FocusTo(ControlId) override {}
  void ComeToFront() override {}
  void Unloaded() override {}
};

inline std::string Devices(std::int64_t count) {
  std::string scenario = "location country=49 city=30 local=0\n";
  for (std::int64_t device = 1; device <= count; ++device) {
    scenario += "device name=ISDN-Line" + std::to_string(device) + " version=0x00020000\n";
  }
  return scenario;
}

/// A fake computer whose ports in a call's way are the cheap ones.
template <typename Disk = NoDisk>
struct CheapSystem : test::FakeSystem {
  explicit CheapSystem(const std::string& switches, std::int64_t devices = 1)
      : telephony(Scenario::Parse(Devices(devices))) {
    Switch(switches);
  }
  Ports CheapPorts() {
    Ports ports = AllPorts();
    ports.codePage = codePage;
    ports.dde = dde;
    ports.files = disk;
    ports.telephony = telephony;
    return ports;
  }

  CheapCodePage codePage;
  CheapDde dde;
  Disk disk;
  CheapTelephony telephony;
};

/// A dialer on it, linked and with its line.
struct CheapDialer : CheapSystem<> {
  explicit CheapDialer(const std::string& switches, std::int64_t devices = 1) : CheapSystem(switches, devices) {
    profile.WriteString("TAPIDial", "TAPILine", "ISDN-Line1", "C:\\ProgramData\\Rufmon\\data\\sett_TAPI.ini");
    process.commandLine = "/run";
    if (!program.Load(view)) throw std::runtime_error("the dialer did not start");
    program.Input().TimerTick(TimerId::Start0);
    dde.DeliverOutcome();
    dde.Sink().OnAdviseAck(kDdeAckPositive);
    if (program.Controls().tmStart[1].Enabled()) program.Input().TimerTick(TimerId::Start1);
  }
  void Dial() {
    const int before = telephony.requests;
    dde.Sink().OnData("cmd|call|0301234567");
    if (telephony.requests != before + 1) throw std::runtime_error("nothing was dialed");
  }
  /// The call ends, the reports are acknowledged, and the main program clears the item.
  void HangUp() {
    const auto request = static_cast<std::uintptr_t>(telephony.requests);
    telephony.sink->LineCallBackProc(1, LINE_REPLY, telephony.instance, request, 0, 0);
    telephony.sink->LineCallBackProc(1, LINE_CALLSTATE, telephony.instance, LINECALLSTATE_IDLE, 0, 0);
    while (acknowledged < dde.posts) dde.Sink().OnExecuteAck(++acknowledged, kDdeAckPositive);
    dde.Sink().OnData("");
  }

  CheapView view;
  Program program{CheapPorts()};
  DdeExecute acknowledged{0};
};

}  // namespace fonklav::bench
