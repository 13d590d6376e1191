#pragma once

#include "control/automation/com.h"
#include "control/automation/face.h"
#include "control/object/extent.h"

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

}  // namespace quorvane::component
