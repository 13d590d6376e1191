#include "control/object/ole_object.h"

#include <utility>

#include "control/automation/strings.h"
#include "control/interface/identities.h"

namespace quorvane::component {

void* OleControlFace::Find(REFIID id) { return InterfaceMap<IOleControl>::Find(*this, id); }

HRESULT OleControlFace::GetControlInfo(CONTROLINFO* out) {
  if (out == nullptr) return E_POINTER;
  out->hAccel = nullptr;
  out->cAccel = 0;
  out->dwFlags = 0;
  return S_OK;
}

HRESULT OleControlFace::OnMnemonic(MSG* /*message*/) { return S_OK; }

HRESULT OleControlFace::OnAmbientPropertyChange(DISPID /*id*/) { return S_OK; }

HRESULT OleControlFace::FreezeEvents(BOOL /*freeze*/) { return S_OK; }

void* OleObjectFace::Find(REFIID id) { return InterfaceMap<IOleObject>::Find(*this, id); }

HRESULT OleObjectFace::SetClientSite(IOleClientSite* site) {
  const auto alive = KeepAlive();
  ComPtr<IOleClientSite> next(site);
  if (site != site_.Get()) in_place_.Deactivate();
  if (site == nullptr) view_.ForgetSink();
  site_ = std::move(next);
  return S_OK;
}

HRESULT OleObjectFace::GetClientSite(IOleClientSite** out) {
  if (out == nullptr) return E_POINTER;
  site_.CopyTo(out);
  return S_OK;
}

HRESULT OleObjectFace::SetHostNames(const OLECHAR* /*application*/, const OLECHAR* /*object*/) {
  return S_OK;
}

HRESULT OleObjectFace::Close(DWORD save_option) {
  const auto alive = KeepAlive();
  in_place_.Deactivate();
  HRESULT result = S_OK;
  if (save_option != OLECLOSE_NOSAVE && persistence_.IsMarkedDirty() && site_)
    result = ComPtr<IOleClientSite>(site_)->SaveObject();
  if (advise_holder_) ComPtr<IOleAdviseHolder>(advise_holder_)->SendOnClose();
  return result;
}

HRESULT OleObjectFace::Show(IOleClientSite* active_site, HWND parent, const RECT* where) {
  const ComPtr<IOleClientSite> site(active_site != nullptr ? active_site : site_.Get());
  const HRESULT result = in_place_.Activate(site.Get(), parent, where);
  if (SUCCEEDED(result) && site) site->ShowObject();
  return result;
}

HRESULT OleObjectFace::DoVerb(LONG verb, MSG* /*message*/, IOleClientSite* active_site,
                              LONG /*index*/, HWND parent, const RECT* where) {
  const auto alive = KeepAlive();
  switch (verb) {
    case OLEIVERB_PRIMARY:
    case OLEIVERB_SHOW:
    case OLEIVERB_UIACTIVATE:
    case OLEIVERB_INPLACEACTIVATE:
      return Show(active_site, parent, where);
    case OLEIVERB_HIDE:
      in_place_.Hide();
      return S_OK;
    default:
      return verb > 0 ? OLEOBJ_S_INVALIDVERB : E_NOTIMPL;
  }
}

HRESULT OleObjectFace::EnumVerbs(IEnumOLEVERB** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return OLEOBJ_E_NOVERBS;
}

// Kept: any request runs Resize and the size stays locked, at design time and at run time
// alike. Pinned by Extent.StaysLockedWhateverARequestSays.
HRESULT OleObjectFace::SetExtent(DWORD aspect, SIZEL* asked) {
  if (asked == nullptr) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  logic_.Resize();
  return S_OK;
}

HRESULT OleObjectFace::GetExtent(DWORD aspect, SIZEL* out) {
  if (out == nullptr) return E_POINTER;
  *out = {};
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  *out = extent_.Units();
  return S_OK;
}

HRESULT OleObjectFace::GetUserClassID(CLSID* out) {
  if (out == nullptr) return E_POINTER;
  *out = AsGuid(identities::kClassId);
  return S_OK;
}

// The caller owns the name as task memory. Every form of it is the class's name.
HRESULT OleObjectFace::GetUserType(DWORD /*form*/, LPOLESTR* out) {
  if (out == nullptr) return E_POINTER;
  constexpr std::size_t kSize = sizeof identities::kClassName;  // with its terminator
  *out = static_cast<LPOLESTR>(::CoTaskMemAlloc(kSize * sizeof(OLECHAR)));
  if (*out == nullptr) return E_OUTOFMEMORY;
  for (std::size_t i = 0; i < kSize; ++i)
    (*out)[i] = static_cast<OLECHAR>(identities::kClassName[i]);
  return S_OK;
}

HRESULT OleObjectFace::GetMiscStatus(DWORD aspect, DWORD* out) {
  if (out == nullptr) return E_POINTER;
  *out = aspect == DVASPECT_CONTENT ? identities::kMiscStatus : 0;
  return S_OK;
}

HRESULT OleObjectFace::Update() { return S_OK; }

HRESULT OleObjectFace::IsUpToDate() { return S_OK; }

HRESULT OleObjectFace::Advise(IAdviseSink* sink, DWORD* cookie) {
  if (cookie == nullptr) return E_POINTER;
  *cookie = 0;
  const auto alive = KeepAlive();
  if (!advise_holder_) {
    const HRESULT result = ::CreateOleAdviseHolder(advise_holder_.Receive());
    if (FAILED(result)) return result;
  }
  return advise_holder_->Advise(sink, cookie);
}

HRESULT OleObjectFace::Unadvise(DWORD cookie) {
  const auto alive = KeepAlive();
  return advise_holder_ ? advise_holder_->Unadvise(cookie) : OLE_E_NOCONNECTION;
}

HRESULT OleObjectFace::EnumAdvise(IEnumSTATDATA** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  const auto alive = KeepAlive();
  return advise_holder_ ? advise_holder_->EnumAdvise(out) : S_OK;
}

HRESULT OleObjectFace::SetMoniker(DWORD /*which*/, IMoniker* /*moniker*/) { return E_NOTIMPL; }

HRESULT OleObjectFace::GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** out) {
  if (out != nullptr) *out = nullptr;
  return E_NOTIMPL;
}

HRESULT OleObjectFace::InitFromData(IDataObject* /*data*/, BOOL /*creation*/, DWORD /*reserved*/) {
  return E_NOTIMPL;
}

HRESULT OleObjectFace::GetClipboardData(DWORD /*reserved*/, IDataObject** out) {
  if (out != nullptr) *out = nullptr;
  return E_NOTIMPL;
}

HRESULT OleObjectFace::SetColorScheme(LOGPALETTE* /*palette*/) { return E_NOTIMPL; }

}  // namespace quorvane::component
