#pragma once

#include <string>
#include <string_view>

#include "control/interface/identities.h"
#include "runtime/tagged_value.h"
#include "runtime/text.h"

namespace quorvane::programs {

/// The seven settings, in the order in which they are saved; here each goes by its member's name.
inline constexpr const auto& kSettings = identities::kProperties;

/// A setting's value for display, as a form file spells it. A password shows as eight asterisks,
/// whatever its length.
[[nodiscard]] std::string Display(const Text& setting, const TaggedValue& value);

/// "NAME=VALUE" of the command line.
struct Change {
  Text setting;
  Text value;
};

/// Splits at the first "="; the name must be one of kSettings, in its spelling. Raises UsageError.
[[nodiscard]] Change ParseChange(std::string_view word);

}  // namespace quorvane::programs
