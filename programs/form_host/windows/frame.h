#pragma once

#include "programs/form_host/windows/com.h"

namespace quorvane::programs {

/// The frame around the form: a window without tool bars and menus, which therefore has nothing to
/// share with an active control.
class Frame final : public Counted<IOleInPlaceFrame> {
 public:
  explicit Frame(HWND window) : window_(window) {}

  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = window_;
    return window_ != nullptr ? S_OK : E_FAIL;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL /*enter*/) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetBorder(LPRECT /*border*/) override { return INPLACE_E_NOTOOLSPACE; }
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS /*widths*/) override {
    return INPLACE_E_NOTOOLSPACE;
  }
  HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS widths) override {
    return widths == nullptr ? S_OK : INPLACE_E_NOTOOLSPACE;
  }
  /// The object whose keys come before the form's own; null when it goes.
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* object,
                                            LPCOLESTR /*name*/) override {
    active_ = ComPtr<IOleInPlaceActiveObject>(object);
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU /*shared*/,
                                        LPOLEMENUGROUPWIDTHS /*widths*/) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU /*shared*/, HOLEMENU /*menu*/, HWND /*active*/) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU /*shared*/) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR /*text*/) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL /*enable*/) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG /*message*/, WORD /*id*/) override {
    return S_FALSE;
  }

  /// Whether the active object, if there is one, takes the key for itself.
  [[nodiscard]] bool ActiveObjectTakes(MSG& message) const {
    const ComPtr<IOleInPlaceActiveObject> active = active_;
    return active && active->TranslateAccelerator(&message) == S_OK;
  }

 protected:
  void* Other(REFIID id) override {
    const bool is_base = id == IID_IOleWindow || id == IID_IOleInPlaceUIWindow;
    return is_base ? static_cast<IOleInPlaceFrame*>(this) : nullptr;
  }

 private:
  HWND window_;
  ComPtr<IOleInPlaceActiveObject> active_;
};

}  // namespace quorvane::programs
