#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/component/unknown_base.h"

namespace quorvane::component {

/// A container's site that writes down what it is told. What it offers and how it answers is set
/// before use, so that it can stand for each kind of container, friendly or not.
class FakeSite final : public FakeUnknown<IOleClientSite, IOleInPlaceSiteEx, IOleControlSite> {
 public:
  enum class Offers { kClientSiteOnly, kInPlaceSite, kInPlaceSiteEx };

  explicit FakeSite(Offers offers = Offers::kInPlaceSiteEx, HWND window = nullptr)
      : offers_(offers), window_(window) {}
  ~FakeSite() = default;

  // IOleClientSite
  HRESULT STDMETHODCALLTYPE SaveObject() override { return Note("SaveObject"); }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** moniker) override {
    *moniker = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** container) override {
    *container = nullptr;
    return E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE ShowObject() override { return Note("ShowObject"); }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return Note("OnShowWindow"); }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

  // IOleWindow
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = window_;
    const HRESULT noted = Note("GetWindow");
    return FAILED(noted) ? noted : window_ != nullptr ? S_OK : E_FAIL;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

  // IOleInPlaceSite
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return Note("CanInPlaceActivate"); }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return Note("OnInPlaceActivate"); }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return Note("OnUIActivate"); }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame,
                                             IOleInPlaceUIWindow** document, RECT* position,
                                             RECT* clip, OLEINPLACEFRAMEINFO* info) override {
    *frame = nullptr;
    *document = nullptr;
    frame_info_size = info->cb;
    *position = rectangle;
    *clip = clip_rectangle;
    return Note("GetWindowContext");
  }
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return Note("OnUIDeactivate"); }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return Note("OnInPlaceDeactivate"); }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT asked) override {
    asked_rectangles.push_back(*asked);
    const HRESULT result = Note("OnPosRectChange");
    if (on_pos_rect_change) on_pos_rect_change(*asked);
    return result;
  }

  // IOleInPlaceSiteEx
  HRESULT STDMETHODCALLTYPE OnInPlaceActivateEx(BOOL* no_redraw, DWORD) override {
    if (no_redraw != nullptr) *no_redraw = FALSE;
    no_redraw_pointer_given = no_redraw != nullptr;
    return Note("OnInPlaceActivateEx");
  }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivateEx(BOOL) override {
    return Note("OnInPlaceDeactivateEx");
  }
  HRESULT STDMETHODCALLTYPE RequestUIActivate() override { return Note("RequestUIActivate"); }

  // IOleControlSite
  HRESULT STDMETHODCALLTYPE OnControlInfoChanged() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE LockInPlaceActive(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetExtendedControl(IDispatch** extended) override {
    *extended = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*, DWORD) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE OnFocus(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ShowPropertyFrame() override { return E_NOTIMPL; }

  IOleClientSite* Site() { return this; }
  bool WasTold(const std::string& call) const {
    return std::find(log.begin(), log.end(), call) != log.end();
  }
  long Times(const std::string& call) const { return std::count(log.begin(), log.end(), call); }

  std::vector<std::string> log;
  std::string failing_call;  ///< its name; it answers `failure`
  HRESULT failure = E_NOTIMPL;
  RECT rectangle{10, 20, 38, 48};
  RECT clip_rectangle{0, 0, 1000, 1000};
  UINT frame_info_size = 0;
  bool no_redraw_pointer_given = false;
  std::vector<RECT> asked_rectangles;
  std::function<void(const RECT&)> on_pos_rect_change;
  std::function<void(const std::string&)> on_call;  ///< what it does at each call, by name

 private:
  HRESULT Note(const std::string& call) {
    log.push_back(call);
    if (const auto now = on_call) now(call);
    return call == failing_call ? failure : S_OK;
  }

  void* Find(REFIID id) override {
    if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IOleClientSite)) {
      return static_cast<IOleClientSite*>(this);
    }
    if (offers_ == Offers::kClientSiteOnly) return nullptr;
    if (IsEqualIID(id, IID_IOleInPlaceSite)) return static_cast<IOleInPlaceSite*>(this);
    if (IsEqualIID(id, IID_IOleControlSite)) return static_cast<IOleControlSite*>(this);
    if (offers_ == Offers::kInPlaceSiteEx && IsEqualIID(id, IID_IOleInPlaceSiteEx)) {
      return static_cast<IOleInPlaceSiteEx*>(this);
    }
    return nullptr;
  }

  Offers offers_;
  HWND window_;
};

}  // namespace quorvane::component
