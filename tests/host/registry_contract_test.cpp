// Proves that the real registry and its stand-in give the same kinds of results for the same
// situation, and do what platform/advapi32.h promises.

#include <gtest/gtest.h>

#include <string>

#include "host/basAPI_api.h"
#include "tests/host/private_stores.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

using testing::kCurrentUser;
const TaggedValue kEmptyText = Text(u"");

class RegistryContract : public ::testing::Test {
 protected:
  TaggedValue Read(Text name) {
    Text path = path_;
    return ReadRegistryValue(kCurrentUser, path, name);
  }
  Boolean16 Write(Text name, TaggedValue value, std::int32_t type) {
    Text path = path_;
    return WriteRegistryValue(kCurrentUser, path, name, value, type);
  }
  // Stores exactly these bytes, past the operations.
  void Store(const char* name, std::int32_t type, const std::string& data) {
    const RegistryHandle key = OpenKey(63);
    EXPECT_EQ(advapi32().RegSetValueExA(key, name, 0, type, data.data(),
                                        static_cast<std::int32_t>(data.size())),
              0);
    EXPECT_EQ(advapi32().RegCloseKey(key), 0);
  }
  RegistryHandle OpenKey(std::int32_t access) {
    RegistryHandle key = 0;
    std::int32_t disposition = 0;
    const std::string path = ToUtf8(path_);
    EXPECT_EQ(advapi32().RegCreateKeyExA(kCurrentUser, path.c_str(), 0, nullptr, 0, access, nullptr,
                                         &key, &disposition),
              0);
    return key;
  }

  Text path_ = testing::FreshKeyPath();
};

TEST_F(RegistryContract, GivesTheEmptyKindWithoutKeyOrValue) {
  EXPECT_TRUE(Read(u"name").IsEmpty());
  EXPECT_EQ(Write(u"other", Text(u"x"), 1), kTrue);
  EXPECT_TRUE(Read(u"name").IsEmpty());
}

// The platform takes along the zero that stands behind the text.
TEST_F(RegistryContract, ReadsBackTheTextThatWasWritten) {
  EXPECT_EQ(Write(u"name", Text(u"abc"), 1), kTrue);
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(u"abc")));
  const Text long_text(std::size_t{20000}, u'l');
  EXPECT_EQ(Write(u"name", long_text, 1), kTrue);
  EXPECT_EQ(Read(u"name"), TaggedValue(long_text));
  EXPECT_EQ(Write(u"name", Text(u"caf\u00E9 \u20AC"), 1), kTrue);
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(u"caf\u00E9 \u20AC")));
}

TEST_F(RegistryContract, KeepsAnEmptyTextAsNoBytes) {
  EXPECT_EQ(Write(u"name", Text(u""), 1), kTrue);
  EXPECT_EQ(Read(u"name"), kEmptyText);
}

TEST_F(RegistryContract, LosesTheLastCharacterOfATextStoredWithoutItsZero) {
  const RegistryHandle key = OpenKey(63);
  EXPECT_EQ(advapi32().RegSetValueExA(key, "name", 0, 1, "abcdef", 3), 0);
  EXPECT_EQ(advapi32().RegCloseKey(key), 0);
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(u"ab")));
}

// Of every kind of text, and of texts alone.
TEST_F(RegistryContract, TakesAlongTheZeroBehindTextsOnly) {
  const RegistryHandle key = OpenKey(63);
  for (const std::int32_t type : {1, 2, 3, 4, 6, 7}) {
    EXPECT_EQ(advapi32().RegSetValueExA(key, "name", 0, type, "abcd", 4), 0);
    std::int32_t stored = 0;
    std::int32_t size = 0;
    EXPECT_EQ(advapi32().RegQueryValueExA(key, "name", nullptr, &stored, nullptr, &size), 0);
    EXPECT_EQ(stored, type);
    EXPECT_EQ(size, type == 1 || type == 2 || type == 7 ? 5 : 4) << type;
  }
  EXPECT_EQ(advapi32().RegCloseKey(key), 0);
}

