#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>

namespace fonklav {

/// Says in the first field of a variable-length structure, dwTotalSize, how many of its bytes may be written.
inline void SetTotalSize(std::span<std::byte> buffer) {
  const auto size = static_cast<std::uint32_t>(buffer.size());
  std::memcpy(buffer.data(), &size, sizeof(size));
}

/// Reads what a driver has put into a buffer of ours. Offsets and sizes inside it are the driver's word only: whatever
/// would leave the buffer reads as empty.
class StructReader {
 public:
  /// The buffer must outlive the reader, and the bytes that it gives out.
  explicit StructReader(std::span<const std::byte> buffer) : buffer_(buffer) {}

  /// The structure at `offset`, nothing when it does not lie in the buffer as a whole.
  template <typename Structure>
  requires std::is_trivially_copyable_v<Structure>
  [[nodiscard]] std::optional<Structure> Read(std::uint64_t offset = 0) const {
    const auto bytes = Bytes(offset, sizeof(Structure));
    if (bytes.size() != sizeof(Structure)) return std::nullopt;
    std::optional<Structure> structure(std::in_place);
    std::memcpy(&*structure, bytes.data(), sizeof(Structure));
    return structure;
  }

  /// The bytes at `offset`, empty when they do not all lie in the buffer.
  [[nodiscard]] std::string_view Bytes(std::uint64_t offset, std::uint64_t size) const {
    if (offset > buffer_.size() || size > buffer_.size() - offset) return {};
    const auto part = buffer_.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
    return {reinterpret_cast<const char*>(part.data()), part.size()};
  }

 private:
  std::span<const std::byte> buffer_;
};

}  // namespace fonklav
