#include "window/AccessibleNames.h"

// First: it makes the headers behind it define their identifiers (CLSID_AccPropServices and so on) in this file.
#include <initguid.h>
#include <objbase.h>

#include <oleacc.h>

namespace fonklav {

// An apartment of one thread, because this thread has windows. S_FALSE, for COM that was initialized before, is a
// success and has to be undone as well; RPC_E_CHANGED_MODE is none, and COM can be used all the same.
AccessibleNames::AccessibleNames() : initialized_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
  void* service = nullptr;
  CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices, &service);
  service_.Reset(static_cast<IAccPropServices*>(service));
}

AccessibleNames::~AccessibleNames() {
  service_.Reset();  // no interface may be released once COM has gone
  if (initialized_) CoUninitialize();
}

void AccessibleNames::Set(HWND control, const std::wstring& name) const {
  constexpr DWORD client = static_cast<DWORD>(OBJID_CLIENT);
  if (service_) service_.Get()->SetHwndPropStr(control, client, CHILDID_SELF, PROPID_ACC_NAME, name.c_str());
}

void AccessibleNames::ServiceHandle::Close(IAccPropServices* service) noexcept { service->Release(); }

}  // namespace fonklav
