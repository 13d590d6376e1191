#pragma once

#include <cstdint>

#include "runtime/text.h"

namespace quorvane {

/// The first `count` characters, or the whole text when it has no more. Raises invalid procedure
/// call (5) for a negative count.
[[nodiscard]] Text FirstCharacters(Text text, std::int32_t count);

/// `count` times the same character. Raises invalid procedure call (5) for a negative count.
[[nodiscard]] Text RepeatedCharacter(std::int32_t count, char16_t character);

/// The text without the spaces (code 32, no other blank) at its start and end.
[[nodiscard]] Text TrimSpaces(Text text);

}  // namespace quorvane
