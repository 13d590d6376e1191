#pragma once

#include "control/SecurityCtrl.h"
#include "control/automation/face.h"
#include "control/object/extent.h"
#include "control/object/in_place.h"
#include "control/object/persistence.h"
#include "control/object/view.h"

namespace quorvane::component {

/// The control as an embedded object: its site, its verbs, its size, its end. Containers call these
/// in any order, before and after the initialisation, with and without a site.
class OleObjectFace final : public Face<IOleObject> {
 public:
  OleObjectFace(IUnknown* outer, SecurityCtrl& logic, const Extent& extent,
                PersistenceFace& persistence, InPlaceFace& in_place, ViewFace& view)
      : Face(outer),
        logic_(logic),
        extent_(extent),
        persistence_(persistence),
        in_place_(in_place),
        view_(view) {}

  [[nodiscard]] void* Find(REFIID id);

  // IOleObject: the site.
  /// Always S_OK. On null the control deactivates and gives back all that it took from the site:
  /// some containers destroy the site next, whatever is still counted. Sinks with a cookie wait for
  /// their owners.
  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override;
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** out) override;
  HRESULT STDMETHODCALLTYPE SetHostNames(const OLECHAR* application,
                                         const OLECHAR* object) override;
  /// Deactivates, has a dirty control saved unless told not to, tells the advise sinks. Gives the
  /// result of the saving; may be repeated.
  HRESULT STDMETHODCALLTYPE Close(DWORD save_option) override;

  // IOleObject: verbs. All that show the control activate it in place.
  HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, MSG* message, IOleClientSite* active_site, LONG index,
                                   HWND parent, const RECT* where) override;
  HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB** out) override;

  // IOleObject: the size. The extent is the locked one, whatever a container asks for; SetExtent
  // succeeds all the same, since some containers give up at a refusal.
  HRESULT STDMETHODCALLTYPE SetExtent(DWORD aspect, SIZEL* asked) override;
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, SIZEL* out) override;

  // IOleObject: who it is.
  HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* out) override;
  HRESULT STDMETHODCALLTYPE GetUserType(DWORD form, LPOLESTR* out) override;
  HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD aspect, DWORD* out) override;
  HRESULT STDMETHODCALLTYPE Update() override;
  HRESULT STDMETHODCALLTYPE IsUpToDate() override;

  // IOleObject: advise sinks.
  HRESULT STDMETHODCALLTYPE Advise(IAdviseSink* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA** out) override;

  // IOleObject: what it does not do (E_NOTIMPL).
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD which, IMoniker* moniker) override;
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD assign, DWORD which, IMoniker** out) override;
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject* data, BOOL creation, DWORD reserved) override;
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD reserved, IDataObject** out) override;
  HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE* palette) override;

 private:
  [[nodiscard]] HRESULT Show(IOleClientSite* active_site, HWND parent, const RECT* where);

  SecurityCtrl& logic_;
  const Extent& extent_;
  PersistenceFace& persistence_;
  InPlaceFace& in_place_;
  ViewFace& view_;
  ComPtr<IOleClientSite> site_;
  ComPtr<IOleAdviseHolder> advise_holder_;
};

/// The control side towards the container: no keys, no ambient property is read, and there are no
/// events to freeze. Property notifications go out all the same while events are frozen, since some
/// designers never thaw them.
class OleControlFace final : public Face<IOleControl> {
 public:
  using Face::Face;

  [[nodiscard]] void* Find(REFIID id);

  HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO* out) override;
  HRESULT STDMETHODCALLTYPE OnMnemonic(MSG* message) override;
  HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID id) override;
  HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL freeze) override;
};

}  // namespace quorvane::component
