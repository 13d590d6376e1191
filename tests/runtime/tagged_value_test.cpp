// Proves that a value tells its kind, and equals another of the same kind and value only.

#include "runtime/tagged_value.h"

#include <gtest/gtest.h>

#include "tests/support/raises.h"  // prints texts

namespace quorvane {
namespace {

TEST(TaggedValue, IsOfTheEmptyKindAtFirst) {
  const TaggedValue value;
  EXPECT_TRUE(value.IsEmpty());
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

}  // namespace
}  // namespace quorvane
