#pragma once

#include <string>

#include "platform/kernel32.h"

namespace quorvane::programs {

/// The calls of the system's base library for the profile file of that name on the command line. On
/// Linux they reach it by the bytes of its name, also where the 8-bit name that the calls are given
/// cannot hold them; on Windows they are the system's own. Good until the next call.
[[nodiscard]] Kernel32& ProfileCallsFor(const std::string& file);

}  // namespace quorvane::programs
