#pragma once

#include <cstddef>
#include <string_view>

#include "runtime/vectors.h"

namespace quorvane {

// Loops over whole texts that go many characters at a time where the processor can. Each has a
// plain form, too, for the processors that cannot.

/// Whether all characters are plain ASCII, U+0020 to U+007E.
[[nodiscard]] bool IsPlainAscii(std::u16string_view text, bool with_vectors = HasVectors());

/// The first place, from `from` on, that holds a letter in either case, or the text's length;
/// `lower` is a small letter with its capital in `upper`, or any other ASCII character twice.
/// `from` is at most the text's length.
[[nodiscard]] std::size_t FindEitherCase(std::u16string_view text, std::size_t from, char16_t lower,
                                         char16_t upper, bool with_vectors = HasVectors());

}  // namespace quorvane
