#include "platform/win32/Win32CodePage.h"

#include "platform/win32/WideText.h"

namespace fonklav {

std::string Win32CodePage::ToText(std::string_view bytes) const { return Utf8(WideFrom(CP_ACP, bytes)); }

std::string Win32CodePage::ToBytes(std::string_view text) const { return BytesFrom(CP_ACP, Wide(text)); }

}  // namespace fonklav
