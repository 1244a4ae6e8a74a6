#include "window/AccessibleNames.h"

#include <initguid.h>
#include <objbase.h>

#include <oleacc.h>

namespace fonklav {

AccessibleNames::AccessibleNames() : initialized_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
  void* service = nullptr;
  CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices, &service);
  service_.Reset(static_cast<IAccPropServices*>(service));
}

AccessibleNames::~AccessibleNames() {
  service_.Reset();
  if (initialized_) CoUninitialize();
}

void AccessibleNames::Set(HWND control, const std::wstring& name) const {
  constexpr DWORD client = static_cast<DWORD>(OBJID_CLIENT);
  if (service_) service_.Get()->SetHwndPropStr(control, client, CHILDID_SELF, PROPID_ACC_NAME, name.c_str());
}

void AccessibleNames::ServiceHandle::Close(IAccPropServices* service) noexcept { service->Release(); }

}  // namespace fonklav
