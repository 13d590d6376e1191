// What a checksum gives when memory runs out at any point in it: the error to the caller, or the
// right number; and no file stays open.

#include <gtest/gtest.h>

#include "checksum/cBinaryFileStream.h"
#include "checksum/cCRC32.h"
#include "tests/support/failing_memory.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"
#include "tests/support/temporary_folder.h"

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

TEST(ExhaustedMemory, IsTheErrorItIsForAFileAndLeavesNoneOpen) {
  const TemporaryFolder folder;
  const Text name = folder.WriteFile(u"two blocks.bin", SampleBytes(8200));
  cBinaryFileStream whole;
  whole.PutFile(name);
  const std::int32_t expected = cCRC32().GetFileCrc32(whole);
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    std::int32_t crc = 0;
    arm();
    const std::int32_t number = NumberRaised([&] {
      cBinaryFileStream stream;
      stream.PutFile(name);
      crc = cCRC32().GetFileCrc32(stream);
    });
    const bool failed = disarm();
    // A listing that runs out of memory is caught and raised again under its number, 7.
    EXPECT_EQ(number, failed ? 7 : 0);
    EXPECT_EQ(crc, number == 0 ? expected : 0);
    EXPECT_EQ(files().FreeFileNumber(), 1);
  });
  EXPECT_GE(failures, 4);
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
