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

/// A setting's value as its user edits it: without quotes, unless it could not be told from other
/// text then or holds control characters; then as a form file spells it. A password shows as eight
/// asterisks.
[[nodiscard]] Text TextToEdit(const Text& setting, const TaggedValue& value);

/// What the user has left there: what starts with a quote is read as in a form file, all else is
/// the value as it is. Raises FormFileError.
[[nodiscard]] TaggedValue ValueOfEdited(const Text& text);

}  // namespace quorvane::programs
