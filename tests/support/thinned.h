#pragma once

#include <cstdint>

namespace quorvane::testing {

/// Of what a test runs through by the million, each one is asked; under the sanitizers, where that
/// takes minutes, one in so many. A prime, so that it falls into step with no calendar and no
/// table.
#ifdef __SANITIZE_ADDRESS__
inline constexpr std::int32_t kOneIn = 29;
#else
inline constexpr std::int32_t kOneIn = 1;
#endif

}  // namespace quorvane::testing
