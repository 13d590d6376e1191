#pragma once

#include <string>
#include <vector>

#include "programs/common/console.h"

namespace quorvane::programs {

// What a command reads whole: a file that is named on the command line, or "-" for standard input.
// Raises StreamError when it cannot be read, and above 64 MB, of which no more is read.

[[nodiscard]] std::string ReadInput(const std::string& name, Console& console);
/// Its lines without their ends, line feed or carriage return and line feed.
[[nodiscard]] std::vector<std::string> LinesOf(const std::string& name, Console& console);

}  // namespace quorvane::programs
