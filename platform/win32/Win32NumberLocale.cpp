#include "platform/win32/Win32NumberLocale.h"

#include <windows.h>

#include <array>

#include "platform/win32/WideText.h"

namespace fonklav {
namespace {

std::string LocaleText(LCTYPE which) {
  std::array<wchar_t, 80> text{};
  const int count = GetLocaleInfoW(LOCALE_USER_DEFAULT, which, text.data(), static_cast<int>(text.size()));
  return count > 0 ? Utf8(text.data()) : std::string();
}

}  // namespace

NumberSeparators Win32NumberLocale::Separators() const {
  return {LocaleText(LOCALE_SDECIMAL), LocaleText(LOCALE_STHOUSAND)};
}

}  // namespace fonklav
