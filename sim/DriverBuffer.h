#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace fonklav {

/// Fills a variably sized telephony structure as telephony does: the fixed part first, then the strings, each with its
/// size and offset in the fixed part. What does not fit has size and offset 0 and still counts for dwNeededSize. Never
/// writes beyond the caller's bytes, nor beyond the dwTotalSize at their start.
class DriverBuffer {
 public:
  explicit DriverBuffer(std::span<std::byte> bytes) : bytes_(bytes) {
    std::uint32_t total = 0;
    if (bytes.size() >= sizeof total) std::memcpy(&total, bytes.data(), sizeof total);
    bytes_ = bytes.first(std::min<std::size_t>(bytes.size(), total));
  }

  /// Clears a fixed part of `size` bytes behind dwTotalSize. False when there is no room for it.
  [[nodiscard]] bool Begin(std::size_t size) {
    if (size > bytes_.size()) return false;
    std::ranges::fill(bytes_.first(size).subspan(sizeof(std::uint32_t)), std::byte{0});
    used_ = needed_ = size;
    return true;
  }

  /// Writes a number anywhere; what would leave the buffer is dropped.
  void Put(std::size_t offset, std::uint32_t value) {
    if (offset > bytes_.size() || sizeof value > bytes_.size() - offset) return;
    std::memcpy(bytes_.data() + offset, &value, sizeof value);
  }

  /// Appends bytes, notes their size at `field` and their offset in the word behind it, and returns the offset. Bytes
  /// that do not fit, or whose field is not in the buffer, only count: 0.
  std::size_t Append(std::size_t field, std::string_view bytes) {
    needed_ += bytes.size();
    if (bytes.empty() || field >= bytes_.size() || bytes.size() > bytes_.size() - used_) return 0;
    std::memcpy(bytes_.data() + used_, bytes.data(), bytes.size());
    Put(field, static_cast<std::uint32_t>(bytes.size()));
    Put(field + sizeof(std::uint32_t), static_cast<std::uint32_t>(used_));
    used_ += bytes.size();
    return used_ - bytes.size();
  }

  /// The same for a string, which ends with a NUL.
  void AppendText(std::size_t field, const std::string& text) { Append(field, text + '\0'); }

  /// Writes dwNeededSize and dwUsedSize.
  void Finish() {
    Put(1 * sizeof(std::uint32_t), static_cast<std::uint32_t>(needed_));
    Put(2 * sizeof(std::uint32_t), static_cast<std::uint32_t>(used_));
  }

 private:
  std::span<std::byte> bytes_;
  std::size_t used_{0};
  std::size_t needed_{0};
};

}  // namespace fonklav
