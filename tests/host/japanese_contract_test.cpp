// Proves that the real calls and the stand-ins answer alike where the system's own code page is one
// of two-byte characters, Japanese (932): counts of bytes meet counts of characters there.
//
// In Wine the locale decides the code page: the program runs with LC_ALL=ja_JP.UTF-8.

#include <gtest/gtest.h>

#include <string>

#include "host/basAPI_api.h"
#include "platform/system_code_page.h"
#include "tests/host/private_stores.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

using testing::kCurrentUser;

class Japanese : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(systemCodePage().ToBytes(u"\u30B7"), "\x83\x56") << "the system's page is not 932";
  }
};

class JapaneseRegistry : public Japanese {
 protected:
  TaggedValue Read(Text name) { return ReadRegistryValue(kCurrentUser, path_, name); }
  Boolean16 Write(Text name, TaggedValue value, std::int32_t type) {
    return WriteRegistryValue(kCurrentUser, path_, name, value, type);
  }
  // Stores exactly these bytes, past the operations.
  void Store(const std::string& data) {
    RegistryHandle key = 0;
    std::int32_t disposition = 0;
    const std::string path = systemCodePage().ToBytes(path_.Characters());
    EXPECT_EQ(advapi32().RegCreateKeyExA(kCurrentUser, path.c_str(), 0, nullptr, 0, 63, nullptr,
                                         &key, &disposition),
              0);
    EXPECT_EQ(advapi32().RegSetValueExA(key, "name", 0, 1, data.c_str(),
                                        static_cast<std::int32_t>(data.size())),
              0);
    EXPECT_EQ(advapi32().RegCloseKey(key), 0);
  }

  Text path_ = testing::FreshKeyPath();
};

TEST_F(JapaneseRegistry, ReadsWholeTextsByTheirCountOfBytes) {
  Store(std::string("\x83\x56\x83\x58x\0", 6));
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(u"\u30B7\u30B9x")));
}

TEST_F(JapaneseRegistry, LosesHalfACharacterOfATextStoredWithoutItsZero) {
  Store("\x83\x56\x83\x58");  // takes the zero behind along
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(u"\u30B7\u30B9")));
  EXPECT_EQ(Write(u"name", Text(u"\u30B7\u30B9x\u30B7"), 1), kTrue);  // two characters, four bytes
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(u"\u30B7\u30FB")));
}

TEST_F(JapaneseRegistry, CutsWhatIsWrittenByItsCountOfCharacters) {
  EXPECT_EQ(Write(u"name", Text(u"\u30B7ab"), 1), kTrue);  // three of four bytes
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(u"\u30B7")));
}

TEST_F(JapaneseRegistry, KnowsKeysAndValuesByTheirNames) {
  path_ = path_ + u"\\\u65E5\u672C";
  EXPECT_EQ(Write(u"\u30B7\uFF71", std::int32_t{7}, 4), kTrue);
  EXPECT_EQ(Read(u"\u30B7\uFF71"), TaggedValue(std::int32_t{7}));
  EXPECT_TRUE(Read(u"\u30B9").IsEmpty());
}

TEST_F(JapaneseRegistry, HandsBackWhatTheCodePageCannotHold) {
  Text name = u"\uD55C\u30B7";
  EXPECT_TRUE(ReadRegistryValue(kCurrentUser, path_, name).IsEmpty());
  TaggedValue value = std::int32_t{1};
  EXPECT_EQ(WriteRegistryValue(kCurrentUser, path_, name, value, 4), kTrue);
  EXPECT_EQ(name, Text(u"?\u30B7"));
  EXPECT_EQ(Read(u"?\u30B7"), TaggedValue(std::int32_t{1}));
}

class JapaneseProfile : public Japanese {
 protected:
  Text Read(Text key) { return ReadPrivateProfileValue(section_, key, file_); }
  void Write(Text key, Text value) {
    EXPECT_EQ(WritePrivateProfileValue(section_, key, value, file_), kTrue);
  }

  Text section_ = u"\u65E5\u672C";
  Text file_ = testing::FreshProfileName();
};

TEST_F(JapaneseProfile, HasAZeroForEachByteBeyondTheCharacters) {
  Write(u"\u30B7", Text(std::size_t{10}, u'\u30B7'));
  EXPECT_EQ(Read(u"\u30B7"), Text(std::u16string(10, u'\u30B7') + std::u16string(10, u'\0')));
  Write(u"k", u"a\u30B7b");
  EXPECT_EQ(Read(u"k"), Text(std::u16string(u"a\u30B7b\0", 4)));
}

TEST_F(JapaneseProfile, HasSpacesAtTheBuffersEnd) {
  Write(u"k", Text(std::size_t{127}, u'\u30B7'));
  EXPECT_EQ(Read(u"k"), Text(std::u16string(127, u'\u30B7') + std::u16string(2, u'\0') +
                             std::u16string(125, u' ')));
}

TEST_F(JapaneseProfile, IsCutAt255Bytes) {
  Write(u"k", Text(std::size_t{200}, u'\u30B7'));
  const std::u16string value = Read(u"k").Characters();
  ASSERT_EQ(value.size(), 255U);
  EXPECT_EQ(value.substr(0, 127), std::u16string(127, u'\u30B7'));
  // Of the half character the systems make what they like; behind it stands the system's zero.
  EXPECT_EQ(value.substr(129), std::u16string(126, u' '));
}

TEST_F(JapaneseProfile, LiesInAFileOfAnyName) {
  file_ = Text(file_.Characters() + u"\u65E5\u672C.ini");
  Write(u"k", u"v");
  EXPECT_EQ(Read(u"k"), Text(u"v"));
  EXPECT_FALSE(testing::BytesOf(file_).empty());
}

TEST_F(Japanese, SystemAndAccountAnswerAsEver) {
  EXPECT_FALSE(GetSystemDirectoryPath().IsEmpty());
  EXPECT_EQ(GetSystemDirectoryPath().Characters().find(u' '), std::u16string::npos);
  EXPECT_FALSE(GetCurrentUserName().IsEmpty());
  EXPECT_EQ(GetCurrentAccountSidText().Characters().substr(0, 2), u"S1");
}

}  // namespace
}  // namespace quorvane::basAPI_api
