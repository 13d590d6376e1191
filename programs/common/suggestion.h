#pragma once

#include <span>
#include <string>
#include <string_view>

namespace quorvane::programs {

/// "; did you mean 'NAME'?" with the known name that a mistyped word is most like, by the letters
/// that would have to be changed, added, left out or swapped; empty when none is like it.
[[nodiscard]] std::string Suggestion(std::string_view word, std::span<const std::string> names);

}  // namespace quorvane::programs
