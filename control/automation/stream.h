#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "control/automation/com.h"

namespace quorvane::component {

/// Reads `size` bytes from where the stream stands, going on after short reads. S_OK, the stream's
/// own failure, or E_FAIL when the stream ends before. Room is taken as the bytes come, so that a
/// false size costs nothing.
[[nodiscard]] HRESULT ReadExactly(ISequentialStream& stream, std::uint32_t size,
                                  std::vector<std::uint8_t>& bytes);

/// Writes all bytes, going on after short writes. S_OK, the stream's own failure, or
/// STG_E_MEDIUMFULL when it takes no more.
[[nodiscard]] HRESULT WriteWholly(ISequentialStream& stream, std::span<const std::uint8_t> bytes);

}  // namespace quorvane::component
