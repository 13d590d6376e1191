#pragma once

#include <array>
#include <string>
#include <string_view>

#include "runtime/tagged_value.h"
#include "runtime/text.h"

namespace quorvane::examples {

/// The seven settings by their members' names, in the order in which they are saved.
inline constexpr std::array kSettings{
    u"ServerAddress", u"ServerPort", u"ServerFile", u"UseProxy",
    u"ProxyServer",   u"UserName",   u"Password",
};

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

}  // namespace quorvane::examples
