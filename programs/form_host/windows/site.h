#pragma once

#include "programs/form_host/windows/com.h"
#include "programs/form_host/windows/form_window.h"
#include "programs/form_host/windows/frame.h"

namespace quorvane::programs {

/// The control's place on the form: what it asks of its container. Control and site hold each
/// other; the form parts them with SetClientSite(NULL).
class Site final : public Counted<IOleClientSite, IOleInPlaceSite, IOleControlSite> {
 public:
  /// The form outlives the control, and so this site's use. Without a display it has no window;
  /// then the control cannot be activated.
  explicit Site(FormWindow& form)
      : form_(form), frame_(Make<Frame>(::GetAncestor(form.Handle(), GA_ROOT))) {}

  /// Whether the active control takes the key for itself.
  [[nodiscard]] bool ActiveObjectTakes(MSG& message) const {
    return frame_->ActiveObjectTakes(message);
  }

  // IOleClientSite
  HRESULT STDMETHODCALLTYPE SaveObject() override { return E_FAIL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) override;
  HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL /*show*/) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

  // IOleInPlaceSite
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL /*enter*/) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override;
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** page,
                                             LPRECT place, LPRECT clip,
                                             LPOLEINPLACEFRAMEINFO info) override;
  HRESULT STDMETHODCALLTYPE Scroll(SIZE /*extent*/) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL /*undoable*/) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return E_NOTIMPL; }
  /// The form lets a control take the place that it wants.
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT place) override;

  // IOleControlSite
  HRESULT STDMETHODCALLTYPE OnControlInfoChanged() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE LockInPlaceActive(BOOL /*lock*/) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetExtendedControl(IDispatch** control) override;
  HRESULT STDMETHODCALLTYPE TransformCoords(POINTL* /*himetric*/, POINTF* /*container*/,
                                            DWORD /*how*/) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* /*message*/, DWORD /*keys*/) override {
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE OnFocus(BOOL /*got*/) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ShowPropertyFrame() override { return E_NOTIMPL; }

 protected:
  void* Other(REFIID id) override {
    return id == IID_IOleWindow ? static_cast<IOleInPlaceSite*>(this) : nullptr;
  }

 private:
  FormWindow& form_;
  ComPtr<Frame> frame_;
};

}  // namespace quorvane::programs
