#include "control/object/view.h"

#include "control/interface/identities.h"
#include "platform/windows/module_file.h"

namespace quorvane::component {
namespace {

// A container may have turned its axes; the picture stays upright. A metafile knows no device
// units, and takes the bounds as they are.
void DrawUpright(HDC dc, const RECTL& bounds) {
  RECT where{bounds.left, bounds.top, bounds.right, bounds.bottom};
  if (::GetDeviceCaps(dc, TECHNOLOGY) == DT_METAFILE) return DrawControlIcon(dc, where);
  const int state = ::SaveDC(dc);
  ::LPtoDP(dc, reinterpret_cast<POINT*>(&where), 2);
  ::SetMapMode(dc, MM_TEXT);
  ::SetWindowOrgEx(dc, 0, 0, nullptr);
  ::SetViewportOrgEx(dc, 0, 0, nullptr);
  DrawControlIcon(dc, where);
  ::RestoreDC(dc, state);
}

}  // namespace

void DrawControlIcon(HDC dc, const RECT& where) {
  ::FillRect(dc, &where, ::GetSysColorBrush(COLOR_BTNFACE));
  // Loaded for each drawing, which is rare: a shared icon would outlive the module.
  const HANDLE icon =
      ::LoadImageW(ModuleInstance(), MAKEINTRESOURCEW(identities::kControlIconResource), IMAGE_ICON,
                   0, 0, LR_DEFAULTCOLOR);
  if (icon == nullptr) return;
  ::DrawIconEx(dc, where.left, where.top, static_cast<HICON>(icon), where.right - where.left,
               where.bottom - where.top, 0, nullptr, DI_NORMAL);
  ::DestroyIcon(static_cast<HICON>(icon));
}

void* ViewFace::Find(REFIID id) { return InterfaceMap<IViewObject, IViewObject2>::Find(*this, id); }

HRESULT ViewFace::Draw(DWORD aspect, LONG /*index*/, void* /*aspect_data*/,
                       DVTARGETDEVICE* /*target*/, HDC /*target_dc*/, HDC dc, const RECTL* bounds,
                       const RECTL* /*window_bounds*/,
                       BOOL(STDMETHODCALLTYPE* /*go_on*/)(ULONG_PTR), ULONG_PTR /*go_on_data*/) {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (dc == nullptr || bounds == nullptr) return E_INVALIDARG;
  DrawUpright(dc, *bounds);
  return S_OK;
}

HRESULT ViewFace::GetColorSet(DWORD /*aspect*/, LONG /*index*/, void* /*aspect_data*/,
                              DVTARGETDEVICE* /*target*/, HDC /*target_dc*/, LOGPALETTE** out) {
  if (out != nullptr) *out = nullptr;
  return E_NOTIMPL;
}

HRESULT ViewFace::Freeze(DWORD /*aspect*/, LONG /*index*/, void* /*aspect_data*/, DWORD* out) {
  if (out != nullptr) *out = 0;
  return E_NOTIMPL;
}

HRESULT ViewFace::Unfreeze(DWORD /*key*/) { return E_NOTIMPL; }

HRESULT ViewFace::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  if (sink != nullptr && aspects != DVASPECT_CONTENT) return DV_E_DVASPECT;
  const auto alive = KeepAlive();
  const ComPtr<IAdviseSink> kept(sink);
  aspects_ = sink != nullptr ? aspects : 0;
  flags_ = sink != nullptr ? flags : 0;
  sink_ = kept;
  if (sink == nullptr || (flags & ADVF_PRIMEFIRST) == 0) return S_OK;
  sink->OnViewChange(DVASPECT_CONTENT, -1);
  if ((flags & ADVF_ONLYONCE) != 0 && sink_.Get() == sink) ForgetSink();
  return S_OK;
}

HRESULT ViewFace::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** out) {
  if (aspects != nullptr) *aspects = aspects_;
  if (flags != nullptr) *flags = flags_;
  if (out != nullptr) sink_.CopyTo(out);
  return S_OK;
}

HRESULT ViewFace::GetExtent(DWORD aspect, LONG /*index*/, DVTARGETDEVICE* /*target*/, SIZEL* out) {
  if (out == nullptr) return E_POINTER;
  *out = {};
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  *out = extent_.Units();
  return S_OK;
}

}  // namespace quorvane::component
