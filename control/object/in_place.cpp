#include "control/object/in_place.h"

#include <utility>

namespace quorvane::server {
namespace {

// The place that the site assigns; the verb's own where it does not.
RECT PlaceInSite(IOleInPlaceSite& site, const RECT* verb_place) {
  ComPtr<IOleInPlaceFrame> frame;
  ComPtr<IOleInPlaceUIWindow> document;
  RECT place{};
  RECT clip{};
  OLEINPLACEFRAMEINFO info{};
  info.cb = sizeof info;
  const HRESULT result =
      site.GetWindowContext(frame.Receive(), document.Receive(), &place, &clip, &info);
  if (SUCCEEDED(result)) return place;
  return verb_place != nullptr ? *verb_place : RECT{};
}

HWND ParentInSite(IOleInPlaceSite& site, HWND verb_parent) {
  HWND parent = nullptr;
  return SUCCEEDED(site.GetWindow(&parent)) && parent != nullptr ? parent : verb_parent;
}

}  // namespace

void* InPlaceFace::Find(REFIID id) {
  if (id == __uuidof(IOleWindow)) return static_cast<IOleInPlaceObject*>(this);
  return FindInterface<IOleInPlaceObject, IOleInPlaceActiveObject>(*this, id);
}

RECT InPlaceFace::Locked(const RECT& where) const {
  const SIZE size = extent_.Pixels();
  return {where.left, where.top, where.left + size.cx, where.top + size.cy};
}

// Some sites know only the extended form of the notice and refuse the plain one.
HRESULT InPlaceFace::EnterSite(IOleClientSite* site) {
  const auto extended = Query<IOleInPlaceSiteEx>(site);
  const auto plain =
      extended ? ComPtr<IOleInPlaceSite>(extended.Get()) : Query<IOleInPlaceSite>(site);
  if (!plain || plain->CanInPlaceActivate() != S_OK) return OLE_E_NOT_INPLACEACTIVE;
  BOOL no_redraw = FALSE;
  const HRESULT result =
      extended ? extended->OnInPlaceActivateEx(&no_redraw, 0) : plain->OnInPlaceActivate();
  if (FAILED(result)) return OLE_E_NOT_INPLACEACTIVE;
  site_ = plain;
  entered_by_ex_ = static_cast<bool>(extended);
  return S_OK;
}

HRESULT InPlaceFace::Activate(IOleClientSite* site, HWND parent, const RECT* where) {
  const auto alive = KeepAlive();
  if (!site_) {
    if (const HRESULT result = EnterSite(site); FAILED(result)) return result;
  }
  if (window_.Handle() != nullptr) {
    window_.Show(true);
    return S_OK;
  }
  const ComPtr<IOleInPlaceSite> entered = site_;
  const HWND parent_window = ParentInSite(*entered.Get(), parent);
  const RECT place = PlaceInSite(*entered.Get(), where);
  if (site_.Get() != entered.Get()) return OLE_E_NOT_INPLACEACTIVE;  // left again meanwhile
  if (window_.Handle() == nullptr && !window_.Create(parent_window, Locked(place))) {
    Deactivate();
    return OLE_E_NOT_INPLACEACTIVE;
  }
  return S_OK;
}

void InPlaceFace::Deactivate() {
  const ComPtr<IOleInPlaceSite> left = std::exchange(site_, {});
  window_.Destroy();
  if (!left) return;
  if (std::exchange(entered_by_ex_, false)) {
    const auto extended = Query<IOleInPlaceSiteEx>(left.Get());
    if (extended && SUCCEEDED(extended->OnInPlaceDeactivateEx(FALSE))) return;
  }
  left->OnInPlaceDeactivate();
}

HRESULT InPlaceFace::GetWindow(HWND* out) {
  if (out == nullptr) return E_POINTER;
  *out = window_.Handle();
  return *out != nullptr ? S_OK : E_FAIL;
}

HRESULT InPlaceFace::ContextSensitiveHelp(BOOL /*enter*/) { return E_NOTIMPL; }

HRESULT InPlaceFace::InPlaceDeactivate() {
  const auto alive = KeepAlive();
  Deactivate();
  return S_OK;
}

HRESULT InPlaceFace::UIDeactivate() { return S_OK; }

HRESULT InPlaceFace::SetObjectRects(const RECT* where, const RECT* clip) {
  if (where == nullptr) return E_POINTER;
  if (window_.Handle() == nullptr) return S_OK;
  const auto alive = KeepAlive();
  logic_.Resize();
  const RECT locked = Locked(*where);
  window_.Place(locked, clip);
  if (::EqualRect(&locked, where) != FALSE || is_telling_site_ || !site_) return S_OK;
  // A container that insists answers by calling this again, with its own size; without the mark two
  // who both insist would never end.
  is_telling_site_ = true;
  ComPtr<IOleInPlaceSite>(site_)->OnPosRectChange(&locked);
  is_telling_site_ = false;
  return S_OK;
}

HRESULT InPlaceFace::ReactivateAndUndo() { return INPLACE_E_NOTUNDOABLE; }

HRESULT InPlaceFace::TranslateAccelerator(MSG* /*message*/) { return S_FALSE; }

HRESULT InPlaceFace::OnFrameWindowActivate(BOOL /*activate*/) { return S_OK; }

HRESULT InPlaceFace::OnDocWindowActivate(BOOL /*activate*/) { return S_OK; }

HRESULT InPlaceFace::ResizeBorder(const RECT* /*border*/, IOleInPlaceUIWindow* /*window*/,
                                  BOOL /*is_frame*/) {
  return S_OK;
}

HRESULT InPlaceFace::EnableModeless(BOOL /*enable*/) { return S_OK; }

}  // namespace quorvane::server
