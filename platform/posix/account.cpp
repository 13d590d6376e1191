#include "platform/posix/account.h"

#include <grp.h>
#include <limits.h>
#include <pwd.h>
#include <strings.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/posix/system_text.h"
#include "runtime/utf8.h"

namespace quorvane {
namespace {

constexpr std::string_view kUserDomain = "Unix User";
constexpr std::string_view kGroupDomain = "Unix Group";
// A type of account, and a part of its identifier.
constexpr std::uint32_t kUsers = 1;
constexpr std::uint32_t kGroups = 2;
constexpr unsigned char kMostParts = 15;

bool SameWord(std::string_view left, std::string_view right) {
  return left.size() == right.size() && ::strncasecmp(left.data(), right.data(), left.size()) == 0;
}

// A binary identifier's parts are numbers of 32 bits, low byte first, as the system's own.
account::Account AccountOf(std::uint32_t kind, std::uint32_t id) {
  const std::array parts{kind, id};
  return {std::string("\1\2\0\0\0\0\0\26", 8) +
              std::string(reinterpret_cast<const char*>(parts.data()), sizeof parts),
          std::string(kind == kUsers ? kUserDomain : kGroupDomain),
          static_cast<std::int32_t>(kind)};
}

// What a call of the user database finds for a key, made into another form; nothing where it finds
// nothing.
template <class Entry, class Key, class Make>
auto Lookup(int (*call)(Key, Entry*, char*, std::size_t, Entry**), Key key, Make make) {
  // Enough for the texts of any entry: those of a group of a hundred thousand members, say. What is
  // not used of it costs nothing.
  constexpr std::size_t kRoom = std::size_t{1} << 21;
  const auto room = std::make_unique_for_overwrite<std::array<char, kRoom>>();
  Entry entry{};
  Entry* found = nullptr;
  call(key, &entry, room->data(), kRoom, &found);
  return found != nullptr ? std::optional(make(*found)) : std::nullopt;
}

// Nothing but an absolute path counts.
std::filesystem::path Absolute(const char* place) {
  std::filesystem::path path(place != nullptr ? place : "");
  return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path Home() {
  if (auto home = Absolute(std::getenv("HOME")); !home.empty()) return home;
  const auto user = CurrentUser();
  auto home = Absolute(user ? user->home.c_str() : "");
  return home.empty() ? "/" : home;
}

std::filesystem::path FolderFor(const char* variable, const char* usual_place) {
  auto base = Absolute(std::getenv(variable));
  if (base.empty()) base = Home() / usual_place;
  return base / "quorvane";
}

}  // namespace

std::optional<User> CurrentUser() {
  return Lookup(&::getpwuid_r, ::geteuid(), [](const passwd& entry) {
    return User{entry.pw_name, entry.pw_dir, entry.pw_uid};
  });
}

std::filesystem::path DataFolder() { return FolderFor("XDG_DATA_HOME", ".local/share"); }

std::filesystem::path ConfigFolder() { return FolderFor("XDG_CONFIG_HOME", ".config"); }

std::string HostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  if (::gethostname(name.data(), name.size()) != 0) return {};
  return name.data();
}

namespace account {

std::optional<Account> Find(std::string_view name) {
  // The name of a user whom a directory knows may hold the sign itself.
  const auto in = [](std::string_view domain, std::string_view plain) -> std::optional<Account> {
    const std::string known = ToUtf8(Text(FromSystemPage(plain)));
    const bool any = domain.empty() || IsThisMachine(domain);
    std::optional<Account> found;
    if (any || SameWord(domain, kUserDomain)) {
      found = Lookup(&::getpwnam_r, known.c_str(),
                     [](const passwd& entry) { return AccountOf(kUsers, entry.pw_uid); });
    }
    if (!found && (any || SameWord(domain, kGroupDomain))) {
      found = Lookup(&::getgrnam_r, known.c_str(),
                     [](const group& entry) { return AccountOf(kGroups, entry.gr_gid); });
    }
    return found;
  };
  const std::size_t sign = name.find('\\');
  auto whole = in("", name);
  if (whole || sign == std::string_view::npos) return whole;
  return in(name.substr(0, sign), name.substr(sign + 1));
}

std::optional<std::string> SidText(const unsigned char* sid) {
  if (sid[0] != 1 || sid[1] > kMostParts) return std::nullopt;
  std::uint64_t authority = 0;
  for (int index = 2; index < 8; ++index) authority = authority << 8 | sid[index];
  std::string text = "S-1-" + std::to_string(authority);
  for (std::size_t part = 0; part < sid[1]; ++part) {
    std::uint32_t value = 0;
    std::memcpy(&value, sid + 8 + 4 * part, sizeof value);
    text += "-" + std::to_string(value);
  }
  return text;
}

bool IsThisMachine(std::string_view name) {
  while (name.starts_with('\\')) name.remove_prefix(1);
  return SameWord(name, "localhost") || SameWord(name, HostName());
}

}  // namespace account
}  // namespace quorvane
