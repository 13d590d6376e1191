#include "platform/posix/account.h"

#include <grp.h>
#include <limits.h>
#include <pwd.h>
#include <strings.h>
#include <unistd.h>

#include <array>
#include <memory>

#include "platform/posix/system_text.h"
#include "runtime/utf8.h"

namespace quorvane {
namespace {

constexpr std::string_view kUserDomain = "Unix User";
constexpr std::string_view kGroupDomain = "Unix Group";
// A type of account, and a part of its identifier.
constexpr std::int32_t kUsers = 1;
constexpr std::int32_t kGroups = 2;
constexpr unsigned char kUnixAuthority = 22;
constexpr unsigned char kMostParts = 15;

bool SameWord(std::string_view left, std::string_view right) {
  return left.size() == right.size() && ::strncasecmp(left.data(), right.data(), left.size()) == 0;
}

void AppendLowByteFirst(std::string& bytes, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
}

std::string UnixSid(std::int32_t kind, std::uint32_t id) {
  std::string bytes{1, 2, 0, 0, 0, 0, 0, static_cast<char>(kUnixAuthority)};
  AppendLowByteFirst(bytes, static_cast<std::uint32_t>(kind));
  AppendLowByteFirst(bytes, id);
  return bytes;
}

// Enough for the texts of any entry: those of a group of a hundred thousand members, say. What is
// not used of it costs nothing.
constexpr std::size_t kRoom = std::size_t{1} << 21;

auto MakeRoom() { return std::make_unique_for_overwrite<std::array<char, kRoom>>(); }

// Of a call that gives null where it fails.
std::optional<User> UserFrom(const passwd* found) {
  if (found == nullptr) return std::nullopt;
  return User{found->pw_name, found->pw_dir, found->pw_uid};
}

}  // namespace

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

namespace account {

std::optional<Account> Find(std::string_view name) {
  // The name of a user whom a directory knows may hold the sign itself.
  const auto in = [](std::string_view domain, std::string_view plain) -> std::optional<Account> {
    const std::string known = ToUtf8(Text(FromSystemPage(plain)));
    const bool any = domain.empty() || IsThisMachine(domain);
    const auto user = any || SameWord(domain, kUserDomain) ? FindUser(known) : std::nullopt;
    if (user) return Account{UnixSid(kUsers, user->id), std::string(kUserDomain), kUsers};
    const auto group = any || SameWord(domain, kGroupDomain) ? FindGroup(known) : std::nullopt;
    if (group) return Account{UnixSid(kGroups, *group), std::string(kGroupDomain), kGroups};
    return std::nullopt;
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
    const unsigned char* const bytes = sid + 8 + 4 * part;
    const std::uint32_t value = std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 |
                                std::uint32_t{bytes[2]} << 16 | std::uint32_t{bytes[3]} << 24;
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
