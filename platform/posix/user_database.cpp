#include "platform/posix/user_database.h"

#include <grp.h>
#include <limits.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <vector>

namespace quorvane {
namespace {

// Calls with more and more room until the entry's texts fit; null when there is no such entry.
template <class Entry, class Lookup>
const Entry* FindEntry(Entry& entry, std::vector<char>& room, Lookup lookup) {
  constexpr std::size_t kLargestRoom = std::size_t{1} << 24;
  Entry* found = nullptr;
  for (room.resize(1024); room.size() <= kLargestRoom; room.resize(room.size() * 2)) {
    const int result = lookup(&entry, room.data(), room.size(), &found);
    if (result == 0) return found;
    if (result != ERANGE) return nullptr;
  }
  return nullptr;
}

template <class Lookup>
std::optional<User> UserBy(Lookup lookup) {
  passwd entry{};
  std::vector<char> room;
  const passwd* const found = FindEntry(entry, room, lookup);
  if (found == nullptr) return std::nullopt;
  return User{found->pw_name, found->pw_dir, found->pw_uid};
}

}  // namespace

std::optional<User> CurrentUser() {
  return UserBy([](passwd* entry, char* room, std::size_t size, passwd** found) {
    return ::getpwuid_r(::geteuid(), entry, room, size, found);
  });
}

std::optional<User> FindUser(const std::string& name) {
  return UserBy([&](passwd* entry, char* room, std::size_t size, passwd** found) {
    return ::getpwnam_r(name.c_str(), entry, room, size, found);
  });
}

std::optional<std::uint32_t> FindGroup(const std::string& name) {
  group entry{};
  std::vector<char> room;
  const group* const found =
      FindEntry(entry, room, [&](group* e, char* r, std::size_t size, group** f) {
        return ::getgrnam_r(name.c_str(), e, r, size, f);
      });
  if (found == nullptr) return std::nullopt;
  return found->gr_gid;
}

std::string HostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  if (::gethostname(name.data(), name.size() - 1) != 0) return {};
  return name.data();
}

}  // namespace quorvane
