#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane::account {

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

}  // namespace quorvane::account
