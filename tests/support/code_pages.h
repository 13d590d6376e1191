#pragma once

#include "runtime/code_page.h"

namespace quorvane::testing {

/// The two pages that the tests use whatever the system's own is: Western European, one byte for
/// each character, and Japanese, one or two bytes.
[[nodiscard]] const CodePage& Page1252();
[[nodiscard]] const CodePage& Page932();

}  // namespace quorvane::testing
