#pragma once

#include <cstdint>

namespace quorvane {

/// The run-time error number of a system error code (errno) that a file call failed with.
[[nodiscard]] std::int32_t FileErrorNumber(int system_code);

/// Raises that number, with its standard description and an absent source.
[[noreturn]] void RaiseFileError(int system_code);

}  // namespace quorvane
