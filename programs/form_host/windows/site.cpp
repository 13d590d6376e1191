#include "programs/form_host/windows/site.h"

namespace quorvane::programs {

HRESULT Site::GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** moniker) {
  *moniker = nullptr;
  return E_NOTIMPL;
}

HRESULT Site::GetContainer(IOleContainer** container) {
  *container = nullptr;
  return E_NOINTERFACE;
}

HRESULT Site::GetWindow(HWND* window) {
  *window = window_;
  return window_ != nullptr ? S_OK : E_FAIL;
}

HRESULT Site::CanInPlaceActivate() { return window_ != nullptr ? S_OK : S_FALSE; }

HRESULT Site::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** page, LPRECT place,
                               LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
  *page = nullptr;  // the form's window is the frame's
  frame_->AddRef();
  *frame = frame_.Get();
  *place = place_;
  ::GetClientRect(window_, clip);
  info->fMDIApp = FALSE;
  info->hwndFrame = window_;
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return S_OK;
}

HRESULT Site::GetExtendedControl(IDispatch** control) {
  *control = nullptr;
  return E_NOTIMPL;
}

}  // namespace quorvane::programs
