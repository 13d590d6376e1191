#include "control/module/class_object.h"

#include "control/automation/error_to_hresult.h"
#include "control/automation/module_lock.h"
#include "control/object/control_object.h"

namespace quorvane::component {

ClassObject& ClassObject::Instance() {
  static constinit ClassObject instance;
  return instance;
}

HRESULT ClassObject::QueryInterface(REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  const bool is_ours = id == __uuidof(IUnknown) || id == __uuidof(IClassFactory);
  *out = is_ours ? static_cast<IClassFactory*>(this) : nullptr;
  if (!is_ours) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG ClassObject::AddRef() {
  LockModule();
  return ++references_;
}

ULONG ClassObject::Release() {
  const ULONG left = --references_;
  UnlockModule();
  return left;
}

HRESULT ClassObject::CreateInstance(IUnknown* outer, REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (outer != nullptr && id != __uuidof(IUnknown)) return CLASS_E_NOAGGREGATION;
  return Guarded([&] { return ControlObject::Create(outer, id, out); });
}

HRESULT ClassObject::LockServer(BOOL lock) {
  if (lock != FALSE)
    component::LockServer();
  else
    component::UnlockServer();
  return S_OK;
}

}  // namespace quorvane::component
