#pragma once

#include "control/automation/com.h"
#include "runtime/tagged_value.h"

namespace quorvane::component {

/// A VARIANT that is cleared at its end.
class Variant {
 public:
  Variant() { ::VariantInit(&value_); }
  /// Owns a copy of the value; a text becomes a BSTR. Throws std::bad_alloc.
  explicit Variant(const TaggedValue& value);
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { ::VariantClear(&value_); }

  [[nodiscard]] VARIANT* Get() { return &value_; }
  /// Hands the value to a caller, who clears it; this one is empty then.
  [[nodiscard]] VARIANT Detach() { return std::exchange(value_, VARIANT{}); }
  VARIANT* operator->() { return &value_; }

 private:
  VARIANT value_{};
};

/// The type in which a value of that kind goes out: VT_EMPTY, VT_BOOL, VT_I2, VT_I4, VT_R8,
/// VT_BSTR.
[[nodiscard]] VARTYPE TypeOf(const TaggedValue& value);

/// Whether a successful answer says "not there": VT_EMPTY, or the error DISP_E_PARAMNOTFOUND.
[[nodiscard]] bool IsMissing(const VARIANT& answer);

/// The value of a VARIANT of any type. Types that a tagged value knows, and integers that fit in 32
/// bits, are taken as they are; any other (dates, currency, objects with a default value,
/// references
/// ...) is first converted to `wanted` by the system, by the conventions of
/// platform/conversions.h. Raises type mismatch (13), overflow (6).
[[nodiscard]] TaggedValue ToTaggedValue(const VARIANT& value, VARTYPE wanted);

}  // namespace quorvane::component
