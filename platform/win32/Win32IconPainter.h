#pragma once

#include "platform/IconPainter.h"

namespace fonklav {

/// The icon functions of the window system.
class Win32IconPainter final : public IconPainter {
 public:
  void DrawIcon(std::uintptr_t hdc, std::int32_t left, std::int32_t top, std::uintptr_t icon, std::int32_t width,
                std::int32_t height) override;
  void DestroyIcon(std::uintptr_t icon) override;
};

}  // namespace fonklav
