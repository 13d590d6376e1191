#include "programs/form_host/windows/variant.h"

#include "runtime/runtime_error.h"

namespace quorvane::examples {

Variant::Variant(const TaggedValue& value) : Variant() {
  if (const auto* const text = value.As<Text>()) {
    const std::u16string& characters = text->Characters();
    value_.bstrVal = ::SysAllocStringLen(Wide(*text), characters.size());
    if (value_.bstrVal == nullptr) Raise(ErrorNumber::kOutOfMemory);
    value_.vt = VT_BSTR;
  } else if (const auto* const boolean = value.As<Boolean16>()) {
    value_.vt = VT_BOOL;
    value_.boolVal = boolean->bits;
  } else if (const auto* const small = value.As<std::int16_t>()) {
    value_.vt = VT_I2;
    value_.iVal = *small;
  } else if (const auto* const large = value.As<std::int32_t>()) {
    value_.vt = VT_I4;
    value_.lVal = *large;
  } else if (const auto* const number = value.As<double>()) {
    value_.vt = VT_R8;
    value_.dblVal = *number;
  }
}

VARIANT Variant::Detach() {
  const VARIANT value = value_;
  ::VariantInit(&value_);
  return value;
}

TaggedValue ToTaggedValue(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
      return {};
    case VT_BSTR:
      return ToText(value.bstrVal);
    case VT_BOOL:
      return Boolean16{value.boolVal};
    case VT_I2:
      return value.iVal;
    case VT_I4:
      return std::int32_t{value.lVal};
    case VT_R8:
      return value.dblVal;
    default:
      Raise(ErrorNumber::kTypeMismatch);
  }
}

Text ToText(BSTR string) {
  return std::u16string_view(reinterpret_cast<const char16_t*>(string), ::SysStringLen(string));
}

}  // namespace quorvane::examples
