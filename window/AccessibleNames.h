#pragma once

#include <windows.h>

#include <string>

#include "util/UniqueHandle.h"

struct IAccPropServices;

namespace fonklav {

/// The names under which a screen reader finds the boxes. The window text of a box is its content, so the name has to
/// be set beside it, by Dynamic Annotation (IAccPropServices). Where the system does not offer the service nothing
/// fails: readers are left to guess by the label that stands before a box.
class AccessibleNames {
 public:
  AccessibleNames();
  AccessibleNames(const AccessibleNames&) = delete;
  AccessibleNames& operator=(const AccessibleNames&) = delete;
  ~AccessibleNames();

  /// Gives the control this name from now on, whatever the system would guess.
  void Set(HWND control, const std::wstring& name) const;

 private:
  struct ServiceHandle {
    using Type = IAccPropServices*;
    static Type None() noexcept { return nullptr; }
    static void Close(IAccPropServices* service) noexcept;
  };

  bool initialized_;  ///< CoInitializeEx has succeeded and wants its CoUninitialize
  UniqueHandle<ServiceHandle> service_;
};

}  // namespace fonklav
