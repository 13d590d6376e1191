#include "control/object/view.h"

#include "control/automation/enumerator.h"
#include "control/automation/error_to_hresult.h"
#include "control/interface/identities.h"
#include "platform/windows/module_file.h"

namespace quorvane::component {
namespace {

// Drawn in memory first: a metafile keeps bitmaps, but no icons.
void DrawAsBitmap(HDC dc, const RECT& where, SIZE pixels) {
  const HDC screen = ::GetDC(nullptr);
  const HDC memory = ::CreateCompatibleDC(screen);
  const HBITMAP bitmap = ::CreateCompatibleBitmap(screen, pixels.cx, pixels.cy);
  ::ReleaseDC(nullptr, screen);
  const HGDIOBJ old = ::SelectObject(memory, bitmap);
  DrawControlIcon(memory, {0, 0, pixels.cx, pixels.cy});
  ::StretchBlt(dc, where.left, where.top, where.right - where.left, where.bottom - where.top,
               memory, 0, 0, pixels.cx, pixels.cy, SRCCOPY);
  ::SelectObject(memory, old);
  ::DeleteObject(bitmap);
  ::DeleteDC(memory);
}

// A container may have turned its axes; the picture stays upright. A metafile knows no device
// units, and takes the bounds as they are.
void DrawUpright(HDC dc, const RECTL& bounds, SIZE pixels) {
  RECT where{bounds.left, bounds.top, bounds.right, bounds.bottom};
  if (::GetDeviceCaps(dc, TECHNOLOGY) == DT_METAFILE) return DrawAsBitmap(dc, where, pixels);
  const int state = ::SaveDC(dc);
  ::LPtoDP(dc, reinterpret_cast<POINT*>(&where), 2);
  ::SetMapMode(dc, MM_TEXT);
  ::SetWindowOrgEx(dc, 0, 0, nullptr);
  ::SetViewportOrgEx(dc, 0, 0, nullptr);
  DrawControlIcon(dc, where);
  ::RestoreDC(dc, state);
}

// An offer as an enumerator holds it.
struct Format {
  FORMATETC offer;
  void CopyTo(FORMATETC* out) const { *out = offer; }
};

using FormatEnumerator = Enumerator<IEnumFORMATETC, Format, FORMATETC>;

FORMATETC PictureFormat() { return {CF_METAFILEPICT, nullptr, DVASPECT_CONTENT, -1, TYMED_MFPICT}; }

FORMATETC SourceFormat() {
  const auto format = static_cast<CLIPFORMAT>(::RegisterClipboardFormatW(L"Embed Source"));
  return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_ISTORAGE};
}

HRESULT Meets(const FORMATETC& offer, const FORMATETC& asked) {
  if (asked.cfFormat != offer.cfFormat) return DV_E_FORMATETC;
  if (asked.dwAspect != offer.dwAspect) return DV_E_DVASPECT;
  return (asked.tymed & offer.tymed) != 0 ? S_OK : DV_E_TYMED;
}

HMETAFILE NewMetafile(SIZE pixels) {
  const HDC dc = ::CreateMetaFileW(nullptr);
  if (dc == nullptr) return nullptr;
  ::SetMapMode(dc, MM_ANISOTROPIC);
  ::SetWindowOrgEx(dc, 0, 0, nullptr);
  ::SetWindowExtEx(dc, pixels.cx, pixels.cy, nullptr);
  DrawAsBitmap(dc, {0, 0, pixels.cx, pixels.cy}, pixels);
  return ::CloseMetaFile(dc);
}

// Null when there is no memory for it.
HMETAFILEPICT NewPicture(const Extent& extent) {
  const HMETAFILE metafile = NewMetafile(extent.Pixels());
  const HGLOBAL memory =
      metafile != nullptr ? ::GlobalAlloc(GMEM_MOVEABLE, sizeof(METAFILEPICT)) : nullptr;
  if (memory == nullptr) {
    ::DeleteMetaFile(metafile);
    return nullptr;
  }
  const SIZEL units = extent.Units();
  *static_cast<METAFILEPICT*>(::GlobalLock(memory)) = {MM_ANISOTROPIC, units.cx, units.cy,
                                                       metafile};
  ::GlobalUnlock(memory);
  return memory;
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
  DrawUpright(dc, *bounds, extent_.Pixels());
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

void* DataFace::Find(REFIID id) { return InterfaceMap<IDataObject>::Find(*this, id); }

HRESULT DataFace::WriteSource(IStorage& storage) {
  const auto alive = KeepAlive();
  const HRESULT result = storage.SetClass(AsGuid(identities::kClassId));
  return SUCCEEDED(result) ? storage_.Write(storage) : result;
}

HRESULT DataFace::GetData(FORMATETC* asked, STGMEDIUM* out) {
  if (asked == nullptr || out == nullptr) return E_POINTER;
  *out = {};
  HRESULT result = QueryGetData(asked);
  if (FAILED(result)) return result;
  if (asked->cfFormat == CF_METAFILEPICT) {
    out->hMetaFilePict = NewPicture(extent_);
    if (out->hMetaFilePict == nullptr) return E_OUTOFMEMORY;
    out->tymed = TYMED_MFPICT;
    return S_OK;
  }
  ComPtr<IStorage> storage;
  result = ::StgCreateDocfile(
      nullptr, STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_CREATE | STGM_DELETEONRELEASE, 0,
      storage.Receive());
  if (SUCCEEDED(result)) result = WriteSource(*storage.Get());
  if (FAILED(result)) return result;
  out->tymed = TYMED_ISTORAGE;
  storage.CopyTo(&out->pstg);
  return S_OK;
}

HRESULT DataFace::GetDataHere(FORMATETC* asked, STGMEDIUM* medium) {
  if (asked == nullptr || medium == nullptr) return E_POINTER;
  const HRESULT result = Meets(SourceFormat(), *asked);
  if (FAILED(result)) return result;
  if (medium->tymed != TYMED_ISTORAGE || medium->pstg == nullptr) return DV_E_TYMED;
  return WriteSource(*medium->pstg);
}

HRESULT DataFace::QueryGetData(FORMATETC* asked) {
  if (asked == nullptr) return E_POINTER;
  const HRESULT result = Meets(PictureFormat(), *asked);
  return result == DV_E_FORMATETC ? Meets(SourceFormat(), *asked) : result;
}

HRESULT DataFace::GetCanonicalFormatEtc(FORMATETC* asked, FORMATETC* out) {
  if (asked == nullptr || out == nullptr) return E_POINTER;
  *out = *asked;
  out->ptd = nullptr;  // the same on every device
  return DATA_S_SAMEFORMATETC;
}

HRESULT DataFace::SetData(FORMATETC* /*format*/, STGMEDIUM* /*medium*/, BOOL /*release*/) {
  return E_NOTIMPL;
}

HRESULT DataFace::EnumFormatEtc(DWORD direction, IEnumFORMATETC** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (direction != DATADIR_GET) return E_NOTIMPL;
  return Guarded([&] {
    FormatEnumerator::Create({{SourceFormat()}, {PictureFormat()}}, 0, out);
    return S_OK;
  });
}

HRESULT DataFace::DAdvise(FORMATETC* /*format*/, DWORD /*flags*/, IAdviseSink* /*sink*/,
                          DWORD* cookie) {
  if (cookie != nullptr) *cookie = 0;
  return OLE_E_ADVISENOTSUPPORTED;
}

HRESULT DataFace::DUnadvise(DWORD /*cookie*/) { return OLE_E_ADVISENOTSUPPORTED; }

HRESULT DataFace::EnumDAdvise(IEnumSTATDATA** out) {
  if (out != nullptr) *out = nullptr;
  return OLE_E_ADVISENOTSUPPORTED;
}

}  // namespace quorvane::component
