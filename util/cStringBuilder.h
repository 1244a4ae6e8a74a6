#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "util/Diagnostics.h"

namespace fonklav {

/// How `cStringBuilder::Find` compares.
enum class TextCompare : std::int32_t {
  Binary = 0,
  Text = 1,  ///< without regard to case
};

/// Collects text in a buffer that grows by whole chunks, so that building a long text does not copy it at every step.
/// Lengths and positions are in 16-bit characters. An error that is meant for the caller names the caller's line.
class cStringBuilder {
 public:
  explicit cStringBuilder(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}

  [[nodiscard]] std::int32_t Length() const noexcept { return static_cast<std::int32_t>(text_.size()); }
  /// Characters reserved, the content included.
  [[nodiscard]] std::int32_t Capacity() const noexcept { return static_cast<std::int32_t>(capacity_); }
  [[nodiscard]] std::int32_t ChunkSize() const noexcept { return chunkSize_; }
  /// The step by which the reserve grows from now on. Throws RunTimeError 380 for less than one character.
  void ChunkSize(std::int32_t iChunkSize, int line = __builtin_LINE());
  /// A copy of the content, without the reserve.
  [[nodiscard]] std::u16string ToString() const;

  /// Adds at the end; the reserve grows by whole chunks where it does not suffice.
  void Append(std::u16string_view sThis);
  /// Appends the text, if any, and CR LF.
  void AppendLine(std::u16string_view sThis = {});
  /// Inserts before the character at the 0-based position. Throws RunTimeError 9 for a position behind the end.
  void Insert(std::int32_t iIndex, std::u16string_view sThis, int line = __builtin_LINE());
  /// Removes `lLen` characters from the 0-based position on. Throws RunTimeError 9 when they are not all there.
  void Remove(std::int32_t iIndex, std::int32_t lLen, int line = __builtin_LINE());
  /// The 1-based position of a text, or 0. A start below 1 searches the whole buffer exactly; otherwise the search
  /// begins at that 1-based position and compares as said. The blank reserve behind the content takes part, but a match
  /// that begins at the last character of the content or behind it counts as none.
  [[nodiscard]] std::int32_t Find(std::u16string_view sToFind, std::int32_t lStartIndex = 0,
                                  TextCompare compare = TextCompare::Binary) const;
  /// Gives back chunks while more than one of them is free.
  void HeapMinimize();
  /// Forgets the content and keeps the reserve.
  void Clear();

 private:
  void Grow(std::size_t more, int line = __builtin_LINE());
  /// Where a text begins that may reach into the blank reserve; none is behind everything.
  [[nodiscard]] std::size_t Position(std::u16string_view toFind, std::size_t start, TextCompare compare) const;

  Diagnostics& diagnostics_;
  std::u16string text_;
  std::size_t capacity_{0};  ///< whole chunks; the string itself may have reserved more
  std::int32_t chunkSize_{8192};
};

}  // namespace fonklav
