#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quorvane::programs {

// Why the system has refused something, in UTF-8, for a message. The library's operations keep no
// reasons, so that these ask the system again. Answered once in posix/ and once in windows/.

/// The text of an error code of the registry's calls.
[[nodiscard]] std::string ReasonOf(std::int32_t code);

/// Why the last profile write, of that file or of the system's own profile, stored nothing. To be
/// called right behind it.
[[nodiscard]] std::string ReasonOfProfileFailure(const std::optional<std::string>& file);

}  // namespace quorvane::programs
