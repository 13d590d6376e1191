#pragma once

#include "programs/form_host/form_bag.h"
#include "programs/form_host/windows/com.h"

namespace quorvane::programs {

/// The form's bag as the control sees it. A value is handed out in the kind in which it is stored,
/// whatever kind the control hints at: converting is the control's affair. A missing name is
/// E_INVALIDARG.
class FormPropertyBag final : public Counted<IPropertyBag> {
 public:
  /// The bag must outlive the control's call that this one is made for.
  explicit FormPropertyBag(FormBag& bag) : bag_(bag) {}

  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog* log) override;
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR name, VARIANT* value) override;

 private:
  FormBag& bag_;
};

}  // namespace quorvane::programs