TEST_F(RegistryContract, TellsOfAValueWhatItIsAskedFor) {
  Store("name", 3, "1234");
  const RegistryHandle key = OpenKey(1);
  const auto query = [&](std::int32_t* type, void* data, std::int32_t* size) {
    return advapi32().RegQueryValueExA(key, "name", nullptr, type, data, size);
  };
  std::int32_t type = 0;
  std::int32_t size = 0;
  std::int32_t data = 0;
  EXPECT_EQ(query(&type, nullptr, nullptr), 0);
  EXPECT_EQ(type, 3);
  EXPECT_EQ(query(nullptr, nullptr, &size), 0);
  EXPECT_EQ(size, 4);
  EXPECT_EQ(query(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(query(&type, &data, nullptr), 87);
  EXPECT_EQ(data, 0);
  EXPECT_EQ(query(nullptr, &data, &size), 0);
  EXPECT_EQ(data, 0x34333231);
  EXPECT_EQ(advapi32().RegCloseKey(key), 0);
}

TEST_F(RegistryContract, ReadsTextsByTheirStoredSize) {
  Store("name", 1, std::string("hello\0", 6));
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(u"hello")));
  Store("name", 1, std::string("\0", 1));
  EXPECT_EQ(Read(u"name"), kEmptyText);
  Store("name", 1, std::string("a\0b\0", 4));
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(std::u16string(u"a\0b", 3))));
}

TEST_F(RegistryContract, ReadsIntegers) {
  EXPECT_EQ(Write(u"name", Text(u"-1"), 4), kTrue);
  EXPECT_EQ(Read(u"name"), TaggedValue(std::int32_t{-1}));
  Store("name", 3, "\x01\x02\x03\x84");
  EXPECT_EQ(Read(u"name"), TaggedValue(std::int32_t{-2080177663}));
  Store("name", 3, "\xFF");
  EXPECT_EQ(Read(u"name"), TaggedValue(std::int32_t{255}));
  Store("name", 3, "");
  EXPECT_EQ(Read(u"name"), TaggedValue(std::int32_t{0}));
  Store("name", 3, "\x01\x02\x03\x04\x05");
  EXPECT_EQ(Read(u"name"), TaggedValue(std::int32_t{0x04030201}));
}

TEST_F(RegistryContract, GivesTheEmptyKindForOtherTypes) {
  for (const std::int32_t type : {0, 2, 5, 6, 7, 8, 11}) {
    Store("name", type, std::string("text\0\0", 6));
    EXPECT_TRUE(Read(u"name").IsEmpty()) << type;
  }
}

TEST_F(RegistryContract, MakesTheKeyAndStoresNothingForOtherTypes) {
  path_ = path_ + u"\\a\\b";
  EXPECT_EQ(Write(u"name", Text(u"x"), 3), kTrue);
  RegistryHandle key = 0;
  EXPECT_EQ(advapi32().RegOpenKeyExA(kCurrentUser, ToUtf8(path_).c_str(), 0, 131097, &key), 0);
  EXPECT_EQ(advapi32().RegCloseKey(key), 0);
  EXPECT_TRUE(Read(u"name").IsEmpty());
}

TEST_F(RegistryContract, DoesNotTellCaseInNames) {
  path_ = path_ + u"\\Cas\u00C9";
  EXPECT_EQ(Write(u"Nam\u00C9", std::int32_t{7}, 4), kTrue);
  path_ = Text(path_.Characters().substr(0, path_.Characters().size() - 4) + u"cAs\u00E9");
  EXPECT_EQ(Read(u"nAm\u00E9"), TaggedValue(std::int32_t{7}));
  EXPECT_TRUE(Read(u"name").IsEmpty());
}

TEST_F(RegistryContract, TakesAnEmptyOrAbsentNameForTheDefaultValue) {
  EXPECT_EQ(Write(u"", Text(u"default"), 1), kTrue);
  EXPECT_EQ(Read(Text()), TaggedValue(Text(u"default")));
  EXPECT_EQ(Read(u""), TaggedValue(Text(u"default")));
}

TEST_F(RegistryContract, ChangesTypeAndSizeWithTheNextWrite) {
  EXPECT_EQ(Write(u"name", Text(u"long text"), 1), kTrue);
  EXPECT_EQ(Write(u"name", std::int32_t{5}, 4), kTrue);
  EXPECT_EQ(Read(u"name"), TaggedValue(std::int32_t{5}));
  EXPECT_EQ(Write(u"NAME", Text(u"s"), 1), kTrue);
  EXPECT_EQ(Read(u"name"), TaggedValue(Text(u"s")));
}

