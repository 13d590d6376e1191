// Proves the order of calls of a registry write, what each type stores, what becomes of the
// caller's value, and which handle stays open for good.

#include <gtest/gtest.h>

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

class WriteRegistryValue : public ::testing::Test {
 protected:
  Boolean16 Write(TaggedValue value, std::int32_t type, const CodePage& page = Page1252()) {
    value_ = std::move(value);
    const Boolean16 result =
        basAPI_api::WriteRegistryValue(kHive, path_, name_, value_, type, os_, page);
    EXPECT_FALSE(os_.used_badly);
    return result;
  }

  FakeRegistry os_;
  Text path_ = u"Software\\Key";
  Text name_ = u"name";
  TaggedValue value_;
};

TEST_F(WriteRegistryValue, CreatesStoresAndCloses) {
  os_.key_exists = false;
  EXPECT_EQ(Write(Text(u"abc"), 1), kTrue);
  EXPECT_EQ(os_.log,
            (CallLog{R"(RegCreateKeyExA(-2147483647, "Software\Key", 0, null, 0, 63, null))",
                     R"(RegSetValueExA(101, "name", 0, 1, 3))", "RegCloseKey(101)"}));
  EXPECT_EQ(os_.values["name"].data, "abc");
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(WriteRegistryValue, AsksForTheSixKeyRightsAlone) {
  static_cast<void>(Write(Text(u"abc"), 1));
  EXPECT_EQ(os_.log[0], R"(RegCreateKeyExA(-2147483647, "Software\Key", 0, null, 0, 63, null))");
  EXPECT_EQ(63, 1 + 2 + 4 + 8 + 16 + 32);
}

TEST_F(WriteRegistryValue, LeavesTheCallersTextAsItIs) {
  const TaggedValue text = Text(u"\u30B7 12");
  EXPECT_EQ(Write(text, 1), kTrue);
  EXPECT_EQ(value_, text);
  EXPECT_EQ(os_.values["name"].data, "? 12");
}

TEST_F(WriteRegistryValue, StoresTheTextFormOfANumber) {
  EXPECT_EQ(Write(std::int32_t{-12}, 1), kTrue);
  EXPECT_EQ(os_.values["name"].data, "-12");
  EXPECT_EQ(value_, TaggedValue(std::int32_t{-12}));
  EXPECT_EQ(Write(1.5, 1), kTrue);
  EXPECT_EQ(os_.values["name"].data, "1.5");
  EXPECT_EQ(Write({}, 1), kTrue);
  EXPECT_EQ(os_.values["name"].data, "");
  EXPECT_TRUE(value_.IsEmpty());
}

TEST_F(WriteRegistryValue, StoresAnAbsentTextAsNoBytes) {
  EXPECT_EQ(Write(Text(), 1), kTrue);
  EXPECT_EQ(os_.log[1], R"(RegSetValueExA(101, "name", 0, 1, 0))");
}

TEST_F(WriteRegistryValue, CutsDataShortUnderAMultiByteCodePage) {
  EXPECT_EQ(Write(Text(u"\u30B7\u30B9x"), 1, Page932()), kTrue);
  EXPECT_EQ(os_.log[1], R"(RegSetValueExA(101, "name", 0, 1, 3))");
  EXPECT_EQ(os_.values["name"].data, "\x83\x56\x83");
}

TEST_F(WriteRegistryValue, LosesTheLastCharacterWhenReadBackFromAStoreOfExactBytes) {
  EXPECT_EQ(Write(Text(u"abc"), 1), kTrue);
  EXPECT_EQ(ReadRegistryValue(kHive, path_, name_, os_, Page1252()), TaggedValue(Text(u"ab")));
}

TEST_F(WriteRegistryValue, StoresFourBytesForAnInteger) {
  EXPECT_EQ(Write(std::int32_t{0x01020304}, 4), kTrue);
  EXPECT_EQ(os_.log[1], R"(RegSetValueExA(101, "name", 0, 4, 4))");
  EXPECT_EQ(os_.values["name"].data, "\x04\x03\x02\x01");
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(WriteRegistryValue, TurnsTheCallersValueIntoTheIntegerStoredOrNot) {
  EXPECT_EQ(Write(Text(u"12"), 4), kTrue);
  EXPECT_EQ(value_, TaggedValue(std::int32_t{12}));
  EXPECT_EQ(Write(kTrue, 4), kTrue);
  EXPECT_EQ(value_, TaggedValue(std::int32_t{-1}));
  EXPECT_EQ(Write(2.5, 4), kTrue);
  EXPECT_EQ(value_, TaggedValue(std::int32_t{2}));
  os_.plan = FaultPlan(2);
  EXPECT_EQ(Write(Text(u" &HFF "), 4), kFalse);
  EXPECT_EQ(value_, TaggedValue(std::int32_t{255}));
}

TEST_F(WriteRegistryValue, StoresNothingForAnyOtherTypeAndSucceeds) {
  for (const std::int32_t type : {0, 2, 3, 5, 7, 11, -1}) {
    os_ = FakeRegistry();
    os_.key_exists = false;
    EXPECT_EQ(Write(Text(u"abc"), type), kTrue) << type;
    EXPECT_EQ(os_.log.size(), 2U);
    EXPECT_EQ(os_.log.back(), "RegCloseKey(101)");
    EXPECT_TRUE(os_.key_exists);
    EXPECT_TRUE(os_.values.empty());
    EXPECT_EQ(value_, TaggedValue(Text(u"abc")));
    EXPECT_TRUE(os_.open.empty());
  }
}

TEST_F(WriteRegistryValue, IsFalseWhenTheKeyCannotBeMade) {
  os_.plan = FaultPlan(1);
  EXPECT_EQ(Write(Text(u"12"), 4), kFalse);
  EXPECT_EQ(value_, TaggedValue(Text(u"12"))) << "not converted yet";
  EXPECT_EQ(os_.log.size(), 1U);
  EXPECT_TRUE(os_.open.empty());
}

TEST_F(WriteRegistryValue, LeavesTheKeyOpenAfterAFailedStore) {
  for (const std::int32_t type : {1, 4}) {
    os_ = FakeRegistry(FaultPlan(2));
    EXPECT_EQ(Write(Text(u"12"), type), kFalse) << type;
    EXPECT_EQ(os_.log.size(), 2U) << "no close";
    EXPECT_EQ(os_.open.size(), 1U);
  }
}

TEST_F(WriteRegistryValue, LeavesTheKeyOpenAfterARunTimeError) {
  for (const TaggedValue& value : {TaggedValue(Text(u"twelve")), TaggedValue(Text(u"2147483648")),
                                   TaggedValue(Text(u"")), TaggedValue(1e300)}) {
    os_ = FakeRegistry();
    os_.key_exists = false;
    EXPECT_EQ(Write(value, 4), kFalse);
    EXPECT_EQ(value_, value);
    EXPECT_TRUE(os_.key_exists) << "the key is made before the value is looked at";
    EXPECT_EQ(os_.log.size(), 1U);
    EXPECT_EQ(os_.open.size(), 1U);
  }
}

TEST_F(WriteRegistryValue, HandsBackWhatTheCodePageCannotHold) {
  path_ = u"Key \u30B7";
  name_ = u"na\u0416e";
  EXPECT_EQ(Write(std::int32_t{1}, 3), kTrue);
  EXPECT_EQ(path_, Text(u"Key ?"));
  EXPECT_EQ(name_, Text(u"na\u0416e")) << "nothing is stored, so the name is not handed out";
  EXPECT_EQ(Write(std::int32_t{1}, 4), kTrue);
  EXPECT_EQ(name_, Text(u"na?e"));
}

// Each call fails in turn: once, and then with all that follow.
TEST_F(WriteRegistryValue, LeavesOneKeyOpenOnlyAfterAFailedStoreWhicheverCallFails) {
  for (const std::int32_t type : {1, 4}) {
    for (const auto lasts : {FaultPlan::Lasts::kOnce, FaultPlan::Lasts::kForGood}) {
      for (int call = 1;; ++call) {
        os_ = FakeRegistry(FaultPlan(call, lasts));
        const Boolean16 result = Write(Text(u"12"), type);
        EXPECT_EQ(os_.open.size(), call == 2 ? 1U : 0U) << type << ' ' << call;
        if (!os_.plan.HasStruck()) {
          EXPECT_EQ(call, 4) << "create, set, close";
          break;
        }
        EXPECT_EQ(result, call < 3 ? kFalse : kTrue) << type << ' ' << call;
      }
    }
  }
}

}  // namespace
}  // namespace quorvane::basAPI_api
