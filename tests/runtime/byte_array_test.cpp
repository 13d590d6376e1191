// Proves that a byte array answers by its own bounds, and what is seen of one without bounds or
// with several dimensions.

#include "runtime/byte_array.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>

#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;

TEST(ByteArray, HasNoBoundsUntilItIsAllocated) {
  const ByteArray array;
  EXPECT_EQ(ErrorNumberOf([&] { (void)array.LowerBound(); }), 9);
  EXPECT_EQ(ErrorNumberOf([&] { (void)array.UpperBound(); }), 9);
  EXPECT_EQ(ErrorNumberOf([&] { (void)array.At(0); }), 9);
  EXPECT_TRUE(array.Elements().empty());
}

TEST(ByteArray, IsNotAllocatedByAnEmptyListOfDimensions) {
  const ByteArray array(std::vector<Bounds>{});
  EXPECT_EQ(ErrorNumberOf([&] { (void)array.LowerBound(); }), 9);
  EXPECT_TRUE(array.Elements().empty());
}

TEST(ByteArray, HasNoElementsWhereNoBoundsAreNamed) {
  const ByteArray array(std::vector<Bounds>(1));
  EXPECT_EQ(array.LowerBound(), 0);
  EXPECT_EQ(array.UpperBound(), -1);
  EXPECT_TRUE(array.Elements().empty());
}

TEST(ByteArray, CountsFromItsOwnLowerBound) {
  ByteArray array(-5, 5);
  EXPECT_EQ(array.LowerBound(), -5);
  EXPECT_EQ(array.UpperBound(), 5);
  ASSERT_EQ(array.Elements().size(), 11U);
  std::iota(array.Elements().begin(), array.Elements().end(), std::uint8_t{1});
  EXPECT_EQ(array.At(-5), 1);
  EXPECT_EQ(array.At(0), 6);
  EXPECT_EQ(array.At(5), 11);
}

TEST(ByteArray, RaisesSubscriptOutOfRangeOutsideItsBounds) {
  ByteArray array(1, 3);
  EXPECT_EQ(ErrorNumberOf([&] { (void)array.At(0); }), 9);
  EXPECT_EQ(ErrorNumberOf([&] { (void)array.At(4); }), 9);
}

TEST(ByteArray, IsEmptyWithItsLowerBoundAboveTheUpper) {
  const ByteArray array(0, -1);
  EXPECT_EQ(array.LowerBound(), 0);
  EXPECT_EQ(array.UpperBound(), -1);
  EXPECT_TRUE(array.Elements().empty());
  EXPECT_EQ(ErrorNumberOf([&] { (void)array.At(0); }), 9);
  EXPECT_TRUE(ByteArray(100, -100).Elements().empty()) << "however far above";
}

TEST(ByteArray, HoldsBoundsAtTheEndsOf32Bits) {
  constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
  ByteArray top(kMax - 1, kMax);
  top.At(kMax) = 7;
  EXPECT_EQ(top.Elements()[1], 7);
  const ByteArray bottom(kMin, kMin);
  EXPECT_EQ(bottom.At(kMin), 0);
  EXPECT_EQ(bottom.Elements().size(), 1U);
}

TEST(ByteArray, ShowsOnlyBoundsAndBlockOfSeveralDimensions) {
  ByteArray array({{0, 1}, {0, 2}});
  EXPECT_EQ(array.LowerBound(), 0);
  EXPECT_EQ(array.UpperBound(), 1);
  EXPECT_EQ(array.Elements().size(), 6U);
  EXPECT_EQ(ErrorNumberOf([&] { (void)array.At(0); }), 9);
}

TEST(ByteArray, IsEmptyWhenOneOfItsDimensionsIs) {
  EXPECT_TRUE(ByteArray({{0, 1}, {0, -1}}).Elements().empty());
}

TEST(ByteArray, RaisesOutOfMemoryBeyondAnyAddressSpace) {
  constexpr Bounds kHuge{std::numeric_limits<std::int32_t>::min(),
                         std::numeric_limits<std::int32_t>::max()};
  EXPECT_EQ(ErrorNumberOf([&] { (void)ByteArray({kHuge, kHuge, kHuge}); }), 7);
}

}  // namespace
}  // namespace quorvane
