// The property File, Length and Dispose: the order of calls, what each failure leaves behind, and
// the states New, Open and Closed.

#include "tests/checksum/stream_test_base.h"

namespace quorvane {
namespace {

using testing::CallLog;
using testing::ErrorNumberOf;
using testing::ErrorOf;
using testing::FakeFiles;
using testing::FaultPlan;

using StreamFile = testing::StreamTest;

TEST_F(StreamFile, OfANewObjectIsEmptyAndItsLengthZero) {
  EXPECT_EQ(stream_.File(), Text(u""));
  EXPECT_EQ(stream_.Length(), 0);
  EXPECT_EQ(log_, CallLog());
}

TEST_F(StreamFile, OfANewObjectReadsAsZeroWithoutACall) {
  EXPECT_EQ(Read(), 0);
  EXPECT_EQ(Read(0), 0);
  EXPECT_EQ(Read(2147483647), 0);
  EXPECT_EQ(log_, CallLog());
  // No state changed: a file assigned now is read from its start.
  Write(u"a.bin", 100);
  stream_.PutFile(u"a.bin");
  EXPECT_EQ(CountsToTheEnd(), std::vector<std::int32_t>({100, 0}));
}

TEST_F(StreamFile, IsListedOpenedAndMeasuredInThisOrder) {
  Write(u"C:\\OCX\\a.bin", 100);
  stream_.PutFile(u"C:\\OCX\\a.bin");
  EXPECT_EQ(log_, CallLog({"ListName(\"C:\\OCX\\a.bin\")", "FreeFileNumber()",
                           "OpenForReading(\"C:\\OCX\\a.bin\", 1)", "Length(1)"}));
  EXPECT_EQ(stream_.File(), Text(u"C:\\OCX\\a.bin"));
  EXPECT_EQ(stream_.Length(), 100);
}

TEST_F(StreamFile, GoesToTheListingAsItStands) {
  EXPECT_EQ(ErrorNumberOf([&] { stream_.PutFile(u""); }), 53);
  EXPECT_EQ(ErrorNumberOf([&] { stream_.PutFile(u" a.bin\\ "); }), 53);
  EXPECT_EQ(log_, CallLog({"ListName(\"\")", "EXEName()", "ListName(\" a.bin\\ \")", "EXEName()"}));
}

TEST_F(StreamFile, ThatIsNotListedRaises53WithTheModuleAsSource) {
  app_.name = u"QuorvaneSecurity";
  const auto error = ErrorOf([&] { stream_.PutFile(u"missing.bin"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 53);
  EXPECT_EQ(error->source, Text(u"QuorvaneSecurity.File"));
  EXPECT_EQ(error->description, Text(u"File not found"));
  EXPECT_EQ(stream_.File(), Text(u"missing.bin"));
  EXPECT_EQ(stream_.Length(), 0);
}

TEST_F(StreamFile, WhoseListingFailsRaisesThatNumberWithTheModuleAsSource) {
  files_.failure = 71;
  plan_ = FaultPlan(1);
  const auto error = ErrorOf([&] { stream_.PutFile(u"a.bin"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 71);
  EXPECT_EQ(error->source, Text(u"Module.File"));
  EXPECT_EQ(error->description, Text(u"Disk not ready"));
  EXPECT_EQ(stream_.File(), Text(u"a.bin"));
}

TEST_F(StreamFile, WhoseListingFailsWithANumberWithoutTextGetsTheCommonOne) {
  files_.failure = 1234;
  plan_ = FaultPlan(1);
  const auto error = ErrorOf([&] { stream_.PutFile(u"a.bin"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 1234);
  EXPECT_EQ(error->description, StandardDescription(1234));
}

TEST_F(StreamFile, WithAWildCardCountsAsListedAndTheOpenDecides) {
  files_.listed_as[u"*.bin"] = u"a.bin";
  files_.open_failure[u"*.bin"] = 52;
  const auto error = ErrorOf([&] { stream_.PutFile(u"*.bin"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 52);
  EXPECT_EQ(log_,
            CallLog({"ListName(\"*.bin\")", "FreeFileNumber()", "OpenForReading(\"*.bin\", 1)"}));
}

TEST_F(StreamFile, WhoseOpenFailsRaisesThePlatformsOwnError) {
  Write(u"a.bin", 10);
  files_.open_failure[u"a.bin"] = 70;
  const auto error = ErrorOf([&] { stream_.PutFile(u"a.bin"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 70);
  EXPECT_EQ(error->source, FakeFiles::FailureOf(70).source);
  EXPECT_EQ(error->description, FakeFiles::FailureOf(70).description);
  EXPECT_EQ(stream_.File(), Text(u"a.bin"));
  EXPECT_EQ(files_.OpenCount(), 0U);
}

TEST_F(StreamFile, WhoseOpenFailsKeepsTheAllottedNumber) {
  Write(u"a.bin", 10);
  files_.open_failure[u"a.bin"] = 70;
  EXPECT_EQ(ErrorNumberOf([&] { stream_.PutFile(u"a.bin"); }), 70);
  // Nothing is open under it, so it is free for the next one, and closing it closes that one's
  // file.
  cBinaryFileStream other(files_, app_, kernel32_);
  Write(u"b.bin", 20000);
  other.PutFile(u"b.bin");
  ASSERT_TRUE(files_.IsOpen(1));
  log_.clear();
  stream_.Dispose();
  EXPECT_EQ(log_, CallLog({"Close(1)"}));
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(other.Read(buffer_, 8192)); }), 52);
}

TEST_F(StreamFile, ThatFailsLeavesTheEarlierLength) {
  Write(u"a.bin", 100);
  Write(u"locked.bin", 7);
  files_.open_failure[u"locked.bin"] = 70;
  stream_.PutFile(u"a.bin");
  EXPECT_EQ(ErrorNumberOf([&] { stream_.PutFile(u"missing.bin"); }), 53);
  EXPECT_EQ(stream_.Length(), 100);
  EXPECT_EQ(ErrorNumberOf([&] { stream_.PutFile(u"locked.bin"); }), 70);
  EXPECT_EQ(stream_.Length(), 100);
}

TEST_F(StreamFile, ThatFailsTheTestClosesTheOneBefore) {
  Write(u"a.bin", 20000);
  stream_.PutFile(u"a.bin");
  ASSERT_EQ(Read(), 8192);
  EXPECT_EQ(ErrorNumberOf([&] { stream_.PutFile(u"missing.bin"); }), 53);
  EXPECT_EQ(files_.OpenCount(), 0U);
  EXPECT_EQ(stream_.File(), Text(u"missing.bin"));
  // By its own count there are bytes left, but nothing is open.
  EXPECT_EQ(ReadFailure(), 52);
}

TEST_F(StreamFile, AssignedASecondTimeClosesTheFirst) {
  Write(u"a.bin", 100);
  Write(u"b.bin", 200);
  stream_.PutFile(u"a.bin");
  log_.clear();
  stream_.PutFile(u"b.bin");
  EXPECT_EQ(log_, CallLog({"Close(1)", "ListName(\"b.bin\")", "FreeFileNumber()",
                           "OpenForReading(\"b.bin\", 1)", "Length(1)"}));
  EXPECT_EQ(stream_.Length(), 200);
}

TEST_F(StreamFile, TakesANumberThatNoOtherStreamHolds) {
  Write(u"a.bin", 100);
  cBinaryFileStream other(files_, app_, kernel32_);
  stream_.PutFile(u"a.bin");
  other.PutFile(u"a.bin");
  EXPECT_TRUE(files_.IsOpen(1));
  EXPECT_TRUE(files_.IsOpen(2));
}

TEST_F(StreamFile, NameAndLengthOutliveTheEnd) {
  Write(u"a.bin", 100);
  stream_.PutFile(u"a.bin");
  EXPECT_EQ(CountsToTheEnd(), std::vector<std::int32_t>({100, 0}));
  EXPECT_EQ(stream_.File(), Text(u"a.bin"));
  EXPECT_EQ(stream_.Length(), 100);
}

TEST_F(StreamFile, NameAndLengthOutliveDispose) {
  Write(u"a.bin", 100);
  stream_.PutFile(u"a.bin");
  stream_.Dispose();
  EXPECT_EQ(stream_.File(), Text(u"a.bin"));
  EXPECT_EQ(stream_.Length(), 100);
}

TEST_F(StreamFile, DisposeClosesOnce) {
  Write(u"a.bin", 100);
  stream_.Dispose();
  stream_.PutFile(u"a.bin");
  log_.clear();
  stream_.Dispose();
  stream_.Dispose();
  EXPECT_EQ(log_, CallLog({"Close(1)"}));
}

TEST_F(StreamFile, DestructionCloses) {
  Write(u"a.bin", 100);
  {
    cBinaryFileStream stream(files_, app_, kernel32_);
    stream.PutFile(u"a.bin");
    EXPECT_EQ(files_.OpenCount(), 1U);
  }
  EXPECT_EQ(files_.OpenCount(), 0U);
}

}  // namespace
}  // namespace quorvane
