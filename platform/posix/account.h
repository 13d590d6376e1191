#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

struct User {
  std::string name;
  std::string home;
  std::uint32_t id = 0;
};

/// The user that the program runs as (its effective id), or nothing when the user database does not
/// know it.
[[nodiscard]] std::optional<User> CurrentUser();
// Where a desktop keeps what belongs to a user, as the XDG Base Directory Specification has it: the
// environment variable when it holds an absolute path, else the usual folder in the home directory.

/// For data: $XDG_DATA_HOME or ~/.local/share, and there the folder `quorvane`.
[[nodiscard]] std::filesystem::path DataFolder();
/// For settings: $XDG_CONFIG_HOME or ~/.config, and there the folder `quorvane`.
[[nodiscard]] std::filesystem::path ConfigFolder();

/// The name of this machine.
[[nodiscard]] std::string HostName();

namespace account {

// The accounts of this machine, as the user database has them. The identifier of a user is
// S-1-22-1-(user id), that of a group S-1-22-2-(group id), as file servers that speak to Windows
// have it; their domains are "Unix User" and "Unix Group".

struct Account {
  std::string sid;
  std::string domain;
  std::int32_t type = 0;
};

/// The account of a name in the system's code page; users come before groups, which count with
/// their domain in front ("Unix Group\adm") or when no user has the name.
[[nodiscard]] std::optional<Account> Find(std::string_view name);

/// The usual text of a binary identifier of at most 68 bytes; nothing when it is none.
[[nodiscard]] std::optional<std::string> SidText(const unsigned char* sid);

/// Whether the name, with or without leading backslashes, is this machine's.
[[nodiscard]] bool IsThisMachine(std::string_view name);

}  // namespace account
}  // namespace quorvane
