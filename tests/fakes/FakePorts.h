#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Ports.h"
#include "tests/fakes/Faults.h"

// The small ports as a test wants them. Files, INI files and DDE have pages of their own.
namespace fonklav::test {

/// A clock that moves when the test says so.
class FakeClock : public Clock, public CanFail {
 public:
  [[nodiscard]] LocalTime Now() const override { return Step(), now; }
  [[nodiscard]] std::chrono::milliseconds Ticks() const override {
    if (broken) throw RunTimeError(ErrorNumber::OutOfMemory);
    return ticks;
  }
  void Advance(std::chrono::milliseconds time) { ticks += time; }

  LocalTime now{2015, 3, 7, 9, 5, 31};
  std::chrono::milliseconds ticks{1000};
  bool broken{false};  ///< as when memory runs out
};

/// Windows-1252, as on a German system.
class FakeCodePage : public CodePage, public CanFail {
 public:
  [[nodiscard]] std::string ToText(std::string_view bytes) const override {
    Step();
    std::string text;
    for (const char byte : bytes) {
      const auto number = static_cast<unsigned char>(byte);
      text += number < 0x80 ? std::string_view(&byte, 1) : Upper()[number - 0x80U];
    }
    return text;
  }
  [[nodiscard]] std::string ToBytes(std::string_view text) const override {
    Step();
    std::string bytes;
    EachCharacter(text, [&](std::string_view character) {
      if ((character[0] & 0x80) == 0) return bytes.push_back(character[0]);
      const auto held = std::ranges::find(Upper(), character);
      bytes += held == Upper().end() ? '?' : static_cast<char>(0x80 + (held - Upper().begin()));
    });
    return bytes;
  }

 private:
  /// Hands over the characters of a text in UTF-8. One that breaks off takes nothing of the next one with it.
  static void EachCharacter(std::string_view text, const std::function<void(std::string_view)>& take) {
    for (std::size_t start = 0, end = 1; start < text.size(); start = end++) {
      while (end < text.size() && (text[end] & 0xC0) == 0x80) ++end;
      take(text.substr(start, end - start));
    }
  }
  /// What the bytes from 0x80 on stand for.
  static const std::vector<std::string_view>& Upper() {
    static const std::vector<std::string_view> upper = [] {
      std::vector<std::string_view> made;
      EachCharacter(
          "€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008dŽ\u008f\u0090‘’“”•–—˜™š›œ\u009džŸ"
          "\u00a0¡¢£¤¥¦§¨©ª«¬\u00ad®¯°±²³´µ¶·¸¹º»¼½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞßàáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ",
          [&](std::string_view character) { made.push_back(character); });
      return made;
    }();
    return upper;
  }
};

/// German numbers.
class FakeNumberLocale : public NumberLocale, public CanFail {
 public:
  [[nodiscard]] NumberSeparators Separators() const override { return Step(), NumberSeparators{}; }
};

class FakeShellFolders : public ShellFolders, public CanFail {
 public:
  bool GetPath(std::uintptr_t owner, std::int32_t folder, std::span<char> path) const override {
    asked = std::to_string(owner) + " " + std::to_string(path.size());
    const auto found = folders.find(folder);
    if (Due() || found == folders.end()) return false;
    std::ranges::copy(found->second, path.begin());
    return true;
  }
  std::map<std::int32_t, std::string> folders{{CSIDL_COMMON_APPDATA, "C:\\ProgramData"},
                                              {CSIDL_PROGRAM_FILES, "C:\\Program Files"}};
  mutable std::string asked;  ///< "owner size" of the last question
};

class FakeProcess : public Process, public CanFail {
 public:
  [[nodiscard]] std::string CommandLine() const override { return Step(), commandLine; }
  [[nodiscard]] std::string ProgramFolder() const override { return Step(), programFolder; }
  [[nodiscard]] std::string ExecutableName() const override { return "FonklavTAPI"; }
  [[nodiscard]] bool OtherInstanceRunning() const override { return otherRunning; }
  [[nodiscard]] OsVersion SystemVersion() const override { return version; }

  std::string commandLine;
  std::string programFolder{"C:\\Rufmon"};
  bool otherRunning{false};
  OsVersion version{10, 0, 19045, true, false};
};

/// Remembers what was shown and answers at once.
class FakeMessageBoxes : public MessageBoxes, public CanFail {
 public:
  struct Shown {
    std::string prompt;
    std::uint32_t style;
    std::string title;
  };
  std::int32_t Show(const std::string& prompt, std::uint32_t style, const std::string& title) override {
    if (Due()) return 0;
    shown.push_back({prompt, style, title});
    if (whileShown) whileShown();
    return answer;
  }
  std::vector<Shown> shown;
  std::int32_t answer{1};
  std::function<void()> whileShown;
};

/// Remembers which icons were drawn, as "device context left top icon width height", and given back.
class FakeIconPainter : public IconPainter {
 public:
  void DrawIcon(std::uintptr_t hdc, std::int32_t left, std::int32_t top, std::uintptr_t icon, std::int32_t width,
                std::int32_t height) override {
    drawn.push_back(std::to_string(hdc) + " " + std::to_string(left) + " " + std::to_string(top) + " " +
                    std::to_string(icon) + " " + std::to_string(width) + " " + std::to_string(height));
  }
  void DestroyIcon(std::uintptr_t icon) override { destroyed.push_back(icon); }

  std::vector<std::string> drawn;
  std::vector<std::uintptr_t> destroyed;
};

/// A message loop that runs when the test says so.
class FakeMessageLoop : public MessageLoop {
 public:
  void Post(std::function<void()> work) override { posted.push_back(std::move(work)); }

  void Run() {
    while (!posted.empty()) {
      const auto work = std::move(posted.front());
      posted.pop_front();
      work();
    }
  }

  std::deque<std::function<void()>> posted;
};

/// For LineSimulator::inside: a system whose telephony does not have this function.
inline std::function<void(std::string_view)> Without(std::string_view function) {
  return [function](std::string_view called) {
    if (called == function) throw RunTimeError(ErrorNumber::DllEntryPointNotFound);
  };
}

}  // namespace fonklav::test
