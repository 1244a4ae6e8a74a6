#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>

#include "tests/app/BareDialer.h"

// Ports that do next to nothing, so that what is measured is the program.
namespace fonklav::bench {

inline void Check(bool done) {
  if (!done) throw RunTimeError(ErrorNumber::DeviceIOError);
}

struct CheapCodePage : CodePage {
  [[nodiscard]] std::string ToText(std::string_view bytes) const override { return std::string(bytes); }
  [[nodiscard]] std::string ToBytes(std::string_view text) const override { return std::string(text); }
};

/// Every file is there, empty, and takes everything.
struct NoDisk : test::FakeFileSystem {
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesA(const std::string&) const override { return 0x20; }
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string&) override { return std::make_unique<FileLock>(); }
  [[nodiscard]] std::string Read(const std::string&) const override { return {}; }
  [[nodiscard]] std::uint64_t Length(const std::string&) const override { return 0; }
  void Append(const std::string&, std::string_view) override {}
};

/// One real file, whatever name is asked for, by the calls that the Windows adapter makes; or a full disk.
struct OneFile : NoDisk {
  OneFile() { Put(kPath, O_TRUNC, {}); }
  [[nodiscard]] std::optional<std::uint32_t> GetAttributesA(const std::string& path) const override {
    return Length(path), 0x20;
  }
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
  explicit CheapTelephony(std::int64_t devices)
      : LineSimulator(Scenario::Parse("location country=49 city=30 local=0\nrepeat " + std::to_string(devices) +
                                      " device name=ISDN-Line{n} version=0x00020000")) {}
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
    registration = app;
    const auto ask = [&] { LineSimulator::lineGetDevCaps(app, device, version, extension, out); };
    return FromMemory(capabilities_[device], out, ask);
  }

  HLINEAPP registration{0};  ///< who last asked for capabilities
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

/// A dialer, not yet started, whose ports in a call's way are the cheap ones.
struct CheapSystem : test::BareDialer {
  explicit CheapSystem(const std::string& switches, std::int64_t devices = 1, FileSystem* disk = nullptr)
      : BareDialer({}), driver(devices) {
    Switch(switches);
    ports.codePage = bytes;
    ports.files = disk != nullptr ? *disk : noDisk;
    ports.telephony = driver;
    dde.remembers = view.remembers = false;
  }

  CheapCodePage bytes;
  NoDisk noDisk;
  CheapTelephony driver;
};

/// It is linked and has its line.
struct CheapDialer : CheapSystem {
  explicit CheapDialer(const std::string& switches, std::int64_t devices = 1) : CheapSystem(switches, devices) {
    StoreLine("ISDN-Line1");
    Check(Start("/run"));
  }
  ~CheapDialer() { program.reset(); }
  void Dial() {
    const int before = driver.requests;
    Command("cmd|call|0301234567");
    Check(driver.requests == before + 1);
  }
  /// The call ends, the reports are acknowledged, and the main program clears the item.
  void HangUp() {
    driver.InjectMessage({1, LINE_REPLY, driver.instance, static_cast<std::uintptr_t>(driver.requests)});
    driver.InjectMessage({1, LINE_CALLSTATE, driver.instance, LINECALLSTATE_IDLE});
    driver.Advance({});
    dde.DeliverAcks();
    Command("");
  }
};

}  // namespace fonklav::bench
