#include "platform/posix/user_database.h"

#include <grp.h>
#include <limits.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <memory>

namespace quorvane {
namespace {

// Enough for the texts of any entry: those of a group of a hundred thousand members, say. What is
// not used of it costs nothing.
constexpr std::size_t kRoom = std::size_t{1} << 21;

auto MakeRoom() { return std::make_unique_for_overwrite<std::array<char, kRoom>>(); }

std::optional<User> UserFrom(const passwd* found) {
  if (found == nullptr) return std::nullopt;
  return User{found->pw_name, found->pw_dir, found->pw_uid};
}

}  // namespace

// Each call gives a null entry where it fails.

std::optional<User> CurrentUser() {
  passwd entry{};
  passwd* found = nullptr;
  const auto room = MakeRoom();
  ::getpwuid_r(::geteuid(), &entry, room->data(), kRoom, &found);
  return UserFrom(found);
}

std::optional<User> FindUser(const std::string& name) {
  passwd entry{};
  passwd* found = nullptr;
  const auto room = MakeRoom();
  ::getpwnam_r(name.c_str(), &entry, room->data(), kRoom, &found);
  return UserFrom(found);
}

std::optional<std::uint32_t> FindGroup(const std::string& name) {
  group entry{};
  group* found = nullptr;
  const auto room = MakeRoom();
  ::getgrnam_r(name.c_str(), &entry, room->data(), kRoom, &found);
  return found != nullptr ? std::optional(entry.gr_gid) : std::nullopt;
}

std::string HostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  if (::gethostname(name.data(), name.size() - 1) != 0) return {};
  return name.data();
}

}  // namespace quorvane
