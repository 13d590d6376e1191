#pragma once

#include <cstdint>
#include <string>

#include "runtime/text.h"

namespace quorvane::testing {

/// The hive of these tests, HKEY_CURRENT_USER.
inline constexpr std::int32_t kCurrentUser = -2147483647;

/// A registry path below the current user's hive that no other test uses; the key does not exist
/// yet.
[[nodiscard]] Text FreshKeyPath();

/// The name of a profile file in a folder of the test program's own that does not exist yet, as the
/// operations take it.
[[nodiscard]] Text FreshProfileName();
/// The bytes of such a file, and a way to lay them down.
[[nodiscard]] std::string BytesOf(const Text& profile_name);
void WriteBytes(const Text& profile_name, const std::string& bytes);

}  // namespace quorvane::testing
