// What a checksum gives when memory runs out at any point in it: the error to the caller, or the
// right number; and no file stays open.

#include <gtest/gtest.h>

#include "checksum/cBinaryFileStream.h"
#include "checksum/cCRC32.h"
#include "tests/support/failing_memory.h"
#include "tests/support/raises.h"

namespace quorvane::testing {
namespace {

TEST(ExhaustedMemory, IsTheErrorItIsForAnArray) {
  const ByteArray zeros(0, 31);
  FailEachAllocation([&](auto arm, auto disarm) {
    std::int32_t crc = 0;
    arm();
    const std::int32_t number = NumberRaised([&] { crc = cCRC32().GetByteArrayCrc32(zeros); });
    EXPECT_EQ(number, disarm() ? 7 : 0);
    EXPECT_EQ(crc, number == 0 ? 0x190A55AD : 0);
  });
}

TEST(ExhaustedMemory, IsTheErrorItIsForAMissingFileAndLeavesNoneOpen) {
  FailEachAllocation([](auto arm, auto disarm) {
    const Text name = u"a file that is not there.bin";
    arm();
    const std::int32_t number = NumberRaised([&] { cBinaryFileStream().PutFile(name); });
    const bool failed = disarm();
    EXPECT_TRUE(number == 53 || (failed && number == 7)) << number;
    EXPECT_EQ(files().FreeFileNumber(), 1);
  });
}

}  // namespace
}  // namespace quorvane::testing