TEST_F(RegistryContract, ReadsPathsByTheirNamesWithSeveralBackslashesAsOne) {
  EXPECT_EQ(Write(u"name", std::int32_t{1}, 4), kTrue);
  const Text path = path_;
  path_ = path + u"\\";
  EXPECT_EQ(Read(u"name"), TaggedValue(std::int32_t{1}));
  path_ = Text(u"Software\\\\" + path.Characters().substr(9));
  EXPECT_EQ(Read(u"name"), TaggedValue(std::int32_t{1}));
  path_ = u"\\" + path;
  EXPECT_TRUE(Read(u"name").IsEmpty());
  EXPECT_EQ(Write(u"name", std::int32_t{1}, 4), kFalse);
}

TEST_F(RegistryContract, RefusesUnknownHives) {
  Text path = path_;
  Text name = u"name";
  TaggedValue value = std::int32_t{1};
  for (const RegistryHandle hive : {0, 4711, -2147483639}) {
    EXPECT_EQ(WriteRegistryValue(hive, path, name, value, 4), kFalse) << hive;
    EXPECT_TRUE(ReadRegistryValue(hive, path, name).IsEmpty()) << hive;
  }
}

TEST_F(RegistryContract, RefusesValueNamesOfMoreThan16383Characters) {
  EXPECT_EQ(Write(Text(std::size_t{16383}, u'n'), std::int32_t{3}, 4), kTrue);
  EXPECT_EQ(Read(Text(std::size_t{16383}, u'N')), TaggedValue(std::int32_t{3}));
  EXPECT_EQ(Write(Text(std::size_t{16384}, u'n'), std::int32_t{3}, 4), kFalse);
}

TEST_F(RegistryContract, GuardsHandlesByTheirRights) {
  EXPECT_EQ(Write(u"name", std::int32_t{3}, 4), kTrue);
  std::int32_t type = 0;
  std::int32_t integer = 0;
  std::int32_t size = 4;
  const RegistryHandle for_reading = OpenKey(131097);
  EXPECT_EQ(advapi32().RegSetValueExA(for_reading, "name", 0, 4, &integer, 4), 5);
  EXPECT_EQ(advapi32().RegCloseKey(for_reading), 0);
  const RegistryHandle for_writing = OpenKey(2);
  EXPECT_EQ(advapi32().RegQueryValueExA(for_writing, "name", nullptr, &type, &integer, &size), 5);
  EXPECT_EQ(advapi32().RegCloseKey(for_writing), 0);
}

TEST_F(RegistryContract, SaysHowMuchRoomAValueWants) {
  Store("name", 3, "12345");
  const RegistryHandle key = OpenKey(131097);
  std::int32_t type = 0;
  std::int32_t size = 0;
  EXPECT_EQ(advapi32().RegQueryValueExA(key, "name", nullptr, &type, nullptr, &size), 0);
  EXPECT_EQ(type, 3);
  EXPECT_EQ(size, 5);
  char data[6] = "#####";
  size = 4;
  EXPECT_EQ(advapi32().RegQueryValueExA(key, "name", nullptr, &type, data, &size), 234);
  EXPECT_EQ(size, 5);
  EXPECT_STREQ(data, "#####");
  EXPECT_EQ(advapi32().RegQueryValueExA(key, "name", nullptr, &type, data, &size), 0);
  EXPECT_STREQ(data, "12345");
  EXPECT_EQ(advapi32().RegQueryValueExA(key, "none", nullptr, &type, data, &size), 2);
  EXPECT_EQ(advapi32().RegQueryValueExA(key, "name", nullptr, &type, data, nullptr), 87);
  EXPECT_EQ(advapi32().RegCloseKey(key), 0);
  EXPECT_EQ(advapi32().RegCloseKey(key), 6);
  EXPECT_EQ(advapi32().RegQueryValueExA(key, "name", nullptr, &type, data, &size), 6);
  EXPECT_EQ(advapi32().RegSetValueExA(key, "name", 0, 3, data, 5), 6);
}

}  // namespace
}  // namespace quorvane::basAPI_api
