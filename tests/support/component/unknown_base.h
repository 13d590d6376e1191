#pragma once

#include <initializer_list>

#include "tests/support/component/com.h"

namespace quorvane::component {

/// The IUnknown half of a fake: counts references, answers the ids it is given, and lives on the
/// test's stack. The test asks `References()` at the end: 1 means that the control let go of it.
template <class... Interfaces>
class FakeUnknown : public Interfaces... {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    *out = Find(id);
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }

  ULONG References() const { return references_; }

 protected:
  ~FakeUnknown() = default;
  /// The interface of that id, uncounted, or null.
  virtual void* Find(REFIID id) = 0;

 private:
  ULONG references_ = 1;
};

}  // namespace quorvane::component
