#include "control/object/in_place.h"

#include <utility>

namespace quorvane::component {
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

// By the form of the notice that the site was entered by, or else by the plain one.
void TakeLeave(IOleInPlaceSite& site, bool entered_by_ex) {
  if (entered_by_ex) {
    const auto extended = Query<IOleInPlaceSiteEx>(&site);
    if (extended && SUCCEEDED(extended->OnInPlaceDeactivateEx(FALSE))) return;
  }
  site.OnInPlaceDeactivate();
}

HWND ParentInSite(IOleInPlaceSite& site, HWND verb_parent) {
  HWND parent = nullptr;
  return SUCCEEDED(site.GetWindow(&parent)) && parent != nullptr ? parent : verb_parent;
}

}  // namespace

void* InPlaceFace::Find(REFIID id) {
  if (id == __uuidof(IOleWindow)) return static_cast<IOleInPlaceObject*>(this);
  return InterfaceMap<IOleInPlaceObject, IOleInPlaceActiveObject>::Find(*this, id);
}

RECT InPlaceFace::Locked(const RECT& where) const {
  const SIZE size = extent_.Pixels();
  return {where.left, where.top, where.left + size.cx, where.top + size.cy};
}

// Some sites know only the extended form of the notice and refuse the plain one. The control counts
// as active from before the notice, at which a container may show it, or send it away again.
void InPlaceFace::EnterSite(IOleClientSite* site) {
  const auto extended = Query<IOleInPlaceSiteEx>(site);
  const auto plain =
      extended ? ComPtr<IOleInPlaceSite>(extended.Get()) : Query<IOleInPlaceSite>(site);
  if (!plain || plain->CanInPlaceActivate() != S_OK) return;
  if (site_ || is_leaving_) return;  // changed by one of the questions
  site_ = plain;
  entered_by_ex_ = static_cast<bool>(extended);
  BOOL no_redraw = FALSE;
  const HRESULT result =
      extended ? extended->OnInPlaceActivateEx(&no_redraw, 0) : plain->OnInPlaceActivate();
  if (SUCCEEDED(result) || site_.Get() != plain.Get()) return;
  site_.Reset();  // refused, so there is nothing to take leave of
  window_.Destroy();
}

void InPlaceFace::ShowWindowInSite(HWND parent, const RECT* where) {
  const ComPtr<IOleInPlaceSite> entered = site_;
  const HWND parent_window = ParentInSite(*entered.Get(), parent);
  const RECT place = PlaceInSite(*entered.Get(), where);
  if (site_.Get() != entered.Get()) return;  // left again meanwhile
  if (window_.Handle() != nullptr) return;   // shown meanwhile
  window_.Create(parent_window, Locked(place));
  if (window_.Handle() == nullptr && site_.Get() == entered.Get()) Deactivate();
}

HRESULT InPlaceFace::Activate(IOleClientSite* site, HWND parent, const RECT* where) {
  const auto alive = KeepAlive();
  if (!site_ && !is_leaving_) EnterSite(site);
  if (site_ && window_.Handle() != nullptr)
    window_.Show(true);
  else if (site_)
    ShowWindowInSite(parent, where);
  return window_.Handle() != nullptr ? S_OK : OLE_E_NOT_INPLACEACTIVE;
}

// What is to be left is taken off first. No call below can make the control active anew, so that
// none of the site is left when this returns: some containers destroy their site next.
void InPlaceFace::Deactivate() {
  if (is_leaving_) return;
  is_leaving_ = true;
  ComPtr<IOleInPlaceSite> left = std::exchange(site_, {});
  window_.Destroy();
  if (left) TakeLeave(*left.Get(), entered_by_ex_);
  left.Reset();
  is_leaving_ = false;
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
  const auto alive = KeepAlive();
  logic_.Resize();
  if (window_.Handle() == nullptr) return S_OK;
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

}  // namespace quorvane::component
