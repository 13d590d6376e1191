#pragma once

#include <cstdint>

#include "platform/collation.h"
#include "runtime/text.h"

namespace quorvane::testing {

/// The searches in their longest form, step by step: every search begins anew, every replacement
/// rebuilds the whole text. What the house's own forms give must not differ.
[[nodiscard]] std::int32_t LiteralLastPosition(const Text& text, const Text& find,
                                               const Collation& collation);
[[nodiscard]] Text LiteralReplaceAll(const Text& text, const Text& find, const Text& replacement,
                                     const Collation& collation);

}  // namespace quorvane::testing
