// Proves that platform, system directory, account and adapters are answered alike by the real calls
// and the stand-ins: with facts of this machine, and with the promised results for what is not.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "host/basAPI_api.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

TEST(SystemContract, NamesThePresentFamily) { EXPECT_EQ(GetOSPlatformName(), Text(u"Windows NT")); }

TEST(SystemContract, NamesADirectoryThatExists) {
  const Text directory = GetSystemDirectoryPath();
  ASSERT_FALSE(directory.IsEmpty());
  EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(directory.Characters())));
}

TEST(SystemContract, LeavesTheBufferAloneWhenTheDirectoryDoesNotFit) {
  char buffer[] = "##########";
  const std::int32_t needed = kernel32().GetSystemDirectoryA(buffer, 3);
  EXPECT_EQ(needed, GetSystemDirectoryPath().Length() + 1);
  EXPECT_STREQ(buffer, "##########");
}

TEST(SystemContract, TellsHowLongTheDirectoryIs) {
  const std::int32_t length = GetSystemDirectoryPath().Length();
  std::string buffer(static_cast<std::size_t>(length) + 2, '#');
  EXPECT_EQ(kernel32().GetSystemDirectoryA(buffer.data(), length), length + 1);
  EXPECT_EQ(kernel32().GetSystemDirectoryA(buffer.data(), length + 1), length);
  EXPECT_EQ(buffer.find('\0'), static_cast<std::size_t>(length));
  EXPECT_EQ(buffer.back(), '#');
}

TEST(AccountContract, KnowsTheCurrentAccount) {
  Text name = GetCurrentUserName();
  ASSERT_FALSE(name.IsEmpty());
  Text domain;
  const ByteArray sid = LookupAccountSidBytes(name, domain);
  EXPECT_EQ(sid.LowerBound(), 1);
  EXPECT_GE(sid.UpperBound(), 12);
  EXPECT_EQ(sid.At(1), 1) << "the revision";
  EXPECT_EQ(sid.UpperBound(), 8 + 4 * sid.At(2)) << "as long as its count of parts says";
  EXPECT_FALSE(domain.IsEmpty());
  EXPECT_EQ(domain.Characters().find(u'\0'), std::u16string::npos);
  const Text text = GetCurrentAccountSidText();
  EXPECT_EQ(SidBytesToText(sid), text);
  EXPECT_EQ(text.Characters().substr(0, 2), u"S1");
  EXPECT_TRUE(std::ranges::all_of(text.Characters().substr(1),
                                  [](char16_t c) { return c >= u'0' && c <= u'9'; }));
}

TEST(AccountContract, GivesTheSameAnswerAgain) {
  // A code that an earlier call left behind must not keep the lookup going.
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(GetCurrentAccountSidText().IsEmpty());
}

TEST(AccountContract, GivesOneZeroByteForAnUnknownAccountOrSystem) {
  Text unknown = u"no such account";
  Text domain = u"before";
  EXPECT_EQ(LookupAccountSidBytes(unknown, domain).UpperBound(), 0);
  EXPECT_EQ(domain, Text(u""));
  Text name = GetCurrentUserName();
  const ByteArray sid = LookupAccountSidBytes(name, domain, u"no-such-system.invalid");
  EXPECT_EQ(sid.UpperBound(), 0);
  EXPECT_EQ(SidBytesToText(sid), Text(u""));
}

TEST(AccountContract, RefusesWhatIsNoIdentifier) {
  for (const unsigned char first : {std::uint8_t{0}, std::uint8_t{2}, std::uint8_t{255}}) {
    ByteArray sid(0, 11);
    sid.At(0) = first;
    EXPECT_EQ(SidBytesToText(sid), Text(u"")) << int{first};
    EXPECT_EQ(advapi32().LastError(), 1337) << int{first};
  }
}

TEST(AccountContract, WritesAnyIdentifier) {
  ByteArray sid(0, 11);
  sid.At(0) = 1;
  sid.At(1) = 1;
  sid.At(7) = 5;
  sid.At(8) = 18;
  EXPECT_EQ(SidBytesToText(sid), Text(u"S1518"));
  sid.At(11) = 0xFF;
  EXPECT_EQ(SidBytesToText(sid), Text(u"S154278190098"));
}

TEST(AccountContract, WritesNoNameThatDoesNotFit) {
  char buffer[] = "######";
  std::int32_t size = 1;
  EXPECT_EQ(advapi32().GetUserNameA(buffer, &size), 0);
  EXPECT_EQ(advapi32().LastError(), 122);
  EXPECT_EQ(size, GetCurrentUserName().Length() + 1);
  EXPECT_STREQ(buffer, "######");
}

TEST(AdaptersContract, ListsTwelveDigitsForEachAdapter) {
  const auto list = GetAdapterAddresses();
  ASSERT_TRUE(list.has_value());
  for (const Text& item : *list) {
    EXPECT_EQ(item.Length(), 12);
    EXPECT_EQ(item.Characters().find_first_not_of(u"0123456789ABCDEF"), std::u16string::npos);
  }
  EXPECT_EQ(GetAdapterAddresses(), list) << "and again the same";
}

TEST(AdaptersContract, SaysHowMuchRoomTheRecordsWant) {
  std::int32_t needed = 0;
  EXPECT_NE(iphlpapi().GetAdaptersInfo(nullptr, &needed), 0);
  if (GetAdapterAddresses()->empty()) return;
  EXPECT_GE(needed, 640);
  std::string block(static_cast<std::size_t>(needed), '#');
  std::int32_t too_small = needed - 1;
  EXPECT_EQ(iphlpapi().GetAdaptersInfo(block.data(), &too_small), 111);
  EXPECT_EQ(too_small, needed);
  EXPECT_EQ(block, std::string(static_cast<std::size_t>(needed), '#'));
}

}  // namespace
}  // namespace quorvane::basAPI_api
