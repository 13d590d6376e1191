#pragma once

#include "runtime/code_page.h"

namespace quorvane {

/// The system's default 8-bit code page.
[[nodiscard]] const CodePage& systemCodePage() noexcept;

}  // namespace quorvane
