#pragma once

#include <memory>

#include "runtime/code_page.h"

namespace quorvane::testing {

/// The two pages that the tests use whatever the system's own is: Western European, one byte for
/// each character, and Japanese, one or two bytes.
[[nodiscard]] const CodePage& Page1252();
[[nodiscard]] const CodePage& Page932();

/// The page of that number without "best fits": what it lacks becomes a question mark. Null when
/// the platform has none.
[[nodiscard]] std::unique_ptr<CodePage> MakeExactPage(int number);

}  // namespace quorvane::testing
