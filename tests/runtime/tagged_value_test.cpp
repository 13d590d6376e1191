// Proves what each kind of value becomes in each other kind, and where a conversion raises 6 or 13.

#include "runtime/tagged_value.h"

#include <gtest/gtest.h>

#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;

TEST(TaggedValue, IsOfTheEmptyKindAtFirst) {
  const TaggedValue value;
  EXPECT_TRUE(value.IsEmpty());
  EXPECT_EQ(value.ToText(), Text(u""));
  EXPECT_EQ(value.ToInteger16(), 0);
  EXPECT_EQ(value.ToInteger32(), 0);
  EXPECT_EQ(value.ToBoolean(), kFalse);
}

TEST(TaggedValue, TellsItsKind) {
  const TaggedValue value(std::int32_t{5});
  EXPECT_TRUE(value.Is<std::int32_t>());
  EXPECT_FALSE(value.Is<std::int16_t>());
  ASSERT_NE(value.As<std::int32_t>(), nullptr);
  EXPECT_EQ(*value.As<std::int32_t>(), 5);
  EXPECT_EQ(value.As<Text>(), nullptr);
}

TEST(TaggedValue, ComparesKindAndValue) {
  EXPECT_EQ(TaggedValue(Text(u"80")), TaggedValue(Text(u"80")));
  EXPECT_FALSE(TaggedValue(Text(u"80")) == TaggedValue(std::int16_t{80}));
  EXPECT_FALSE(TaggedValue(std::int16_t{80}) == TaggedValue(std::int32_t{80}));
  EXPECT_FALSE(TaggedValue() == TaggedValue(Text(u"")));
}

TEST(TaggedValue, BecomesText) {
  EXPECT_EQ(TaggedValue(Text(u"as it is")).ToText(), Text(u"as it is"));
  EXPECT_EQ(TaggedValue(kTrue).ToText(), Text(u"True"));
  EXPECT_EQ(TaggedValue(Boolean16{1}).ToText(), Text(u"True"));
  EXPECT_EQ(TaggedValue(kFalse).ToText(), Text(u"False"));
  EXPECT_EQ(TaggedValue(std::int16_t{-1}).ToText(), Text(u"-1"));
  EXPECT_EQ(TaggedValue(std::int32_t{2147483647}).ToText(), Text(u"2147483647"));
  EXPECT_EQ(TaggedValue(2.5).ToText(), Text(u"2.5"));
}

TEST(TaggedValue, BecomesAnInteger) {
  EXPECT_EQ(TaggedValue(kTrue).ToInteger16(), -1);
  EXPECT_EQ(TaggedValue(2.5).ToInteger16(), 2);
  EXPECT_EQ(TaggedValue(3.5).ToInteger32(), 4);
  EXPECT_EQ(TaggedValue(Text(u" 8080 ")).ToInteger16(), 8080);
  EXPECT_EQ(TaggedValue(Text(u"&H7FFFFFFF")).ToInteger32(), 2147483647);
  EXPECT_EQ(TaggedValue(std::int16_t{-7}).ToInteger32(), -7);
}

TEST(TaggedValue, RaisesOverflowWhenTheIntegerIsTooNarrow) {
  EXPECT_EQ(ErrorNumberOf([] { (void)TaggedValue(std::int32_t{40000}).ToInteger16(); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)TaggedValue(1e10).ToInteger32(); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)TaggedValue(Text(u"70000")).ToInteger16(); }), 6);
}

TEST(TaggedValue, RaisesTypeMismatchForTextWithoutMeaning) {
  EXPECT_EQ(ErrorNumberOf([] { (void)TaggedValue(Text(u"eighty")).ToInteger16(); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { (void)TaggedValue(Text(u"")).ToInteger32(); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { (void)TaggedValue(Text(u"yes")).ToBoolean(); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { (void)TaggedValue(Text(u"truE!")).ToBoolean(); }), 13);
  for (const char16_t* text : {u"trux", u"TRUX", u"tru!", u"TRU[", u"tru{"})
    EXPECT_EQ(ErrorNumberOf([&] { (void)TaggedValue(Text(text)).ToBoolean(); }), 13);
}

TEST(TaggedValue, BecomesABooleanOfMinusOneOrZero) {
  EXPECT_EQ(TaggedValue(Boolean16{1}).ToBoolean(), kTrue);
  EXPECT_EQ(TaggedValue(std::int16_t{2}).ToBoolean(), kTrue);
  EXPECT_EQ(TaggedValue(0.25).ToBoolean(), kTrue);
  EXPECT_EQ(TaggedValue(std::int32_t{0}).ToBoolean(), kFalse);
  EXPECT_EQ(TaggedValue(Text(u"TRUE")).ToBoolean(), kTrue);
  EXPECT_EQ(TaggedValue(Text(u"False")).ToBoolean(), kFalse);
  EXPECT_EQ(TaggedValue(Text(u"#True#")).ToBoolean(), kTrue);
  EXPECT_EQ(TaggedValue(Text(u"#FALSE#")).ToBoolean(), kFalse);
  EXPECT_EQ(TaggedValue(Text(u"-1")).ToBoolean(), kTrue);
  EXPECT_EQ(TaggedValue(Text(u" 0.0 ")).ToBoolean(), kFalse);
}

}  // namespace
}  // namespace quorvane
