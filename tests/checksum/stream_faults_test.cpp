// Every call on the platform fails in turn, once and for good: what is raised, what stays open, and
// that nothing does once the stream is gone.

#include "tests/checksum/stream_test_base.h"

namespace quorvane {
namespace {

using testing::CallLog;
using testing::ErrorOf;
using testing::FakeApp;
using testing::FakeFiles;
using testing::FakeKernel32;
using testing::FaultPlan;

struct Outcome {
  std::int32_t error_number = 0;
  Text source = u"";
  std::size_t open_files = 0;  // while the stream lives on
  std::size_t bytes_read = 0;  // delivered before the fault
  std::string last_call = {};  // of the stream's end
};

// Assigns a file of 20000 bytes and reads it to the end.
Outcome Run(FaultPlan& plan) {
  CallLog log;
  FakeFiles files(log, plan);
  FakeApp app(log, plan);
  FakeKernel32 kernel32(log);
  files.contents[u"a.bin"].bytes = testing::SampleBytes(20000);
  Outcome outcome;
  {
    cBinaryFileStream stream(files, app, kernel32);
    ByteArray buffer(0, 8191);
    const auto error = ErrorOf([&] {
      stream.PutFile(u"a.bin");
      while (const std::int32_t count = stream.Read(buffer, 8192))
        outcome.bytes_read += static_cast<std::size_t>(count);
    });
    if (error) {
      outcome.error_number = error->number;
      outcome.source = error->source;
    }
    outcome.open_files = files.OpenCount();
  }
  EXPECT_EQ(files.OpenCount(), 0U);
  outcome.last_call = log.back();
  return outcome;
}

const Text kPlatform = u"the platform";

// By the number of the failing call; the run without a fault behind the last.
const std::vector<Outcome> kOnce{
    {57, u"Module.File", 0, 0, "EXEName()"},  // ListName
    {57, kPlatform, 0, 0, "FreeFileNumber()"},
    {57, kPlatform, 0, 0, "Close(1)"},  // OpenForReading: its number is closed, though unused
    {57, kPlatform, 1, 0, "Close(1)"},  // Length
    {57, kPlatform, 1, 0, "Close(1)"},  // Read
    {57, kPlatform, 1, 8192, "Close(1)"},
    {57, kPlatform, 1, 16384, "Close(1)"},
    {0, u"", 0, 20000, "Close(1)"},
};

void ExpectOutcomes(const std::vector<Outcome>& expected, FaultPlan::Lasts lasts) {
  for (std::size_t n = 1; n <= expected.size(); ++n) {
    FaultPlan plan(static_cast<int>(n), lasts);
    const Outcome outcome = Run(plan);
    const Outcome& wanted = expected[n - 1];
    EXPECT_EQ(plan.HasStruck(), n < expected.size());
    EXPECT_EQ(outcome.error_number, wanted.error_number) << "call " << n;
    EXPECT_EQ(outcome.source, wanted.source) << "call " << n;
    EXPECT_EQ(outcome.open_files, wanted.open_files) << "call " << n;
    EXPECT_EQ(outcome.bytes_read, wanted.bytes_read) << "call " << n;
    EXPECT_EQ(outcome.last_call, wanted.last_call) << "call " << n;
  }
}

TEST(StreamFaults, EachCallFailsOnce) { ExpectOutcomes(kOnce, FaultPlan::Lasts::kOnce); }

TEST(StreamFaults, EachCallFailsForGood) {
  std::vector<Outcome> for_good = kOnce;
  // The module's name cannot be told either, and that is what is then raised.
  for_good[0].error_number = 7;
  for_good[0].source = u"";
  ExpectOutcomes(for_good, FaultPlan::Lasts::kForGood);
}

class AfterAFault : public testing::StreamTest {};

TEST_F(AfterAFault, AReadMayBeTriedAgain) {
  const auto bytes = Write(u"a.bin", 20000);
  stream_.PutFile(u"a.bin");
  plan_ = FaultPlan(1);
  EXPECT_EQ(ReadFailure(), 57);
  EXPECT_EQ(CountsToTheEnd(), std::vector<std::int32_t>({8192, 8192, 20000 - 2 * 8192, 0}));
}

TEST_F(AfterAFault, ALastBlockMayBeTriedAgain) {
  const auto bytes = Write(u"a.bin", 10);
  stream_.PutFile(u"a.bin");
  plan_ = FaultPlan(1);
  EXPECT_EQ(ReadFailure(), 57);
  ASSERT_EQ(Read(), 10);
  EXPECT_TRUE(BufferStartsWith(bytes));
}

TEST_F(AfterAFault, AFileWhoseLengthCannotBeToldStaysOpenWithTheEarlierLength) {
  Write(u"a.bin", 10);
  plan_ = FaultPlan(4);
  EXPECT_EQ(testing::ErrorNumberOf([&] { stream_.PutFile(u"a.bin"); }), 57);
  EXPECT_EQ(files_.OpenCount(), 1U);
  EXPECT_EQ(stream_.Length(), 0);
  EXPECT_EQ(Read(), 0);  // which closes it
  EXPECT_EQ(files_.OpenCount(), 0U);
}

}  // namespace
}  // namespace quorvane
