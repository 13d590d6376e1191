#pragma once

#include <string>
#include <string_view>

namespace quorvane {

/// The form in which names are compared where the platform does not tell upper from lower case:
/// each character in upper case by itself, so that the length stays (the sharp s is not SS).
[[nodiscard]] std::u16string FoldCase(std::u16string_view name);

}  // namespace quorvane
