#include "programs/form_host/windows/form_property_bag.h"

namespace quorvane::programs {

HRESULT FormPropertyBag::Read(LPCOLESTR name, VARIANT* value, IErrorLog* /*log*/) {
  if (name == nullptr || value == nullptr) return E_POINTER;
  try {
    const TaggedValue* const stored = bag_.Find(FromWide(name));
    if (stored == nullptr) return E_INVALIDARG;
    *value = Variant(*stored).Detach();
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT FormPropertyBag::Write(LPCOLESTR name, VARIANT* value) {
  if (name == nullptr || value == nullptr) return E_POINTER;
  try {
    bag_.Put(FromWide(name), component::ToTaggedValue(*value, VT_BSTR));
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

}  // namespace quorvane::programs
