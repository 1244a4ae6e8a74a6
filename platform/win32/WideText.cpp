#include "platform/win32/WideText.h"

#include <algorithm>
#include <limits>

namespace fonklav {
namespace {

/// The platform counts in int; no text of this program comes near that.
int CountOf(std::size_t size) { return static_cast<int>(std::min<std::size_t>(size, std::numeric_limits<int>::max())); }

}  // namespace

std::wstring WideFrom(UINT codePage, std::string_view bytes) {
  // An exact count and not -1, by which the text would end at its first NUL. For a count of 0 both functions fail,
  // which reads as a length of 0: the empty text. Without MB_ERR_INVALID_CHARS malformed UTF-8 becomes U+FFFD.
  const int count = CountOf(bytes.size());
  std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(codePage, 0, bytes.data(), count, nullptr, 0)), L'\0');
  MultiByteToWideChar(codePage, 0, bytes.data(), count, wide.data(), CountOf(wide.size()));
  return wide;
}

std::string BytesFrom(UINT codePage, std::wstring_view text) {
  // Without flags the platform takes the character that fits best, and its replacement character where none does. The
  // two null pointers are the only ones that it allows for CP_UTF8.
  const int count = CountOf(text.size());
  const int size = WideCharToMultiByte(codePage, 0, text.data(), count, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(codePage, 0, text.data(), count, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

std::wstring Wide(std::string_view text) { return WideFrom(CP_UTF8, text); }

std::string Utf8(std::wstring_view text) { return BytesFrom(CP_UTF8, text); }

}  // namespace fonklav
