#pragma once

#include <string>
#include <string_view>

#include "runtime/text.h"

namespace quorvane {

/// The text of UTF-8 (RFC 3629) bytes, at the edges of the programs. A malformed sequence becomes
/// U+FFFD, one for each maximal ill-formed part.
[[nodiscard]] Text FromUtf8(std::string_view bytes);
/// The text in UTF-8; a single half of a surrogate pair goes out as U+FFFD.
[[nodiscard]] std::string ToUtf8(const Text& text);

}  // namespace quorvane
