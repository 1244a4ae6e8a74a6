#pragma once

#include <cstdint>

namespace fonklav {

/// The icon functions of the window system, under their published names. Handles are passed through as they came.
class IconPainter {
 public:
  IconPainter() = default;
  IconPainter(const IconPainter&) = delete;
  IconPainter& operator=(const IconPainter&) = delete;
  virtual ~IconPainter() = default;

  /// DrawIconEx with step 0, no flicker-free brush and DI_NORMAL.
  virtual void DrawIcon(std::uintptr_t hdc, std::int32_t left, std::int32_t top, std::uintptr_t icon,
                        std::int32_t width, std::int32_t height) = 0;
  /// DestroyIcon.
  virtual void DestroyIcon(std::uintptr_t icon) = 0;
};

}  // namespace fonklav
