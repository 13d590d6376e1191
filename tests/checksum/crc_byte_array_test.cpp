// GetByteArrayCrc32: published values, bounds of every kind, and the narrow limits of its 16-bit
// counter.

#include <gtest/gtest.h>

#include <limits>
#include <string_view>

#include "checksum/cCRC32.h"
#include "tests/support/plain_crc.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"

namespace quorvane {
namespace {

using testing::ArrayOf;
using testing::ErrorNumberOf;
using testing::ErrorOf;
using testing::PlainCrc;
using testing::SampleBytes;

std::int32_t CrcOf(const ByteArray& bytes) { return cCRC32().GetByteArrayCrc32(bytes); }

std::int32_t CrcOf(std::string_view text) {
  return CrcOf(ArrayOf(std::vector<std::uint8_t>(text.begin(), text.end())));
}

TEST(GetByteArrayCrc32, GivesThePublishedValues) {
  EXPECT_EQ(CrcOf("123456789"), -873187034);
  EXPECT_EQ(CrcOf("a"), static_cast<std::int32_t>(0xE8B7BE43));
  EXPECT_EQ(CrcOf("abc"), 0x352441C2);
  EXPECT_EQ(CrcOf("message digest"), 0x20159D7F);
  EXPECT_EQ(CrcOf("The quick brown fox jumps over the lazy dog"), 0x414FA339);
  EXPECT_EQ(CrcOf(ByteArray(0, 31)), 0x190A55AD);  // 32 zeros
}

TEST(GetByteArrayCrc32, DeliversATopBitAsANegativeNumber) {
  EXPECT_EQ(static_cast<std::uint32_t>(CrcOf("123456789")), 0xCBF43926U);
  EXPECT_LT(CrcOf("123456789"), 0);
}

TEST(GetByteArrayCrc32, OfAnEmptyArrayIsZero) {
  EXPECT_EQ(CrcOf(ByteArray(0, -1)), 0);
  EXPECT_EQ(CrcOf(ByteArray(10, 9)), 0);
  EXPECT_EQ(CrcOf(ByteArray(5, -5)), 0);
  EXPECT_EQ(CrcOf(ByteArray(32767, 32766)), 0);
}

TEST(GetByteArrayCrc32, TakesTheElementsInOrderWhateverTheLowerBound) {
  const auto bytes = SampleBytes(11);
  for (const std::int32_t lower : {-32768, -5, -1, 0, 1, 32756 - 1})
    EXPECT_EQ(CrcOf(ArrayOf(bytes, lower)), PlainCrc(bytes)) << lower;
}

TEST(GetByteArrayCrc32, Takes32767ElementsFromIndexZero) {
  const auto bytes = SampleBytes(32767);
  EXPECT_EQ(CrcOf(ArrayOf(bytes)), PlainCrc(bytes));
}

TEST(GetByteArrayCrc32, TakesMoreThan32767ElementsFromANegativeIndex) {
  const auto bytes = SampleBytes(65535);
  EXPECT_EQ(CrcOf(ArrayOf(bytes, -32768)), PlainCrc(bytes));
}

TEST(GetByteArrayCrc32, OverflowsAfterTheLastElementAtUpperBound32767) {
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray(0, 32767)); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray(32767, 32767)); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray(-32768, 32767)); }), 6);
}

TEST(GetByteArrayCrc32, OverflowsOnABoundBeyond16Bits) {
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray(0, 32768)); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray(-32769, -32769)); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray(-32769, -32770)); }), 6);
  // Empty ones, too: the bounds are narrowed before they are compared.
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray(40000, 10)); }), 6);
  constexpr auto kLowest = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray(0, kLowest)); }), 6);
}

TEST(GetByteArrayCrc32, LooksAtTheBoundsBeforeTheDimensions) {
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray({{0, 32768}, {0, 0}})); }), 6);
}

TEST(GetByteArrayCrc32, RefusesAnArrayWithoutBounds) {
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray()); }), 9);
}

TEST(GetByteArrayCrc32, RefusesSeveralDimensionsAtTheFirstElement) {
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray({{0, 3}, {0, 3}})); }), 9);
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray({{0, 3}, {0, -1}})); }), 9);
  // The first element is never reached: the step past 32767 would come later.
  EXPECT_EQ(ErrorNumberOf([] { CrcOf(ByteArray({{32767, 32767}, {0, 0}})); }), 9);
  // Where the first dimension is empty there is no first element.
  EXPECT_EQ(CrcOf(ByteArray({{0, -1}, {0, 3}})), 0);
}

TEST(GetByteArrayCrc32, RaisesWithStandardTextAndNoSource) {
  const auto error = ErrorOf([] { CrcOf(ByteArray(0, 32768)); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description, Text(u"Overflow"));
  EXPECT_TRUE(error->source.IsAbsent());
}

TEST(GetByteArrayCrc32, LeavesObjectAndArrayAsTheyWere) {
  const auto bytes = SampleBytes(5000);
  const ByteArray array = ArrayOf(bytes);
  const cCRC32 crc;
  const std::int32_t first = crc.GetByteArrayCrc32(array);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(crc.GetByteArrayCrc32(ByteArray())); }), 9);
  EXPECT_EQ(crc.GetByteArrayCrc32(array), first);
  EXPECT_TRUE(std::ranges::equal(array.Elements(), bytes));
}

}  // namespace
}  // namespace quorvane
