#pragma once

#include <algorithm>
#include <array>
#include <deque>
#include <functional>
#include <map>
#include <string>
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
    for (const char byte : bytes) AppendUtf8(text, CodePoint(static_cast<unsigned char>(byte)));
    return text;
  }
  [[nodiscard]] std::string ToBytes(std::string_view text) const override {
    Step();
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) bytes += Byte(NextCodePoint(text, at));
    return bytes;
  }

 private:
  static constexpr std::array<char32_t, 32> kHigh{0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                  0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

  static char32_t CodePoint(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? kHigh[byte - 0x80U] : char32_t{byte};
  }
  static char Byte(char32_t point) {
    for (std::size_t index = 0; index < kHigh.size(); ++index) {
      if (kHigh[index] == point) return static_cast<char>(0x80 + index);
    }
    const bool held = point < 0x80 || (point >= 0xA0 && point < 0x100);
    return held ? static_cast<char>(point) : '?';
  }
  static void AppendUtf8(std::string& text, char32_t point) {
    if (point < 0x80) {
      text += static_cast<char>(point);
    } else if (point < 0x800) {
      text += static_cast<char>(0xC0 | (point >> 6));
      text += static_cast<char>(0x80 | (point & 0x3F));
    } else {
      text += static_cast<char>(0xE0 | (point >> 12));
      text += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
      text += static_cast<char>(0x80 | (point & 0x3F));
    }
  }
  static char32_t NextCodePoint(std::string_view text, std::size_t& at) {
    const auto first = static_cast<unsigned char>(text[at++]);
    if (first < 0x80) return first;
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    char32_t point = first & (0x3FU >> more);
    for (int index = 0; index < more; ++index) {
      // A character that breaks off takes nothing of the next one with it.
      if (at == text.size() || (static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U) return 0xFFFD;
      point = (point << 6) | (static_cast<unsigned char>(text[at++]) & 0x3FU);
    }
    return point;
  }
};

/// German numbers, unless a test wants others.
class FakeNumberLocale : public NumberLocale, public CanFail {
 public:
  [[nodiscard]] NumberSeparators Separators() const override { return Step(), separators; }
  NumberSeparators separators;
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

}  // namespace fonklav::test
