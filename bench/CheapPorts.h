#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>

#include "app/Program.h"
#include "tests/fakes/FakeSystem.h"

// Ports that do next to nothing, so that what is measured is the program.
namespace fonklav::bench {

inline constexpr const char* kNumber = "0301234567";

struct CheapCodePage : CodePage {
  [[nodiscard]] std::string ToText(std::string_view bytes) const override { return std::string(bytes); }
  [[nodiscard]] std::string ToBytes(std::string_view text) const override { return std::string(text); }
};

struct CheapDde : test::FakeDdeTransport {
  DdeExecute PostExecute(std::string_view) override { return ++last; }
  DdeExecute last{0};
};

/// Every file is there, empty, and takes everything.
struct NoDisk : FileSystem {
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesA(const std::string&) const override { return 0x20; }
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesW(const std::string&) const override { return 0x20; }
  bool DeleteA(const std::string&) override { return true; }
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string&) override { return std::make_unique<FileLock>(); }
  [[nodiscard]] std::string Read(const std::string&) const override { return {}; }
  [[nodiscard]] std::uint64_t Length(const std::string&) const override { return 0; }
  void Write(const std::string&, std::string_view) override {}
  void Append(const std::string&, std::string_view) override {
    if (full) throw RunTimeError(ErrorNumber::DiskFull);
  }
  void Replace(const std::string&, std::string_view) override {}
  bool full{false};
};

/// One real file, whatever name is asked for, by the calls that the Windows adapter makes.
struct OneFile : NoDisk {
  OneFile() { Put(kPath, O_TRUNC, {}); }
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesA(const std::string&) const override {
    struct stat status {};
    return stat(kPath, &status) == 0 ? std::optional<std::uint32_t>(0x20) : std::nullopt;
  }
  [[nodiscard]] std::string Read(const std::string& path) const override {
    std::string bytes(Length(path), '\0');
    const int file = open(kPath, O_RDONLY | O_CLOEXEC);
    Check(read(file, bytes.data(), bytes.size()) >= 0);
    close(file);
    return bytes;
  }
  [[nodiscard]] std::uint64_t Length(const std::string&) const override {
    struct stat status {};
    return stat(kPath, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
  }
  void Append(const std::string& path, std::string_view bytes) override {
    NoDisk::Append(path, bytes);
    Put(kPath, O_APPEND, bytes);
  }
  void Replace(const std::string&, std::string_view bytes) override {
    Put("bench.new", O_TRUNC, bytes);
    Check(rename("bench.new", kPath) == 0);
  }
  static void Put(const char* path, int how, std::string_view bytes) {
    const int file = open(path, O_WRONLY | O_CREAT | O_CLOEXEC | how, 0644);
    Check(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    close(file);
  }
  static void Check(bool done) {
    if (!done) throw RunTimeError(ErrorNumber::DeviceIOError);
  }
  static constexpr const char* kPath = "bench.log";
};

/// Telephony that knows its answers by heart: the simulator's, from the first time that it was asked.
struct CheapTelephony : LineSimulator {
  using LineSimulator::LineSimulator;
  std::int32_t lineInitializeEx(HLINEAPP& app, LineMessageSink& to, const char* name, std::uint32_t& count,
                                std::uint32_t& version, LINEINITIALIZEEXPARAMS& params) override {
    sink = &to;
    return LineSimulator::lineInitializeEx(app, to, name, count, version, params);
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
                                    std::uint32_t card, std::uint32_t options, std::span<std::byte> output) override {
    const auto ask = [&] {
      return LineSimulator::lineTranslateAddress(app, device, version, address, card, options, output);
    };
    return FromMemory(translated_, output, ask);
  }
  std::int32_t lineGetDevCaps(HLINEAPP app, std::uint32_t device, std::uint32_t version, std::uint32_t extension,
                              std::span<std::byte> caps) override {
    const auto ask = [&] { return LineSimulator::lineGetDevCaps(app, device, version, extension, caps); };
    return FromMemory(capabilities_[device], caps, ask);
  }
  void EndCall() {
    sink->LineCallBackProc(1, LINE_REPLY, instance, static_cast<std::uintptr_t>(requests), 0, 0);
    sink->LineCallBackProc(1, LINE_CALLSTATE, instance, LINECALLSTATE_IDLE, 0, 0);
  }

  LineMessageSink* sink{nullptr};
  std::uintptr_t instance{0};
  std::int32_t requests{0};

 private:
  /// Copies no more than a driver would write.
  template <typename Ask>
  static std::int32_t FromMemory(std::vector<std::byte>& memory, std::span<std::byte> buffer, const Ask& ask) {
    if (memory.empty()) {
      const std::int32_t result = ask();
      std::uint32_t used = 0;
      std::memcpy(&used, buffer.data() + 2 * sizeof used, sizeof used);
      memory.assign(buffer.begin(), buffer.begin() + used);
      return result;
    }
    std::ranges::copy(memory, buffer.begin());
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

/// A fake computer whose ports in a call's way are the cheap ones.
struct CheapSystem : test::FakeSystem {
  explicit CheapSystem(const std::string& scenario, const std::string& switches = {})
      : telephony(Scenario::Parse(scenario)) {
    Switch(switches);
    clock.now = {2026, 3, 7, 9, 5, 31};
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
  NoDisk disk;
  CheapTelephony telephony;
};

inline std::string Devices(std::int64_t count) {
  std::string scenario = "location country=49 city=30 local=0\n";
  for (std::int64_t device = 1; device <= count; ++device) {
    scenario += "device name=ISDN-Line" + std::to_string(device) + " provider=\"Simulated ISDN service\" version=0x00020000\n";
  }
  return scenario;
}

/// A dialer on them, linked and with its line.
struct CheapDialer : CheapSystem {
  CheapDialer(const std::string& scenario, const std::string& switches) : CheapSystem(scenario, switches) {
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
    dde.Sink().OnData(std::string("cmd|call|") + kNumber);
    if (telephony.requests != before + 1) throw std::runtime_error("nothing was dialed");
  }
  /// The call ends, the reports are acknowledged, and the main program clears the item.
  void HangUp() {
    telephony.EndCall();
    for (; acknowledged < dde.last; ++acknowledged) dde.Sink().OnExecuteAck(acknowledged + 1, kDdeAckPositive);
    dde.Sink().OnData("");
  }

  CheapView view;
  Program program{CheapPorts()};
  DdeExecute acknowledged{0};
};

}  // namespace fonklav::bench
