#pragma once

#include "programs/form_host/windows/com.h"
#include "runtime/tagged_value.h"

namespace quorvane::examples {

/// A VARIANT that clears itself.
class Variant {
 public:
  Variant() { ::VariantInit(&value_); }
  /// A text becomes a BSTR, integers VT_I2 and VT_I4, a Boolean VT_BOOL, a number VT_R8, the empty
  /// kind VT_EMPTY. Raises out of memory (7).
  explicit Variant(const TaggedValue& value);
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { ::VariantClear(&value_); }

  [[nodiscard]] VARIANT* Get() { return &value_; }
  /// Hands the value to a caller, who clears it; this one is empty then.
  [[nodiscard]] VARIANT Detach();

 private:
  VARIANT value_;
};

/// The way back; any other kind of VARIANT raises type mismatch (13).
[[nodiscard]] TaggedValue ToTaggedValue(const VARIANT& value);

/// A BSTR's characters; a null one is the empty text.
[[nodiscard]] Text ToText(BSTR string);

/// For calls that take a wide string; good as long as the text.
[[nodiscard]] inline const wchar_t* Wide(const Text& text) {
  return reinterpret_cast<const wchar_t*>(text.Characters().c_str());
}
[[nodiscard]] inline Text FromWide(const wchar_t* characters) {
  return Text(reinterpret_cast<const char16_t*>(characters));
}

}  // namespace quorvane::examples
