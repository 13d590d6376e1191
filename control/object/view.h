#pragma once

#include "control/automation/com.h"
#include "control/automation/face.h"
#include "control/object/extent.h"
#include "control/object/storage.h"

namespace quorvane::component {

/// Draws the design-time picture, the module's icon, into the rectangle, over the colour of
/// dialogs. What the system cannot draw is left out.
void DrawControlIcon(HDC dc, const RECT& where);

/// The control's picture for containers that draw it themselves. Works without a site and while the
/// control is inactive; any aspect but the content is DV_E_DVASPECT.
class ViewFace final : public Face<IViewObject2> {
 public:
  ViewFace(IUnknown* outer, const Extent& extent) : Face(outer), extent_(extent) {}

  [[nodiscard]] void* Find(REFIID id);
  /// Gives back the sink, which containers often leave behind.
  void ForgetSink() { sink_.Reset(); }

  // IViewObject2. Target device, clip bounds and callback may be null; the index is not looked at.
  HRESULT STDMETHODCALLTYPE Draw(DWORD aspect, LONG index, void* aspect_data,
                                 DVTARGETDEVICE* target, HDC target_dc, HDC dc, const RECTL* bounds,
                                 const RECTL* window_bounds,
                                 BOOL(STDMETHODCALLTYPE* go_on)(ULONG_PTR),
                                 ULONG_PTR go_on_data) override;
  HRESULT STDMETHODCALLTYPE GetColorSet(DWORD aspect, LONG index, void* aspect_data,
                                        DVTARGETDEVICE* target, HDC target_dc,
                                        LOGPALETTE** out) override;
  HRESULT STDMETHODCALLTYPE Freeze(DWORD aspect, LONG index, void* aspect_data,
                                   DWORD* out) override;
  HRESULT STDMETHODCALLTYPE Unfreeze(DWORD key) override;
  /// One sink at a time, null for none. The picture never changes, so it hears of a change only
  /// when it asks for one at once (ADVF_PRIMEFIRST).
  HRESULT STDMETHODCALLTYPE SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
  HRESULT STDMETHODCALLTYPE GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** out) override;
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* target,
                                      SIZEL* out) override;

 private:
  const Extent& extent_;
  ComPtr<IAdviseSink> sink_;
  DWORD aspects_ = 0;
  DWORD flags_ = 0;
};

/// The control as data, for documents that copy an embedded object and for the clipboard: its
/// picture as a metafile (CF_METAFILEPICT), and itself in a storage with class id and settings,
/// from which a document can make another ("Embed Source"). Of the content only; the index is not
/// looked at. It takes no data and tells nobody of changes.
class DataFace final : public Face<IDataObject> {
 public:
  DataFace(IUnknown* outer, const Extent& extent, StorageFace& storage)
      : Face(outer), extent_(extent), storage_(storage) {}

  [[nodiscard]] void* Find(REFIID id);

  // IDataObject. The caller owns what it is given: by ReleaseStgMedium.
  HRESULT STDMETHODCALLTYPE GetData(FORMATETC* asked, STGMEDIUM* out) override;
  /// "Embed Source" only, into the caller's storage.
  HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC* asked, STGMEDIUM* medium) override;
  /// S_OK, or what of the request cannot be met: DV_E_FORMATETC, DV_E_DVASPECT or DV_E_TYMED.
  HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* asked) override;
  HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC* asked, FORMATETC* out) override;
  HRESULT STDMETHODCALLTYPE SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) override;
  HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** out) override;
  HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink,
                                    DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE DUnadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA** out) override;

 private:
  [[nodiscard]] HRESULT WriteSource(IStorage& storage);

  const Extent& extent_;
  StorageFace& storage_;
};

}  // namespace quorvane::component
