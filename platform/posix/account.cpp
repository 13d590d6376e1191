#include "platform/posix/account.h"

#include <strings.h>

#include "platform/posix/system_text.h"
#include "platform/posix/user_database.h"
#include "runtime/utf8.h"

namespace quorvane::account {
namespace {

constexpr std::string_view kUserDomain = "Unix User";
constexpr std::string_view kGroupDomain = "Unix Group";
constexpr std::uint32_t kUsers = 1;
constexpr std::uint32_t kGroups = 2;
constexpr std::int32_t kTypeUser = 1;
constexpr std::int32_t kTypeGroup = 2;
constexpr unsigned char kUnixAuthority = 22;
constexpr unsigned char kMostParts = 15;

bool SameWord(std::string_view left, std::string_view right) {
  return left.size() == right.size() && ::strncasecmp(left.data(), right.data(), left.size()) == 0;
}

void AppendLowByteFirst(std::string& bytes, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
}

std::string UnixSid(std::uint32_t kind, std::uint32_t id) {
  std::string bytes{1, 2, 0, 0, 0, 0, 0, static_cast<char>(kUnixAuthority)};
  AppendLowByteFirst(bytes, kind);
  AppendLowByteFirst(bytes, id);
  return bytes;
}

}  // namespace

std::optional<Account> Find(std::string_view name) {
  // The name of a user whom a directory knows may hold the sign itself.
  const auto in = [](std::string_view domain, std::string_view plain) -> std::optional<Account> {
    const std::string known = ToUtf8(Text(FromSystemPage(plain)));
    const bool any = domain.empty() || IsThisMachine(domain);
    const auto user = any || SameWord(domain, kUserDomain) ? FindUser(known) : std::nullopt;
    if (user) return Account{UnixSid(kUsers, user->id), std::string(kUserDomain), kTypeUser};
    const auto group = any || SameWord(domain, kGroupDomain) ? FindGroup(known) : std::nullopt;
    if (group) return Account{UnixSid(kGroups, *group), std::string(kGroupDomain), kTypeGroup};
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

}  // namespace quorvane::account
