#pragma once

#include <windows.h>

#include <string>

#include "util/UniqueHandle.h"

struct IAccPropServices;

namespace fonklav {

/// The names under which a screen reader finds the boxes, which have no caption of their own. Where the system does not
/// offer the service, readers are left to guess by what stands before a box.
class AccessibleNames {
 public:
  AccessibleNames();
  AccessibleNames(const AccessibleNames&) = delete;
  AccessibleNames& operator=(const AccessibleNames&) = delete;
  ~AccessibleNames();

  void Set(HWND control, const std::wstring& name) const;

 private:
  struct ServiceHandle {
    using Type = IAccPropServices*;
    static Type None() noexcept { return nullptr; }
    static void Close(IAccPropServices* service) noexcept;
  };

  bool initialized_;
  UniqueHandle<ServiceHandle> service_;
};

}  // namespace fonklav
