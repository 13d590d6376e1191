#pragma once

#include <cstdint>

namespace quorvane {

/// The run-time error number of a system error code (ERROR_*) that a file call failed with.
[[nodiscard]] std::int32_t FileErrorNumber(unsigned long system_code);

/// Raises that number, with its standard description and an absent source, for the calling thread's
/// last error.
[[noreturn]] void RaiseLastFileError();

}  // namespace quorvane
