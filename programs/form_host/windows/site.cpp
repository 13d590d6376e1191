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
  *window = form_.Handle();
  return *window != nullptr ? S_OK : E_FAIL;
}

HRESULT Site::CanInPlaceActivate() { return form_.Handle() != nullptr ? S_OK : S_FALSE; }

HRESULT Site::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** page, LPRECT place,
                               LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
  *page = nullptr;  // the form is no document of its own in the frame
  frame_->AddRef();
  *frame = frame_.Get();
  *place = form_.PlaceOfControl();
  ::GetClientRect(form_.Handle(), clip);
  info->fMDIApp = FALSE;
  frame_->GetWindow(&info->hwndFrame);
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return S_OK;
}

HRESULT Site::OnPosRectChange(LPCRECT place) {
  if (place == nullptr) return E_POINTER;
  form_.PutControl(*place);
  return S_OK;
}

HRESULT Site::GetExtendedControl(IDispatch** control) {
  *control = nullptr;
  return E_NOTIMPL;
}

}  // namespace quorvane::programs
