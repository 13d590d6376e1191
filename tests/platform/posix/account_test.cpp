// Proves that accounts and identifiers of the stand-in are those of the user database.

#include "platform/posix/account.h"

#include <gtest/gtest.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <string>

#include "platform/advapi32.h"
#include "platform/kernel32.h"
#include "platform/posix/handle_table.h"
#include "tests/support/raises.h"

namespace quorvane {
namespace {

std::string TextOf(std::string sid) {
  sid.resize(68);
  return account::SidText(reinterpret_cast<const unsigned char*>(sid.data())).value_or("(none)");
}

TEST(UnixAccount, HasTheUsersNumberInItsIdentifier) {
  const auto user = CurrentUser();
  ASSERT_TRUE(user.has_value());
  EXPECT_EQ(user->id, ::geteuid());
  const auto found = account::Find(user->name);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(TextOf(found->sid), "S-1-22-1-" + std::to_string(::geteuid()));
  EXPECT_EQ(found->domain, "Unix User");
  EXPECT_EQ(found->type, 1);
}

TEST(UnixAccount, IsAGroupWhereNoUserHasTheName) {
  const auto group = account::Find("Unix Group\\root");
  ASSERT_TRUE(group.has_value());
  EXPECT_EQ(TextOf(group->sid), "S-1-22-2-0");
  EXPECT_EQ(group->domain, "Unix Group");
  EXPECT_EQ(group->type, 2);
  EXPECT_EQ(account::Find("root")->type, 1) << "the user comes first";
}

TEST(UnixAccount, IsFoundBehindItsDomainOrTheMachinesName) {
  for (const std::string& domain :
       {std::string("unix user"), HostName(), std::string("localhost")}) {
    EXPECT_TRUE(account::Find(domain + "\\root").has_value()) << domain;
  }
  EXPECT_FALSE(account::Find("ELSEWHERE\\root").has_value());
  EXPECT_FALSE(account::Find("").has_value());
  EXPECT_FALSE(account::Find("no such user").has_value());
}

TEST(UnixAccount, KnowsItsMachine) {
  utsname system{};
  ASSERT_EQ(::uname(&system), 0);
  EXPECT_EQ(HostName(), system.nodename);
  EXPECT_TRUE(account::IsThisMachine("\\\\" + HostName()));
  EXPECT_TRUE(account::IsThisMachine("LOCALHOST"));
  EXPECT_FALSE(account::IsThisMachine("elsewhere"));
}

// The code is that of the latest call, whatever the one before left.
TEST(UnixAccount, TellsWhyEachLookUpFailed) {
  std::array<char, 16> sid{};
  std::array<char, 16> domain{};
  std::int32_t type = 0;
  const auto look_up = [&](const char* name, std::int32_t sid_size, std::int32_t domain_size) {
    domain.fill('#');
    return advapi32().LookupAccountNameA(nullptr, name, sid.data(), &sid_size, domain.data(),
                                         &domain_size, &type);
  };
  EXPECT_EQ(look_up("root", 0, 16), 0);
  EXPECT_EQ(advapi32().LastError(), 122);
  EXPECT_EQ(look_up("no such user", 16, 16), 0);
  EXPECT_EQ(advapi32().LastError(), 1332);
  EXPECT_EQ(look_up("root", 16, 9), 0) << "no room for the zero behind the domain";
  EXPECT_EQ(advapi32().LastError(), 122);
  EXPECT_EQ(domain[0], '#');
  EXPECT_EQ(look_up("root", 16, 10), 1);
  EXPECT_EQ(advapi32().LastError(), 0);
  EXPECT_STREQ(domain.data(), "Unix User");
  EXPECT_EQ(domain[10], '#') << "nothing is written behind the zero";
  EXPECT_EQ(type, 1) << "a user";
  std::int32_t size = 16;
  EXPECT_EQ(advapi32().LookupAccountNameA("no-such-system.invalid", "root", sid.data(), &size,
                                          domain.data(), &size, &type),
            0);
  EXPECT_EQ(advapi32().LastError(), 1722);
}

TEST(UnixVersion, IsTheKernelsRelease) {
  utsname system{};
  ASSERT_EQ(::uname(&system), 0);
  OsVersionInformation information{};
  information.dwOSVersionInfoSize = sizeof information;
  EXPECT_EQ(kernel32().GetVersionExA(&information), 1);
  EXPECT_EQ(information.dwPlatformId, 4U) << "neither of the two old families";
  EXPECT_EQ(std::string(information.szCSDVersion), system.release);
  EXPECT_TRUE(std::string(system.release)
                  .starts_with(std::to_string(information.dwMajorVersion) + "." +
                               std::to_string(information.dwMinorVersion) + "."));
  information.dwOSVersionInfoSize = 147;
  EXPECT_EQ(kernel32().GetVersionExA(&information), 0);
}

TEST(SidText, WritesRevisionAuthorityAndParts) {
  EXPECT_EQ(TextOf(std::string("\1\1\0\0\0\0\0\5\x12", 9)), "S-1-5-18");
  EXPECT_EQ(TextOf(std::string("\1\0\0\0\0\0\0\1", 8)), "S-1-1");
  EXPECT_EQ(TextOf(std::string("\1\1\0\0\0\0\0\5\xFF\xFF\xFF\xFF", 12)), "S-1-5-4294967295");
  EXPECT_EQ(TextOf(std::string("\1\17", 2)), "S-1-0-0-0-0-0-0-0-0-0-0-0-0-0-0-0-0");
}

TEST(SidText, RefusesOtherRevisionsAndMoreThanFifteenParts) {
  EXPECT_EQ(TextOf(std::string("\0", 1)), "(none)");
  EXPECT_EQ(TextOf("\2"), "(none)");
  EXPECT_EQ(TextOf("\1\20"), "(none)");
}

TEST(LocalMemory, IsHandedOutByAddressAndGivenBackOnce) {
  const Address32 address = localMemory().Add(std::string("S-1", 4));
  EXPECT_NE(address, kNoAddress);
  EXPECT_EQ(kernel32().lstrlenA(address), 3);
  std::array<char, 4> copy{};
  kernel32().RtlMoveMemory(copy.data(), address, 4);
  EXPECT_STREQ(copy.data(), "S-1");
  EXPECT_EQ(testing::ErrorNumberOf([&] { kernel32().RtlMoveMemory(copy.data(), address, 5); }), 5);
  EXPECT_EQ(kernel32().LocalFree(address), kNoAddress);
  EXPECT_EQ(kernel32().LocalFree(address), address);
  EXPECT_EQ(kernel32().lstrlenA(address), 0);
  EXPECT_FALSE(localMemory().Find(address).has_value());
}

}  // namespace
}  // namespace quorvane
