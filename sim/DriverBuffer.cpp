#include "sim/DriverBuffer.h"

#include <algorithm>
#include <string>

namespace fonklav {

namespace {

constexpr std::size_t kSizes = 3 * sizeof(std::uint32_t);  // dwTotalSize, dwNeededSize, dwUsedSize

std::size_t TotalSize(std::span<const std::byte> bytes) {
  std::uint32_t total = 0;
  if (bytes.size() >= sizeof total) std::memcpy(&total, bytes.data(), sizeof total);
  return total;
}

}  // namespace

DriverBuffer::DriverBuffer(std::span<std::byte> bytes)
    : bytes_(bytes.first(std::min(bytes.size(), TotalSize(bytes)))) {}

void DriverBuffer::BeginBytes(std::span<const std::byte> head, std::size_t size) {
  std::fill(bytes_.begin() + kSizes, bytes_.begin() + static_cast<std::ptrdiff_t>(size), std::byte{0});
  const auto body = head.first(std::min(head.size(), size)).subspan(kSizes);
  std::copy(body.begin(), body.end(), bytes_.begin() + kSizes);
  used_ = needed_ = size;
}

std::uint32_t DriverBuffer::Append(std::size_t field, std::string_view bytes) {
  needed_ += bytes.size();
  if (bytes.empty() || field >= bytes_.size() || bytes.size() > bytes_.size() - used_) return 0;
  std::memcpy(bytes_.data() + used_, bytes.data(), bytes.size());
  const auto offset = static_cast<std::uint32_t>(used_);
  Put(field, static_cast<std::uint32_t>(bytes.size()));
  Put(field + sizeof offset, offset);
  used_ += bytes.size();
  return offset;
}

void DriverBuffer::AppendText(std::size_t field, std::string_view text) { Append(field, std::string(text) + '\0'); }

void DriverBuffer::Put(std::uint64_t offset, std::uint32_t value) {
  if (offset > bytes_.size() || sizeof value > bytes_.size() - offset) return;
  std::memcpy(bytes_.data() + offset, &value, sizeof value);
}

void DriverBuffer::Finish() {
  Put(4, static_cast<std::uint32_t>(needed_));
  Put(8, static_cast<std::uint32_t>(used_));
}

}  // namespace fonklav
