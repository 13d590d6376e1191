#pragma once

#include <cstdint>

#include "platform/oleaut32.h"
#include "runtime/boolean16.h"
#include "runtime/tagged_value.h"
#include "runtime/text.h"

namespace quorvane {

// What a tagged value is as another kind, by the usual rules of oleaut. Texts and numbers
// become each other by the conventions of English (United States) as they are delivered, the
// language of the type library, so that a saved form and the registry mean the same on every
// system: "." is the decimal point, "," stands between groups of digits.
//
// Each raises type mismatch (13) when the value has no meaning in that kind, overflow (6) when it
// is out of range, out of memory (7).

/// Empty is the empty text; "True" and "False"; a number in its shortest form of up to 15 digits.
[[nodiscard]] Text ToText(const TaggedValue& value, Oleaut32& oleaut = oleaut32());

/// Empty is 0, True -1; a fraction is rounded to the nearest integer, ties to even; a text counts
/// as Oleaut32::VarI2FromStr() and VarI4FromStr() say. Its characters behind a zero do not count.
[[nodiscard]] std::int16_t ToInteger16(const TaggedValue& value, Oleaut32& oleaut = oleaut32());
/// Likewise.
[[nodiscard]] std::int32_t ToInteger32(const TaggedValue& value, Oleaut32& oleaut = oleaut32());

/// Always -1 or 0: a number by being unlike zero; a text as Oleaut32::VarBoolFromStr() says.
[[nodiscard]] Boolean16 ToBoolean(const TaggedValue& value, Oleaut32& oleaut = oleaut32());

}  // namespace quorvane
