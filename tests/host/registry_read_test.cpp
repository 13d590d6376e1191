// Proves the order of calls of a registry read, what it makes of every type and size, and which
// handle stays open.

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "host/basAPI_api.h"
#include "tests/support/code_pages.h"
#include "tests/support/fake_registry.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

using testing::CallLog;
using testing::FakeRegistry;
using testing::FaultPlan;
using testing::Page1252;
using testing::Page932;

constexpr RegistryHandle kHive = -2147483647;
const TaggedValue kEmptyKind;
const TaggedValue kEmptyText = Text(u"");

class ReadRegistryValue : public ::testing::Test {
 protected:
  TaggedValue Read(const CodePage& page = Page1252()) {
    TaggedValue value = basAPI_api::ReadRegistryValue(kHive, path_, name_, os_, page);
    EXPECT_FALSE(os_.used_badly);
    return value;
  }
  TaggedValue ReadStored(std::int32_t type, std::string data) {
    os_.values["name"] = {type, std::move(data)};
    return Read();
  }

  FakeRegistry os_;
  Text path_ = u"Software\\Key";
  Text name_ = u"name";
};

TEST_F(ReadRegistryValue, OpensQueriesTwiceAndCloses) {
  EXPECT_EQ(ReadStored(1, std::string("hello\0", 6)), TaggedValue(Text(u"hello")));
  EXPECT_EQ(os_.log,
            (CallLog{R"(RegOpenKeyExA(-2147483647, "Software\Key", 0, 131097))",
                     R"(RegQueryValueExA(101, "name", 0))",
                     R"(RegQueryValueExA(101, "name", 6) with data)", "RegCloseKey(101)"}));
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(ReadRegistryValue, GivesTheEmptyKindWithoutAKey) {
  os_.key_exists = false;
  EXPECT_EQ(Read(), kEmptyKind);
  EXPECT_EQ(os_.log.size(), 1U);
}

TEST_F(ReadRegistryValue, GivesTheEmptyKindWithoutAValue) {
  EXPECT_EQ(Read(), kEmptyKind);
  EXPECT_EQ(os_.log.back(), "RegCloseKey(101)");
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(ReadRegistryValue, GivesTheEmptyKindForOtherTypes) {
  for (const std::int32_t type : {0, 2, 5, 7, 11, -1}) {
    EXPECT_EQ(ReadStored(type, std::string("text\0", 5)), kEmptyKind) << type;
    EXPECT_EQ(os_.log.back(), "RegCloseKey(" + std::to_string(100 + os_.log.size() / 3) + ")");
  }
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(ReadRegistryValue, GivesTheEmptyTextForOneZeroByteAndCloses) {
  EXPECT_EQ(ReadStored(1, std::string("\0", 1)), kEmptyText);
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(ReadRegistryValue, GivesTheEmptyTextForAStringOfNoBytes) {
  EXPECT_EQ(ReadStored(1, ""), kEmptyText);
  EXPECT_EQ(os_.open.size(), 1U) << "the handler closes nothing";
  EXPECT_EQ(os_.log.size(), 2U) << "no second query";
}

TEST_F(ReadRegistryValue, DropsTheLastByteUnseen) {
  EXPECT_EQ(ReadStored(1, "abc"), TaggedValue(Text(u"ab")));
  EXPECT_EQ(ReadStored(1, std::string("a\0b\0", 4)), TaggedValue(Text(std::u16string(u"a\0b", 3))));
}

TEST_F(ReadRegistryValue, CutsAtTheSizeThatTheSecondQueryReports) {
  os_.values["name"] = {1, std::string("hello\0", 6)};
  os_.before_query = [&](bool with_data) {
    if (with_data) os_.values["name"].data = std::string("he\0", 3);
  };
  EXPECT_EQ(Read(), TaggedValue(Text(std::u16string(u"he\0", 3))));
}

TEST_F(ReadRegistryValue, GivesTheEmptyKindWhenAStringGrowsBetweenTheQueries) {
  os_.values["name"] = {1, std::string("hello\0", 6)};
  os_.before_query = [&](bool with_data) {
    if (with_data) os_.values["name"].data = std::string("hello world\0", 12);
  };
  EXPECT_EQ(Read(), kEmptyKind);
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(ReadRegistryValue, PassesTheReportedSizeOfAnIntegerWhateverItIs) {
  for (const std::int32_t type : {3, 4}) {
    for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 7U}) {
      static_cast<void>(ReadStored(type, std::string(size, '\1')));
      EXPECT_EQ(os_.log[os_.log.size() - 2].substr(std::string("RegQueryValueExA(101, ").size()),
                "\"name\", " + std::to_string(size) + ") with data");
    }
  }
}

TEST_F(ReadRegistryValue, PassesTheTypeOfTheFirstQueryToTheSecond) {
  for (const std::int32_t type : {1, 3, 4}) {
    os_.types_seen.clear();
    static_cast<void>(ReadStored(type, std::string("abc\0", 4)));
    ASSERT_EQ(os_.types_seen.size(), 2U);
    EXPECT_EQ(os_.types_seen[0].second, 0);
    EXPECT_EQ(os_.types_seen[1].second, type);
  }
}

TEST_F(ReadRegistryValue, RaisesInsideForSizesThatNoBufferCanHave) {
  for (const std::int32_t type : {1, 3, 4}) {
    os_.values["name"] = {type, "x"};
    for (const std::int32_t size : {-5, std::numeric_limits<std::int32_t>::min()}) {
      os_.reported_size = size;
      EXPECT_EQ(Read(), kEmptyText) << type << ' ' << size;
    }
  }
  EXPECT_EQ(os_.open.size(), 6U);
}

TEST_F(ReadRegistryValue, ReadsDwordsAsSignedIntegers) {
  EXPECT_EQ(ReadStored(4, std::string("\x2A\0\0\0", 4)), TaggedValue(std::int32_t{42}));
  EXPECT_EQ(ReadStored(4, "\xFF\xFF\xFF\xFF"), TaggedValue(std::int32_t{-1}));
  EXPECT_EQ(os_.log[2], R"(RegQueryValueExA(101, "name", 4) with data)");
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(ReadRegistryValue, ReadsBinaryAsALittleEndianInteger) {
  EXPECT_EQ(ReadStored(3, "\x01\x02\x03\x04"), TaggedValue(std::int32_t{0x04030201}));
  EXPECT_EQ(ReadStored(3, "\x01\x02\x03\x84"), TaggedValue(std::int32_t{-2080177663}));
}

TEST_F(ReadRegistryValue, FillsAShortIntegerWithZeros) {
  EXPECT_EQ(ReadStored(3, ""), TaggedValue(std::int32_t{0}));
  EXPECT_EQ(ReadStored(3, "\xFF"), TaggedValue(std::int32_t{255}));
  EXPECT_EQ(ReadStored(3, "\x01\x02\xFF"), TaggedValue(std::int32_t{0xFF0201}));
  EXPECT_EQ(ReadStored(4, "\x07"), TaggedValue(std::int32_t{7}));
}

TEST_F(ReadRegistryValue, TakesTheFirstFourBytesOfALongerOne) {
  EXPECT_EQ(ReadStored(3, "\x01\x02\x03\x04\x05"), TaggedValue(std::int32_t{0x04030201}));
  EXPECT_EQ(ReadStored(4, std::string(100000, '\x01')), TaggedValue(std::int32_t{0x01010101}));
  EXPECT_EQ(os_.log[2], R"(RegQueryValueExA(101, "name", 5) with data)");
}

TEST_F(ReadRegistryValue, GivesTheEmptyKindWhenTheIntegersQueryFails) {
  os_.plan = FaultPlan(3);
  EXPECT_EQ(ReadStored(4, "\x01\x02\x03\x04"), kEmptyKind);
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(ReadRegistryValue, LeavesTheKeyOpenAfterARunTimeError) {
  os_.before_query = [](bool) { Raise(ErrorNumber::kOutOfMemory); };
  EXPECT_EQ(ReadStored(4, "\x01\x02\x03\x04"), kEmptyText);
  EXPECT_EQ(os_.open.size(), 1U);
  EXPECT_EQ(os_.log.size(), 2U);
}

TEST_F(ReadRegistryValue, HandsBackWhatTheCodePageCannotHold) {
  path_ = u"Key \u30B7";
  name_ = u"na\u0416e";
  EXPECT_EQ(Read(), kEmptyKind);
  EXPECT_EQ(path_, Text(u"Key ?"));
  EXPECT_EQ(name_, Text(u"na?e"));
}

TEST_F(ReadRegistryValue, AsksForTheDefaultValueByAnAbsentName) {
  os_.values[""] = {1, std::string("def\0", 4)};
  name_ = Text();
  EXPECT_EQ(Read(), TaggedValue(Text(u"def")));
  EXPECT_EQ(os_.log[1], "RegQueryValueExA(101, null, 0)");
  EXPECT_TRUE(name_.IsAbsent());
}

TEST_F(ReadRegistryValue, GivesWholeTextUnderAMultiByteCodePage) {
  os_.values["name"] = {1, std::string("\x83\x56\x83\x58x\0", 6)};
  EXPECT_EQ(Read(Page932()), TaggedValue(Text(u"\u30B7\u30B9x")));
}

// Each call fails in turn: once, and then with all that follow.
TEST_F(ReadRegistryValue, GivesTheEmptyKindOrTheValueWhicheverCallFails) {
  for (const std::int32_t type : {1, 3, 4}) {
    for (const auto lasts : {FaultPlan::Lasts::kOnce, FaultPlan::Lasts::kForGood}) {
      for (int call = 1;; ++call) {
        os_ = FakeRegistry(FaultPlan(call, lasts));
        const TaggedValue value = ReadStored(type, std::string("1\0\0\0", 4));
        EXPECT_EQ(os_.open.size(), 0U) << type << ' ' << call;
        if (!os_.plan.HasStruck()) {
          EXPECT_EQ(call, 5) << "open, query, query, close";
          break;
        }
        // The close's result is not looked at.
        EXPECT_EQ(value.IsEmpty(), call < 4) << type << ' ' << call;
      }
    }
  }
}

}  // namespace
}  // namespace quorvane::basAPI_api
