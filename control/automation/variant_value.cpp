#include "control/automation/variant_value.h"

#include <optional>

#include "control/automation/error_to_hresult.h"
#include "control/automation/strings.h"
#include "platform/oleaut32.h"
#include "platform/windows/floating_point_unit.h"

namespace quorvane::component {
namespace {

std::optional<TaggedValue> TakeAsItIs(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_EMPTY:
      return TaggedValue();
    case VT_BOOL:
      return Boolean16{V_BOOL(&value)};
    case VT_I2:
      return std::int16_t{V_I2(&value)};
    case VT_UI1:
      return std::int16_t{V_UI1(&value)};
    case VT_I1:
      return std::int16_t{static_cast<signed char>(V_I1(&value))};
    case VT_UI2:
      return std::int32_t{V_UI2(&value)};
    case VT_I4:
      return static_cast<std::int32_t>(V_I4(&value));
    case VT_INT:
      return static_cast<std::int32_t>(V_INT(&value));
    case VT_R8:
      return V_R8(&value);
    case VT_BSTR:
      return FromBstr(V_BSTR(&value));
    default:
      return std::nullopt;
  }
}

// Anything but too large a value is a mismatch, whatever the system calls it.
[[noreturn]] void RaiseConversionFailure(HRESULT failure) {
  const bool is_telling = failure == DISP_E_OVERFLOW || failure == E_OUTOFMEMORY;
  RaiseFailedCall(is_telling ? failure : DISP_E_TYPEMISMATCH);
}

}  // namespace

Variant::Variant(const TaggedValue& value) {
  if (const auto* boolean = value.As<Boolean16>()) V_BOOL(&value_) = boolean->bits;
  if (const auto* integer = value.As<std::int16_t>()) V_I2(&value_) = *integer;
  if (const auto* integer = value.As<std::int32_t>()) V_I4(&value_) = *integer;
  if (const auto* number = value.As<double>()) V_R8(&value_) = *number;
  if (const auto* text = value.As<Text>()) V_BSTR(&value_) = NewBstr(*text);
  V_VT(&value_) = TypeOf(value);
}

VARTYPE TypeOf(const TaggedValue& value) {
  if (value.Is<Boolean16>()) return VT_BOOL;
  if (value.Is<std::int16_t>()) return VT_I2;
  if (value.Is<std::int32_t>()) return VT_I4;
  if (value.Is<double>()) return VT_R8;
  return value.Is<Text>() ? VT_BSTR : VT_EMPTY;
}

bool IsMissing(const VARIANT& answer) {
  return V_VT(&answer) == VT_EMPTY ||
         (V_VT(&answer) == VT_ERROR && V_ERROR(&answer) == DISP_E_PARAMNOTFOUND);
}

TaggedValue ToTaggedValue(const VARIANT& value, VARTYPE wanted) {
  if (const std::optional<TaggedValue> taken = TakeAsItIs(value)) return *taken;
  Variant converted;
  const FloatingPointUnit unit;
  // The call only reads what it converts.
  const HRESULT result = ::VariantChangeTypeEx(converted.Get(), const_cast<VARIANT*>(&value),
                                               Oleaut32::kEnglishUnitedStates,
                                               VARIANT_NOUSEROVERRIDE | VARIANT_ALPHABOOL, wanted);
  if (FAILED(result)) RaiseConversionFailure(result);
  const std::optional<TaggedValue> taken = TakeAsItIs(*converted.Get());
  if (!taken) RaiseConversionFailure(DISP_E_TYPEMISMATCH);
  return *taken;
}

}  // namespace quorvane::component
