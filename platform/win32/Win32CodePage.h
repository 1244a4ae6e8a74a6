#pragma once

#include "platform/CodePage.h"

namespace fonklav {

/// The system's ANSI code page.
class Win32CodePage final : public CodePage {
 public:
  [[nodiscard]] std::string ToText(std::string_view bytes) const override;
  [[nodiscard]] std::string ToBytes(std::string_view text) const override;
};

}  // namespace fonklav
