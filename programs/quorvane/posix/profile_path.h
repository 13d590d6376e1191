#pragma once

#include <filesystem>
#include <string>

namespace quorvane::programs {

/// Where the profile file of that name on the command line lies, by the rule of the profile calls:
/// a name without a directory in the folder of the user's settings, and each \ is a /.
[[nodiscard]] std::filesystem::path ProfilePath(const std::string& name);

}  // namespace quorvane::programs
