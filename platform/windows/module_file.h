#pragma once

#include "platform/windows/os_headers.h"
#include "runtime/text.h"

namespace quorvane {

/// The module that this code is linked into.
[[nodiscard]] HINSTANCE ModuleInstance();

/// The full name of its file, however long. Throws std::bad_alloc.
[[nodiscard]] Text ModuleFileName();

}  // namespace quorvane
