#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace fonklav {

/// What the memory of a WM_DDE_DATA message holds. The layout is that of DDEDATA in <dde.h>: a word of flags, a word
/// with the clipboard format, the value.
struct DdeValue {
  static constexpr std::uint16_t kRelease = 0x2000;  ///< fRelease: the receiver frees the memory
  static constexpr std::uint16_t kAckReq = 0x8000;   ///< fAckReq: the sender wants an answer
  static constexpr std::uint16_t kText = 1;          ///< CF_TEXT

  std::uint16_t flags{0};
  std::uint16_t format{0};
  std::string bytes;  ///< up to the first NUL

  /// What the receiver has to know of it: the program reads text alone.
  [[nodiscard]] bool IsText() const { return format == kText; }
  [[nodiscard]] bool ToBeReleased() const { return (flags & kRelease) != 0; }
  [[nodiscard]] bool WantsAnswer() const { return (flags & kAckReq) != 0; }

  /// Copies the value out of memory that another program has filled: it may be shorter than its head and need not hold
  /// a NUL. Nothing for memory without a whole head.
  [[nodiscard]] static std::optional<DdeValue> Read(std::span<const std::byte> memory) {
    DdeValue value;
    constexpr std::size_t head = sizeof value.flags + sizeof value.format;
    if (memory.size() < head) return std::nullopt;
    std::memcpy(&value.flags, memory.data(), sizeof value.flags);
    std::memcpy(&value.format, memory.data() + sizeof value.flags, sizeof value.format);
    const std::string_view rest(reinterpret_cast<const char*>(memory.data()) + head, memory.size() - head);
    value.bytes = rest.substr(0, rest.find('\0'));
    return value;
  }
};

}  // namespace fonklav
