#pragma once

#include <cstdint>
#include <vector>

#include "platform/IconPainter.h"

namespace fonklav::test {

/// Remembers which icons were drawn and given back.
class FakeIconPainter : public IconPainter {
 public:
  struct Drawn {
    std::uintptr_t hdc;
    std::int32_t left;
    std::int32_t top;
    std::uintptr_t icon;
    std::int32_t width;
    std::int32_t height;
    bool operator==(const Drawn&) const = default;
  };

  void DrawIcon(std::uintptr_t hdc, std::int32_t left, std::int32_t top, std::uintptr_t icon, std::int32_t width,
                std::int32_t height) override {
    drawn.push_back({hdc, left, top, icon, width, height});
  }
  void DestroyIcon(std::uintptr_t icon) override { destroyed.push_back(icon); }

  std::vector<Drawn> drawn;
  std::vector<std::uintptr_t> destroyed;
};

}  // namespace fonklav::test
