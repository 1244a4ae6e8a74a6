#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "util/DateTime.h"
#include "util/OsDescription.h"
#include "util/Text.h"

// What the program asks of the system: the small ports, one class each, and at the end all ports together. Files, DDE
// and telephony, which take more words, have pages of their own. A port keeps the platform's names and rules. Behind
// each stands an adapter in platform/win32, and in the tests a fake.
namespace fonklav {

/// The time, for log stamps and for waiting.
class Clock {
 public:
  Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;
  virtual ~Clock() = default;

  /// The user's wall clock. It jumps when somebody sets it: nothing may be measured by it.
  [[nodiscard]] virtual LocalTime Now() const = 0;
  /// A count that never goes back, from an arbitrary start.
  [[nodiscard]] virtual std::chrono::milliseconds Ticks() const = 0;
};

/// The system's 8-bit code page. Inside the program text is UTF-8; bytes of files, conversations and drivers pass
/// through here. What cannot be mapped becomes the platform's replacement character; nothing throws for it.
class CodePage {
 public:
  CodePage() = default;
  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;
  virtual ~CodePage() = default;

  /// Bytes of the code page as text. NUL bytes stay.
  [[nodiscard]] virtual std::string ToText(std::string_view bytes) const = 0;
  /// Text as bytes of the code page. NUL characters stay.
  [[nodiscard]] virtual std::string ToBytes(std::string_view text) const = 0;
};

/// How the user's locale writes numbers.
class NumberLocale {
 public:
  NumberLocale() = default;
  NumberLocale(const NumberLocale&) = delete;
  NumberLocale& operator=(const NumberLocale&) = delete;
  virtual ~NumberLocale() = default;

  /// As the user has set them; asked for each time, because the user may set them while the program runs.
  [[nodiscard]] virtual NumberSeparators Separators() const = 0;
};

/// The platform's private-profile functions in their 8-bit forms: all strings are bytes of the code page, zero
/// terminated. Section and key are matched without regard to case; no operation reports why it failed.
class PrivateProfile {
 public:
  PrivateProfile() = default;
  PrivateProfile(const PrivateProfile&) = delete;
  PrivateProfile& operator=(const PrivateProfile&) = delete;
  virtual ~PrivateProfile() = default;

  /// GetPrivateProfileStringA: fills `buffer` with a zero-terminated value, cut to fit, and returns how many bytes it
  /// copied without the zero. Quotation marks around a stored value are taken off. `file` is a full path: the platform
  /// looks for a bare name in the Windows folder.
  virtual std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                                  std::span<char> buffer, const std::string& file) const = 0;
  /// GetPrivateProfileIntA: the leading decimal number of the value, 0 for other text, `defaultValue` for a missing
  /// key.
  [[nodiscard]] virtual std::int32_t GetInt(const std::string& section, const std::string& key,
                                            std::int32_t defaultValue, const std::string& file) const = 0;
  /// WritePrivateProfileStringA: makes file, section and key as needed, never a folder. False when nothing was written.
  virtual bool WriteString(const std::string& section, const std::string& key, const std::string& value,
                           const std::string& file) = 0;
};

/// The published numbers of the two folders that the program asks for.
inline constexpr std::int32_t CSIDL_COMMON_APPDATA = 35;
inline constexpr std::int32_t CSIDL_PROGRAM_FILES = 38;

/// The shell's special folders.
class ShellFolders {
 public:
  ShellFolders() = default;
  ShellFolders(const ShellFolders&) = delete;
  ShellFolders& operator=(const ShellFolders&) = delete;
  virtual ~ShellFolders() = default;

  /// SHGetSpecialFolderLocation, SHGetPathFromIDListA and CoTaskMemFree: writes the folder's path, in bytes of the code
  /// page, to the front of `path` (at least 260 bytes) and returns true, or returns false when the shell gives no
  /// identifier for `folder`. `owner` is handed on as the owner window, a number that need not be one.
  virtual bool GetPath(std::uintptr_t owner, std::int32_t folder, std::span<char> path) const = 0;
};

/// What the program asks about its own process.
class Process {
 public:
  Process() = default;
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  virtual ~Process() = default;

  /// Everything after the program name on the command line, blanks in front of it removed, the rest as typed.
  [[nodiscard]] virtual std::string CommandLine() const = 0;
  /// The folder that holds the executable, without a backslash at its end (except a drive's root).
  [[nodiscard]] virtual std::string ProgramFolder() const = 0;
  /// The executable's file name without extension.
  [[nodiscard]] virtual std::string ExecutableName() const = 0;
  /// Whether another instance of this program is running.
  [[nodiscard]] virtual bool OtherInstanceRunning() const = 0;
  /// The numbers of the system that is running, whatever compatibility mode the program was started in.
  [[nodiscard]] virtual OsVersion SystemVersion() const = 0;
};

/// Message-box styles: the published icon numbers.
inline constexpr std::uint32_t kMessageBoxCritical = 16;
inline constexpr std::uint32_t kMessageBoxExclamation = 48;
inline constexpr std::uint32_t kMessageBoxInformation = 64;

/// The platform's modal message box.
class MessageBoxes {
 public:
  MessageBoxes() = default;
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;
  virtual ~MessageBoxes() = default;

  /// Shows `prompt` until the user answers and returns the button pressed. Messages are pumped meanwhile, so anything
  /// may have happened when it returns.
  virtual std::int32_t Show(const std::string& prompt, std::uint32_t style, const std::string& title) = 0;
};

/// The icon functions of the window system, under their published names. Handles are passed through as they came.
class IconPainter {
 public:
  IconPainter() = default;
  IconPainter(const IconPainter&) = delete;
  IconPainter& operator=(const IconPainter&) = delete;
  virtual ~IconPainter() = default;

  /// DrawIconEx with step 0, no flicker-free brush and DI_NORMAL.
  virtual void DrawIcon(std::uintptr_t hdc, std::int32_t left, std::int32_t top, std::uintptr_t icon,
                        std::int32_t width, std::int32_t height) = 0;
  /// DestroyIcon.
  virtual void DestroyIcon(std::uintptr_t icon) = 0;
};

/// The thread's message loop.
class MessageLoop {
 public:
  MessageLoop() = default;
  MessageLoop(const MessageLoop&) = delete;
  MessageLoop& operator=(const MessageLoop&) = delete;
  virtual ~MessageLoop() = default;

  /// Runs `work` from the loop, after everything that is running now has returned. Work that is still waiting when the
  /// loop ends is destroyed without being run.
  virtual void Post(std::function<void()> work) = 0;
};

class DdeTransport;
class FileSystem;
class Telephony;

/// All that the program asks of the system, one reference a port. Whoever builds a program supplies them; they outlive
/// it. A test replaces the one that it is about.
struct Ports {
  template <typename Port>
  using Ref = std::reference_wrapper<Port>;

  Ref<Clock> clock;
  Ref<CodePage> codePage;
  Ref<DdeTransport> dde;
  Ref<FileSystem> files;
  Ref<IconPainter> icons;
  Ref<MessageBoxes> messageBoxes;
  Ref<MessageLoop> loop;
  Ref<NumberLocale> numberLocale;
  Ref<PrivateProfile> profile;
  Ref<Process> process;
  Ref<ShellFolders> shellFolders;
  Ref<Telephony> telephony;
};

}  // namespace fonklav
