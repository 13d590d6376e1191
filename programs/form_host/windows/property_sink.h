#pragma once

#include <vector>

#include "programs/form_host/windows/com.h"

namespace quorvane::programs {

/// Hears which properties of the control change, and remembers them until they are taken.
class PropertySink final : public Counted<IPropertyNotifySink> {
 public:
  HRESULT STDMETHODCALLTYPE OnChanged(DISPID id) override {
    try {
      changed_.push_back(id);
      return S_OK;
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }
  /// Every change is allowed.
  HRESULT STDMETHODCALLTYPE OnRequestEdit(DISPID /*id*/) override { return S_OK; }

  [[nodiscard]] std::vector<DISPID> Take() { return std::exchange(changed_, {}); }

 private:
  std::vector<DISPID> changed_;
};

}  // namespace quorvane::programs
