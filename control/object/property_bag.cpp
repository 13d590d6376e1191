#include "control/object/property_bag.h"

#include "control/automation/error_to_hresult.h"
#include "control/automation/strings.h"
#include "control/automation/variant_value.h"

namespace quorvane::server {

TaggedValue ContainerBag::ReadProperty(const Text& name, const TaggedValue& default_value) {
  const VARTYPE wanted = TypeOf(default_value);
  Variant answer;
  V_VT(answer.Get()) = wanted;
  const HRESULT result = bag_.Read(Wide(name), answer.Get(), log_);
  if (result == E_INVALIDARG) return default_value;
  if (FAILED(result)) RaiseFailedCall(result == DISP_E_OVERFLOW ? result : DISP_E_TYPEMISMATCH);
  if (IsMissing(*answer.Get())) return default_value;
  return ToTaggedValue(*answer.Get(), wanted);
}

void ContainerBag::WriteProperty(const Text& name, const TaggedValue& value,
                                 const TaggedValue& default_value) {
  if (value == default_value) return;
  Variant out(value);
  const HRESULT result = bag_.Write(Wide(name), out.Get());
  if (FAILED(result)) RaiseFailedCall(result);
}

}  // namespace quorvane::server
