// The table, and the fast advance of the register against the plain loop: every short length, every
// alignment, lengths around each change of method, and any cut into pieces.

#include "checksum/crc_register.h"

#include <gtest/gtest.h>

#include "tests/support/plain_crc.h"
#include "tests/support/sample_bytes.h"

namespace quorvane {
namespace {

using testing::AdvanceCrcPlainly;
using testing::SampleBytes;

std::uint32_t Entry(std::size_t index) {
  return static_cast<std::uint32_t>(BuildCrcTable()[index]);
}

TEST(CrcTable, HoldsThePublishedValues) {
  EXPECT_EQ(Entry(0), 0U);
  EXPECT_EQ(Entry(1), 0x77073096U);
  EXPECT_EQ(Entry(2), 0xEE0E612CU);
  EXPECT_EQ(Entry(128), 0xEDB88320U);
  EXPECT_EQ(Entry(255), 0x2D02EF8DU);
}

TEST(CrcTable, EachSlotIsItsIndexAfterEightBits) {
  for (std::uint32_t index = 0; index < 256; ++index) {
    std::uint32_t value = index;
    for (int bit = 0; bit < 8; ++bit) {
      const bool one_left = (value & 1) != 0;
      value >>= 1;
      if (one_left) value ^= 0xEDB88320;
    }
    EXPECT_EQ(Entry(index), value) << index;
  }
}

TEST(CrcTable, HasASpareSlotThatStaysZero) {
  const CrcTable table = BuildCrcTable();
  ASSERT_EQ(table.size(), 257U);
  EXPECT_EQ(table[256], 0);
}

class AdvanceCrcTest : public ::testing::Test {
 protected:
  void ExpectSameAsPlain(std::span<const std::uint8_t> bytes, std::uint32_t start) const {
    ASSERT_EQ(AdvanceCrc(table_, start, bytes), AdvanceCrcPlainly(table_, start, bytes))
        << bytes.size() << " bytes from the register " << start;
  }

  const CrcTable table_ = BuildCrcTable();
};

TEST_F(AdvanceCrcTest, EqualsThePlainLoopAtEveryLengthUpTo1200) {
  for (std::size_t length = 0; length <= 1200; ++length) {
    // Of exactly that size, so that the sanitizer sees a read behind the end.
    const auto bytes = SampleBytes(length, static_cast<std::uint32_t>(length));
    ExpectSameAsPlain(bytes, 0xFFFFFFFF);
    ExpectSameAsPlain(bytes, 0);
    ExpectSameAsPlain(bytes, 0x12345678);
  }
}

TEST_F(AdvanceCrcTest, EqualsThePlainLoopAroundEachChangeOfMethod) {
  for (const std::size_t near : {8160U, 8192U, 8640U, 2U * 8160U, 32767U, 65536U}) {
    for (std::size_t length = near - 10; length <= near + 10; ++length)
      ExpectSameAsPlain(SampleBytes(length), 0xFFFFFFFF);
  }
}

TEST_F(AdvanceCrcTest, EqualsThePlainLoopAtEveryAlignment) {
  const auto bytes = SampleBytes(9000);
  for (std::size_t front = 0; front < 64; ++front) {
    ExpectSameAsPlain(std::span(bytes).subspan(front, 8192), 0xFFFFFFFF);
    ExpectSameAsPlain(std::span(bytes).subspan(front, 777), 0xFFFFFFFF);
  }
}

TEST_F(AdvanceCrcTest, GivesTheSameInPiecesAsInOne) {
  const auto bytes = SampleBytes(20000);
  const std::uint32_t whole = AdvanceCrc(table_, 0xFFFFFFFF, bytes);
  std::mt19937 random(7);
  for (int round = 0; round < 50; ++round) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::span<const std::uint8_t> rest = bytes; !rest.empty();) {
      const std::size_t piece = std::min<std::size_t>(rest.size(), random() % 6000);
      crc = AdvanceCrc(table_, crc, rest.first(piece));
      rest = rest.subspan(piece);
    }
    ASSERT_EQ(crc, whole);
  }
}

TEST_F(AdvanceCrcTest, NeverReadsTheSpareSlot) {
  const auto bytes = SampleBytes(40000);
  CrcTable table = table_;
  table[256] = -1;
  EXPECT_EQ(AdvanceCrc(table, 0xFFFFFFFF, bytes), AdvanceCrc(table_, 0xFFFFFFFF, bytes));
}

}  // namespace
}  // namespace quorvane
