#pragma once

#include "platform/NumberLocale.h"

namespace fonklav::test {

/// German numbers, unless a test wants others.
class FakeNumberLocale : public NumberLocale {
 public:
  [[nodiscard]] NumberSeparators Separators() const override { return separators; }
  NumberSeparators separators;
};

}  // namespace fonklav::test
