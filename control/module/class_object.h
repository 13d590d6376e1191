#pragma once

#include <atomic>

#include "control/automation/com.h"

namespace quorvane::component {

/// The class object of SecurityCtrl. There is one, never destroyed; each reference to it holds the
/// module.
class ClassObject final : public IClassFactory {
 public:
  [[nodiscard]] static ClassObject& Instance();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  /// An outer object must ask for IID_IUnknown (else CLASS_E_NOAGGREGATION).
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** out) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

 private:
  std::atomic<ULONG> references_{0};
};

}  // namespace quorvane::component
