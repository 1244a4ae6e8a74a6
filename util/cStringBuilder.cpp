#include "util/cStringBuilder.h"

#include <algorithm>
#include <limits>

#include "util/CaseFold.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

namespace fonklav {
namespace {

constexpr std::u16string_view kLineEnd = u"\r\n";
constexpr std::size_t kMostCharacters = std::numeric_limits<std::int32_t>::max();

/// Where a stretch ends. Both are taken as unsigned, so that their sum does not overflow at the middle of the range.
constexpr std::uint32_t EndOf(std::int32_t position, std::int32_t length) {
  return static_cast<std::uint32_t>(position) + static_cast<std::uint32_t>(length);
}

}  // namespace

void cStringBuilder::ChunkSize(std::int32_t iChunkSize, int line) {
  TraceEntry(diagnostics_, "cStringBuilder.ChunkSize", {iChunkSize});
  if (iChunkSize < 1) throw RunTimeError(ErrorNumber::InvalidPropertyValue, line);
  chunkSize_ = iChunkSize;
}

std::u16string cStringBuilder::ToString() const {
  return Procedure(diagnostics_, "cStringBuilder.ToString", {}, std::u16string{},
                   [&](std::u16string& text) { text = text_; });
}

void cStringBuilder::Append(std::u16string_view sThis) {
  Procedure(diagnostics_, "cStringBuilder.Append", {sThis.size()}, [&] {
    Grow(sThis.size());
    text_ += sThis;
  });
}

void cStringBuilder::AppendLine(std::u16string_view sThis) {
  Procedure(diagnostics_, "cStringBuilder.AppendLine", {sThis.size()}, [&] {
    Grow(sThis.size() + kLineEnd.size());
    text_.append(sThis).append(kLineEnd);
  });
}

void cStringBuilder::Insert(std::int32_t iIndex, std::u16string_view sThis, int line) {
  TraceEntry(diagnostics_, "cStringBuilder.Insert", {iIndex, sThis.size()});
  if (iIndex < 0 || iIndex > Length()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange, line);
  try {
    Grow(sThis.size());
  } catch (...) {
    // The range error above is the caller's; want of memory ends in the log, as it does in Append.
    return HandleFault(diagnostics_, "cStringBuilder.Insert", {iIndex, sThis.size()});
  }
  text_.insert(static_cast<std::size_t>(iIndex), sThis);
}

void cStringBuilder::Remove(std::int32_t iIndex, std::int32_t lLen, int line) {
  TraceEntry(diagnostics_, "cStringBuilder.Remove", {iIndex, lLen});
  const bool inside = iIndex >= 0 && lLen >= 0 && iIndex <= Length() && EndOf(iIndex, lLen) <= text_.size();
  if (!inside) throw RunTimeError(ErrorNumber::SubscriptOutOfRange, line);
  text_.erase(static_cast<std::size_t>(iIndex), static_cast<std::size_t>(lLen));
}

std::int32_t cStringBuilder::Find(std::u16string_view sToFind, std::int32_t lStartIndex, TextCompare compare) const {
  return Procedure(diagnostics_, "cStringBuilder.Find", {sToFind.size(), lStartIndex}, 0, [&](std::int32_t& position) {
    const bool whole = lStartIndex < 1;
    const std::size_t start = whole ? 0 : static_cast<std::size_t>(lStartIndex) - 1;
    const std::size_t found = Position(sToFind, start, whole ? TextCompare::Binary : compare);
    // Not "<=": a match at the last character of the content counts as none.
    if (found + 1 < text_.size()) position = static_cast<std::int32_t>(found + 1);
  });
}

std::size_t cStringBuilder::Position(std::u16string_view toFind, std::size_t start, TextCompare compare) const {
  std::u16string padded = text_;
  padded.resize(std::min(capacity_, text_.size() + toFind.size()), u' ');
  if (start >= padded.size()) return padded.size();
  const auto equal = [compare](char16_t left, char16_t right) {
    return compare == TextCompare::Text ? FoldCase(left) == FoldCase(right) : left == right;
  };
  const auto begin = padded.begin() + static_cast<std::ptrdiff_t>(start);
  return static_cast<std::size_t>(std::search(begin, padded.end(), toFind.begin(), toFind.end(), equal) -
                                  padded.begin());
}

void cStringBuilder::HeapMinimize() {
  Procedure(diagnostics_, "cStringBuilder.HeapMinimize", {}, [&] {
    const std::int32_t free = Capacity() - Length();
    if (free <= chunkSize_) return;
    // Whole chunks go, and some room, up to one chunk, stays.
    capacity_ -= static_cast<std::size_t>((free - 1) / chunkSize_ * chunkSize_);
    text_.shrink_to_fit();
    text_.reserve(capacity_);
  });
}

void cStringBuilder::Clear() {
  Procedure(diagnostics_, "cStringBuilder.Clear", {}, [&] { text_.clear(); });
}

void cStringBuilder::Grow(std::size_t more, int line) {
  const std::size_t needed = text_.size() + more;
  if (needed <= capacity_) return;
  const auto chunk = static_cast<std::size_t>(chunkSize_);
  const std::size_t grown = capacity_ + (needed - capacity_ + chunk - 1) / chunk * chunk;
  if (grown > kMostCharacters) throw RunTimeError(ErrorNumber::OutOfMemory, line);
  text_.reserve(grown);
  capacity_ = grown;
}

}  // namespace fonklav
