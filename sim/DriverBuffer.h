#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

namespace fonklav {

/// Fills a variably sized telephony structure as telephony does: the fixed part first, then the strings, each with its
/// size and offset in the fixed part. What does not fit has size and offset 0 and still counts for dwNeededSize. Never
/// writes beyond the caller's bytes, nor beyond the dwTotalSize at their start.
class DriverBuffer {
 public:
  explicit DriverBuffer(std::span<std::byte> bytes);

  /// Whether the fixed part of `size` bytes fits at all.
  [[nodiscard]] bool Holds(std::size_t size) const { return size <= bytes_.size(); }

  /// Begins with `size` zero bytes; those of `head` after its three sizes are copied in. Call it first, after Holds.
  template <typename Head>
  requires std::is_trivially_copyable_v<Head>
  void Begin(const Head& head, std::size_t size = sizeof(Head)) {
    BeginBytes(std::as_bytes(std::span(&head, 1)), size);
  }

  /// Appends bytes and notes their size at `field` and their offset in the word behind it. Empty bytes note 0 and 0.
  /// A
  /// field outside the buffer only counts. Returns the offset at which they stand, 0 when they did not fit.
  std::uint32_t Append(std::size_t field, std::string_view bytes);
  /// The same for a string, which ends with a NUL.
  void AppendText(std::size_t field, std::string_view text);
  /// Writes a number anywhere; what would leave the buffer is dropped.
  void Put(std::uint64_t offset, std::uint32_t value);
  /// Writes dwNeededSize and dwUsedSize.
  void Finish();

 private:
  void BeginBytes(std::span<const std::byte> head, std::size_t size);

  std::span<std::byte> bytes_;
  std::size_t used_{0};
  std::size_t needed_{0};
};

}  // namespace fonklav
