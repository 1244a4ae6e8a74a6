#pragma once

#include <string>
#include <string_view>

namespace fonklav {

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

}  // namespace fonklav
