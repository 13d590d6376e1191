#pragma once

#include <string>

namespace quorvane::programs {

/// Makes the code page of that number the system's, for the rest of the program. Raises UsageError
/// for what is no number of a known page, and wherever the system has a code page of its own.
void ChooseCodePage(const std::string& number);

}  // namespace quorvane::programs
