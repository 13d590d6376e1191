#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quorvane {

struct User {
  std::string name;
  std::string home;
  std::uint32_t id = 0;
};

/// The user that the program runs as (its effective id), or nothing when the user database does not
/// know it.
[[nodiscard]] std::optional<User> CurrentUser();
/// The user of a name, which is told exactly: case counts.
[[nodiscard]] std::optional<User> FindUser(const std::string& name);
/// The id of the group of a name.
[[nodiscard]] std::optional<std::uint32_t> FindGroup(const std::string& name);

/// The name of this machine.
[[nodiscard]] std::string HostName();

}  // namespace quorvane
