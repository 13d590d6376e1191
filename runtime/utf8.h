#pragma once

#include <string>
#include <string_view>

#include "runtime/text.h"

namespace quorvane {

/// UTF-8 (RFC 3629) at the edges of the programs. A malformed sequence becomes U+FFFD, one for each
/// maximal ill-formed part; a single half of a surrogate pair goes out as U+FFFD as well.
[[nodiscard]] Text FromUtf8(std::string_view bytes);
[[nodiscard]] std::string ToUtf8(const Text& text);

}  // namespace quorvane
