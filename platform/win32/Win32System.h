#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "platform/Ports.h"
#include "platform/win32/Handles.h"

// The system's side of the small ports: a few calls of Windows each.
namespace fonklav {

/// The system's local time, which the user can set, and its tick count, which nobody can. The count is that of
/// GetTickCount64: the 32 bits of GetTickCount begin anew after 49.7 days.
class Win32Clock final : public Clock {
 public:
  [[nodiscard]] LocalTime Now() const override;
  [[nodiscard]] std::chrono::milliseconds Ticks() const override;
};

/// The system's ANSI code page (CP_ACP), which is what the suite's other programs write and send: the program's
/// manifest names no code page of its own.
class Win32CodePage final : public CodePage {
 public:
  [[nodiscard]] std::string ToText(std::string_view bytes) const override;
  [[nodiscard]] std::string ToBytes(std::string_view text) const override;
};

/// The number signs that the user has chosen in the system's regional settings.
class Win32NumberLocale final : public NumberLocale {
 public:
  [[nodiscard]] NumberSeparators Separators() const override;
};

/// The system's private-profile functions in their A forms: the files hold bytes of the code page, as the suite's other
/// programs write them. The W functions would convert by themselves, and text becomes bytes in the CodePage port alone.
class Win32PrivateProfile final : public PrivateProfile {
 public:
  std::uint32_t GetString(const std::string& section, const std::string& key, const std::string& defaultValue,
                          std::span<char> buffer, const std::string& file) const override;
  [[nodiscard]] std::int32_t GetInt(const std::string& section, const std::string& key, std::int32_t defaultValue,
                                    const std::string& file) const override;
  bool WriteString(const std::string& section, const std::string& key, const std::string& value,
                   const std::string& file) override;
};

/// The shell's special folders.
class Win32ShellFolders final : public ShellFolders {
 public:
  bool GetPath(std::uintptr_t owner, std::int32_t folder, std::span<char> path) const override;
};

/// This process, as Windows knows it. One object a process: it marks the program as running for as long as it lives, in
/// the user's session: a name that begins with "Local\" is another mutex in the session of another user.
class Win32Process final : public Process {
 public:
  /// Makes the mark; whether one was there already is what OtherInstanceRunning says ever after.
  Win32Process();

  [[nodiscard]] std::string CommandLine() const override;
  [[nodiscard]] std::string ProgramFolder() const override;
  [[nodiscard]] std::string ExecutableName() const override;
  [[nodiscard]] bool OtherInstanceRunning() const override { return otherInstance_; }
  [[nodiscard]] OsVersion SystemVersion() const override;

 private:
  UniqueKernelHandle mark_;  ///< a named mutex that nobody takes: that it exists is what it says
  bool otherInstance_{false};
};

/// The system's message box, in front of the form where that is shown.
class Win32MessageBoxes final : public MessageBoxes {
 public:
  /// `owner` is asked each time for the window that the box belongs to; null is none.
  explicit Win32MessageBoxes(std::function<HWND()> owner) : owner_(std::move(owner)) {}

  std::int32_t Show(const std::string& prompt, std::uint32_t style, const std::string& title) override;

 private:
  std::function<HWND()> owner_;
};

/// The icon functions of the window system.
class Win32IconPainter final : public IconPainter {
 public:
  void DrawIcon(std::uintptr_t hdc, std::int32_t left, std::int32_t top, std::uintptr_t icon, std::int32_t width,
                std::int32_t height) override;
  void DestroyIcon(std::uintptr_t icon) override;
};

}  // namespace fonklav
