#pragma once

#include "control/SecurityCtrl.h"
#include "control/automation/face.h"
#include "control/object/extent.h"
#include "control/object/window.h"

namespace quorvane::component {

/// In-place activation: the window on the container's form. There is no user interface beyond it,
/// so every verb that shows the control ends in the same state.
///
/// A container calls back from each of its calls, and may deactivate, activate or release the
/// control there; so does the owner of the parent window, which hears of the control's window.
/// After each such call the state is looked at again. What may have changed meanwhile: whether the
/// control is in a site and in which; whether there is a window and which; the size and place asked
/// for. The object itself is held by whoever calls Activate() or Deactivate().
class InPlaceFace final : public Face<IOleInPlaceObject, IOleInPlaceActiveObject> {
 public:
  InPlaceFace(IUnknown* outer, SecurityCtrl& logic, const Extent& extent)
      : Face(outer), logic_(logic), extent_(extent) {}

  [[nodiscard]] void* Find(REFIID id);

  /// Activates the control in the site, or shows the window again when it is active. `parent` and
  /// `where` are the verb's; they serve where the site does not tell its own and may be null.
  /// OLE_E_NOT_INPLACEACTIVE when the site is null or will not have it, when no window can be made,
  /// when the control was deactivated meanwhile, and while it is being deactivated.
  [[nodiscard]] HRESULT Activate(IOleClientSite* site, HWND parent, const RECT* where);
  /// Back to the inactive state; the site hears of it, once. May be repeated.
  void Deactivate();
  void Hide() { window_.Show(false); }

  // IOleWindow.
  /// E_FAIL and null while there is no window.
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* out) override;
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL enter) override;

  // IOleInPlaceObject.
  HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override;
  HRESULT STDMETHODCALLTYPE UIDeactivate() override;
  /// Takes left and top and keeps the locked size; a site that asked for another size is told so,
  /// once, by OnPosRectChange. S_OK in every state.
  HRESULT STDMETHODCALLTYPE SetObjectRects(const RECT* where, const RECT* clip) override;
  HRESULT STDMETHODCALLTYPE ReactivateAndUndo() override;

  // IOleInPlaceActiveObject.
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* message) override;
  HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL activate) override;
  HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL activate) override;
  HRESULT STDMETHODCALLTYPE ResizeBorder(const RECT* border, IOleInPlaceUIWindow* window,
                                         BOOL is_frame) override;
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) override;

 private:
  void EnterSite(IOleClientSite* site);
  void ShowWindowInSite(HWND parent, const RECT* where);
  [[nodiscard]] RECT Locked(const RECT& where) const;

  SecurityCtrl& logic_;
  const Extent& extent_;
  ComPtr<IOleInPlaceSite> site_;  // while active
  bool entered_by_ex_ = false;
  bool is_telling_site_ = false;
  bool is_leaving_ = false;
  ControlWindow window_;
};

}  // namespace quorvane::component
