#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/DdeTransport.h"
#include "platform/FileSystem.h"
#include "platform/Ports.h"
#include "tests/fakes/FakeSystem.h"
#include "util/RunTimeError.h"

namespace fonklav::test {

/// Counts calls, and lets one of them fail, or all from one on.
class Faults {
 public:
  /// To be called by whatever can fail. True when it has to.
  bool Due() {
    const long call = calls_++;
    return armed_ && (call == first_ || (forever_ && call > first_));
  }
  /// The same for what fails by throwing.
  void Step() {
    if (Due()) throw RunTimeError(ErrorNumber::DeviceIOError);
  }
  /// From now on the call of this number, counted from now, fails; with `forever` all that follow, too.
  void Arm(long first, bool forever) {
    calls_ = 0;
    first_ = first;
    forever_ = forever;
    armed_ = true;
  }
  void Disarm() { armed_ = false; }
  /// Calls since Arm.
  [[nodiscard]] long Calls() const { return calls_; }

 private:
  long calls_{0};
  long first_{0};
  bool forever_{false};
  bool armed_{false};
};

/// The ports of a fake computer, each of whose operations can fail: by its failure result where it has one, by a
/// run-time error otherwise.
class FaultyPorts {
 public:
  FaultyPorts(FakeSystem& system, Faults& faults)
      : clock_(system.clock, faults),
        codePage_(system.codePage, faults),
        dde_(system.dde, faults),
        files_(system.files, faults),
        boxes_(system.boxes, faults),
        loop_(system.loop, faults),
        locale_(system.locale, faults),
        profile_(system.profile, faults),
        process_(system.process, faults),
        shell_(system.shell, faults),
        ports_(system.AllPorts()) {
    ports_.clock = clock_;
    ports_.codePage = codePage_;
    ports_.dde = dde_;
    ports_.files = files_;
    ports_.messageBoxes = boxes_;
    ports_.loop = loop_;
    ports_.numberLocale = locale_;
    ports_.profile = profile_;
    ports_.process = process_;
    ports_.shellFolders = shell_;
    system.telephony.inside = [&faults](std::string_view) { faults.Step(); };
  }
  FaultyPorts(const FaultyPorts&) = delete;
  FaultyPorts& operator=(const FaultyPorts&) = delete;

  [[nodiscard]] const Ports& All() const { return ports_; }
  /// Sees each report when it is posted.
  void OnReport(std::function<void(std::string_view)> seen) { dde_.seen = std::move(seen); }

 private:
  template <typename Port>
  struct Faulty : Port {
    Faulty(Port& port, Faults& all) : inner(port), faults(all) {}
    Port& inner;
    Faults& faults;
  };
  struct FaultyClock final : Faulty<Clock> {
    using Faulty::Faulty;
    LocalTime Now() const override { return faults.Step(), inner.Now(); }
    std::chrono::milliseconds Ticks() const override { return inner.Ticks(); }
  };
  struct FaultyCodePage final : Faulty<CodePage> {
    using Faulty::Faulty;
    std::string ToText(std::string_view bytes) const override { return faults.Step(), inner.ToText(bytes); }
    std::string ToBytes(std::string_view text) const override { return faults.Step(), inner.ToBytes(text); }
  };
  struct FaultyDde final : Faulty<DdeTransport> {
    using Faulty::Faulty;
    bool Ask(std::string_view application, std::string_view topic, DdeSink& sink) override {
      return !faults.Due() && inner.Ask(application, topic, sink);
    }
    bool PostAdvise(std::string_view item) override { return !faults.Due() && inner.PostAdvise(item); }
    DdeExecute PostExecute(std::string_view bytes) override {
      if (seen) seen(bytes);
      return faults.Due() ? 0 : inner.PostExecute(bytes);
    }
    void End() noexcept override { inner.End(); }
    bool PartnerAlive() const override { return inner.PartnerAlive(); }
    std::function<void(std::string_view)> seen;
  };
  struct FaultyFiles final : Faulty<FileSystem> {
    using Faulty::Faulty;
    std::optional<std::uint32_t> GetAttributesA(const std::string& path) const override {
      return faults.Due() ? std::nullopt : inner.GetAttributesA(path);
    }
    std::optional<std::uint32_t> GetAttributesW(const std::string& path) const override {
      return faults.Due() ? std::nullopt : inner.GetAttributesW(path);
    }
    bool DeleteA(const std::string& path) override { return !faults.Due() && inner.DeleteA(path); }
    std::unique_ptr<FileLock> Lock(const std::string& path) override {
      return faults.Due() ? nullptr : inner.Lock(path);
    }
    std::string Read(const std::string& path) const override { return faults.Step(), inner.Read(path); }
    std::uint64_t Length(const std::string& path) const override { return faults.Due() ? 0 : inner.Length(path); }
    void Write(const std::string& path, std::string_view bytes) override { faults.Step(), inner.Write(path, bytes); }
    void Append(const std::string& path, std::string_view bytes) override { faults.Step(), inner.Append(path, bytes); }
    void Replace(const std::string& path, std::string_view bytes) override {
      faults.Step(), inner.Replace(path, bytes);
    }
  };
  struct FaultyBoxes final : Faulty<MessageBoxes> {
    using Faulty::Faulty;
    std::int32_t Show(const std::string& prompt, std::uint32_t style, const std::string& title) override {
      return faults.Due() ? 0 : inner.Show(prompt, style, title);
    }
  };
  struct FaultyLoop final : Faulty<MessageLoop> {
    using Faulty::Faulty;
    void Post(std::function<void()> work) override { inner.Post(std::move(work)); }
  };
  struct FaultyLocale final : Faulty<NumberLocale> {
    using Faulty::Faulty;
    NumberSeparators Separators() const override { return faults.Step(), inner.Separators(); }
  };
  struct FaultyProfile final : Faulty<PrivateProfile> {
    using Faulty::Faulty;
    std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                            std::span<char> buffer, const std::string& file) const override {
      return faults.Step(), inner.GetString(section, key, defaultValue, buffer, file);
    }
    std::int32_t GetInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                        const std::string& file) const override {
      return faults.Step(), inner.GetInt(section, key, defaultValue, file);
    }
    bool WriteString(const std::string& section, const std::string& key, const std::string& value,
                     const std::string& file) override {
      return !faults.Due() && inner.WriteString(section, key, value, file);
    }
  };
  struct FaultyProcess final : Faulty<Process> {
    using Faulty::Faulty;
    std::string CommandLine() const override { return faults.Step(), inner.CommandLine(); }
    std::string ProgramFolder() const override { return faults.Step(), inner.ProgramFolder(); }
    std::string ExecutableName() const override { return faults.Step(), inner.ExecutableName(); }
    bool OtherInstanceRunning() const override { return inner.OtherInstanceRunning(); }
    OsVersion SystemVersion() const override { return faults.Step(), inner.SystemVersion(); }
  };
  struct FaultyShell final : Faulty<ShellFolders> {
    using Faulty::Faulty;
    bool GetPath(std::uintptr_t owner, std::int32_t folder, std::span<char> path) const override {
      return !faults.Due() && inner.GetPath(owner, folder, path);
    }
  };

  FaultyClock clock_;
  FaultyCodePage codePage_;
  FaultyDde dde_;
  FaultyFiles files_;
  FaultyBoxes boxes_;
  FaultyLoop loop_;
  FaultyLocale locale_;
  FaultyProfile profile_;
  FaultyProcess process_;
  FaultyShell shell_;
  Ports ports_;
};

}  // namespace fonklav::test
