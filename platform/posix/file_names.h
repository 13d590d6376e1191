#pragma once

#include <string>
#include <string_view>

#include "runtime/text.h"

namespace quorvane {

// Names of files between their texts here and the bytes of the system.

/// The text of a name in UTF-8. A byte that belongs to no UTF-8 character becomes the single half
/// of a surrogate pair U+DC00 + byte, so that every name of the system has a text of its own.
[[nodiscard]] Text FileNameFrom(std::string_view bytes);

/// The bytes of a name's text, the reverse of that: each backslash is taken as a slash, and the
/// name ends at its first zero.
[[nodiscard]] std::string SystemFileName(std::u16string_view name);

}  // namespace quorvane
