// Proves what the two operations on the platform hand to the system and make of what comes back.

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <new>
#include <optional>
#include <string>

#include "host/basAPI_api.h"
#include "tests/support/code_pages.h"
#include "tests/support/fake_kernel32_base.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

using testing::Page1252;
using testing::Page932;

class FakeSystem final : public testing::FakeKernel32Base {
 public:
  std::int32_t GetVersionExA(OsVersionInformation* information) override {
    received = *information;
    if (!platform_id) return 0;
    information->dwPlatformId = *platform_id;
    return 1;
  }
  std::int32_t GetSystemDirectoryA(char* buffer, std::int32_t size) override {
    buffer_received.assign(buffer, static_cast<std::size_t>(size));
    size_received = size;
    return write ? write(buffer) : 0;
  }
  // Writes the bytes, zero included, to the start of the buffer.
  void Writes(std::string bytes) {
    write = [bytes](char* buffer) {
      std::memcpy(buffer, bytes.data(), bytes.size());
      return static_cast<std::int32_t>(bytes.size() - 1);
    };
  }

  std::optional<std::uint32_t> platform_id;
  OsVersionInformation received{};
  std::function<std::int32_t(char*)> write;
  std::string buffer_received;
  std::int32_t size_received = 0;
};

std::string WithZero(const char* text) { return std::string(text) + '\0'; }

Text DirectoryAfterWriting(const std::string& bytes) {
  FakeSystem os;
  os.Writes(bytes);
  return GetSystemDirectoryPath(os, Page1252());
}

TEST(GetOSPlatformName, NamesTheFamilyOfEachId) {
  FakeSystem os;
  os.platform_id = 0;
  EXPECT_EQ(GetOSPlatformName(os), Text(u"Win32s"));
  os.platform_id = 1;
  EXPECT_EQ(GetOSPlatformName(os), Text(u"Windows 95"));
  os.platform_id = 2;
  EXPECT_EQ(GetOSPlatformName(os), Text(u"Windows NT"));
}

TEST(GetOSPlatformName, CountsUnknownIdsAsWindowsNT) {
  FakeSystem os;
  for (const std::uint32_t id : {3U, 4U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    os.platform_id = id;
    EXPECT_EQ(GetOSPlatformName(os), Text(u"Windows NT")) << id;
  }
}

TEST(GetOSPlatformName, IsWin32sWhenTheCallFails) {
  FakeSystem os;
  EXPECT_EQ(GetOSPlatformName(os), Text(u"Win32s"));
}

TEST(GetOSPlatformName, HandsOverZerosBehindTheSize) {
  FakeSystem os;
  static_cast<void>(GetOSPlatformName(os));
  OsVersionInformation expected{};
  expected.dwOSVersionInfoSize = 148;
  EXPECT_EQ(std::memcmp(&os.received, &expected, sizeof expected), 0);
}

TEST(GetSystemDirectoryPath, HandsOver255Spaces) {
  FakeSystem os;
  static_cast<void>(GetSystemDirectoryPath(os, Page1252()));
  EXPECT_EQ(os.size_received, 255);
  EXPECT_EQ(os.buffer_received, std::string(255, ' '));
}

TEST(GetSystemDirectoryPath, GivesExactlyTheDirectory) {
  EXPECT_EQ(DirectoryAfterWriting(WithZero("D:\\SYS\\BIN")), Text(u"D:\\SYS\\BIN"));
}

TEST(GetSystemDirectoryPath, KeepsInnerSpacesAndRemovesOuterOnes) {
  EXPECT_EQ(DirectoryAfterWriting(WithZero("D:\\My Files\\sys")), Text(u"D:\\My Files\\sys"));
  EXPECT_EQ(DirectoryAfterWriting(WithZero("D:\\sys ")), Text(u"D:\\sys"));
  EXPECT_EQ(DirectoryAfterWriting(WithZero(" D:\\sys")), Text(u"D:\\sys"));
}

TEST(GetSystemDirectoryPath, KeepsOtherBlanksThanSpaces) {
  EXPECT_EQ(DirectoryAfterWriting(WithZero("\tD:\\sys\t")), Text(u"\tD:\\sys\t"));
}

TEST(GetSystemDirectoryPath, GivesTheLongestPathThatFits) {
  const std::string path(254, 'p');
  EXPECT_EQ(DirectoryAfterWriting(path + '\0'), Text(std::u16string(254, u'p')));
}

TEST(GetSystemDirectoryPath, GivesPathsOfEveryLengthWithAndWithoutOtherCharacters) {
  for (std::size_t length = 1; length <= 254; ++length) {
    const std::string path(length, 'p');
    EXPECT_EQ(DirectoryAfterWriting(path + '\0'), Text(std::u16string(length, u'p')));
    EXPECT_EQ(DirectoryAfterWriting(path.substr(1) + "\xE9" + '\0'),
              Text(std::u16string(length - 1, u'p') + u'\u00E9'));
  }
}

TEST(GetSystemDirectoryPath, IsEmptyWhenNothingIsWritten) {
  FakeSystem os;
  const Text path = GetSystemDirectoryPath(os, Page1252());
  EXPECT_EQ(path, Text(u""));
  EXPECT_FALSE(path.IsAbsent());
}

TEST(GetSystemDirectoryPath, KeepsCharactersBehindNul) {
  EXPECT_EQ(DirectoryAfterWriting(std::string("AB\0CD", 5)), Text(u"ABCD"));
  EXPECT_EQ(DirectoryAfterWriting(std::string("\0AB\0 \0CD\0", 9)), Text(u"AB CD"));
  EXPECT_EQ(DirectoryAfterWriting(std::string(255, '\0')), Text(u""));
  EXPECT_EQ(DirectoryAfterWriting(std::string("\0 \0 AB\0 C \0 \0", 13)), Text(u"AB C"))
      << "the spaces at the ends go, whatever zeros stand between them";
  EXPECT_EQ(DirectoryAfterWriting(std::string(250, ' ') + std::string("\0\0abc", 5)), Text(u"abc"))
      << "up to the last place";
}

TEST(GetSystemDirectoryPath, TakesTheBufferAsItIsWithoutLookingAtTheResult) {
  FakeSystem os;
  os.write = [](char* buffer) {
    std::memcpy(buffer, "C:\\S", 5);
    return 0;
  };
  EXPECT_EQ(GetSystemDirectoryPath(os, Page1252()), Text(u"C:\\S"));
}

// 255 bytes make fewer characters then; the places behind the text's end count as spaces.
TEST(GetSystemDirectoryPath, ReadsAShorterBufferUnderAMultiByteCodePage) {
  FakeSystem os;
  os.Writes(WithZero("C:\\\x83\x56\x83\x58"));
  EXPECT_EQ(GetSystemDirectoryPath(os, Page932()), Text(u"C:\\\u30B7\u30B9"));
}

TEST(GetSystemDirectoryPath, IsEmptyAfterAnyError) {
  FakeSystem os;
  os.write = [](char*) -> std::int32_t { Raise(ErrorNumber::kLibraryNotFound); };
  EXPECT_EQ(GetSystemDirectoryPath(os, Page1252()), Text(u""));
  os.write = [](char*) -> std::int32_t { throw std::bad_alloc(); };
  EXPECT_EQ(GetSystemDirectoryPath(os, Page1252()), Text(u""));
}

}  // namespace
}  // namespace quorvane::basAPI_api
