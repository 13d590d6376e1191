#pragma once

#include <filesystem>

namespace quorvane {

// Where a desktop keeps what belongs to a user, as the XDG Base Directory Specification has it: the
// environment variable when it holds an absolute path, else the usual folder in the home directory.

/// For data: $XDG_DATA_HOME or ~/.local/share, and there the folder `quorvane`.
[[nodiscard]] std::filesystem::path DataFolder();
/// For settings: $XDG_CONFIG_HOME or ~/.config, and there the folder `quorvane`.
[[nodiscard]] std::filesystem::path ConfigFolder();

}  // namespace quorvane
