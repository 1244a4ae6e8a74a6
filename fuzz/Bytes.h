#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

namespace fonklav::test {

/// Deals out the fuzzer's bytes; zeros once they have run out.
class Bytes {
 public:
  explicit Bytes(std::span<const std::uint8_t> data) : data_(data) {}

  [[nodiscard]] bool Empty() const { return data_.empty(); }
  [[nodiscard]] std::span<const std::uint8_t> Rest() const { return data_; }
  /// A number below `bound`, which is at most 256.
  std::size_t Below(std::size_t bound) {
    std::uint8_t byte = 0;
    Fill(std::as_writable_bytes(std::span(&byte, 1)));
    return byte % bound;
  }
  bool Flag() { return Below(2) != 0; }
  std::uint32_t Number() {
    std::uint32_t number = 0;
    Fill(std::as_writable_bytes(std::span(&number, 1)));
    return number;
  }
  template <typename Choices>
  const auto& OneOf(const Choices& choices) {
    return choices[Below(std::size(choices))];
  }
  /// Up to `most` bytes as they are.
  std::string Text(std::size_t most) {
    std::string text(std::min(most, data_.size()), '\0');
    Fill(std::as_writable_bytes(std::span(text)));
    return text;
  }
  void Fill(std::span<std::byte> target) {
    const std::size_t count = std::min(target.size(), data_.size());
    std::ranges::copy(std::as_bytes(data_.first(count)), target.begin());
    data_ = data_.subspan(count);
  }

 private:
  std::span<const std::uint8_t> data_;
};

/// One input through the target: each has its own.
void Fuzz(Bytes bytes);

/// Ends the process where an invariant does not hold: that is how a fuzzer learns of a finding.
inline void Require(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

}  // namespace fonklav::test
