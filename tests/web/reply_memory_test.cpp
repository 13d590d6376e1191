// Proves that a reply takes about the memory of its text, whatever mixture of blocks it comes in.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/failing_memory.h"
#include "web/reply_text.h"

namespace quorvane {
namespace {

constexpr std::size_t kBlock = 2048;
constexpr std::size_t kBlocks = 1000;
constexpr std::size_t kTextSize = kBlocks * kBlock * sizeof(char16_t);

// Every so many blocks one that is not all ASCII, from the first on; 0: none.
std::size_t BytesTakenWithOthersEach(std::size_t blocks) {
  const std::string ascii(kBlock, 'a');
  const std::u16string other(kBlock, u'\u00E9');
  ReplyText text;
  const std::size_t before = testing::FailingMemory::BytesTaken();
  for (std::size_t number = 0; number < kBlocks; ++number) {
    if (blocks != 0 && number % blocks == 0) {
      text.Append(other);
    } else {
      text.AppendAscii(ascii);
    }
  }
  return testing::FailingMemory::BytesTaken() - before;
}

TEST(ReplyMemory, IsThatOfTheTextWhateverTheMixture) {
  for (const std::size_t blocks : {1U, 2U, 3U, 7U, 100U})
    EXPECT_LT(BytesTakenWithOthersEach(blocks), kTextSize * 5 / 4) << blocks;
}

TEST(ReplyMemory, IsHalfOfItForAscii) { EXPECT_LT(BytesTakenWithOthersEach(0), kTextSize * 5 / 8); }

TEST(ReplyMemory, TakesNoSecondRoomToJoinIt) {
  for (const bool is_ascii : {true, false}) {
    ReplyText text;
    for (std::size_t number = 0; number < kBlocks; ++number) {
      if (is_ascii) {
        text.AppendAscii(std::string(kBlock, 'a'));
      } else {
        text.Append(std::u16string(kBlock, u'\u00E9'));
      }
    }
    const std::size_t before = testing::FailingMemory::BytesTaken();
    EXPECT_EQ(text.Take().size(), kBlocks * kBlock);
    EXPECT_LT(testing::FailingMemory::BytesTaken() - before, kTextSize + 1024);
  }
}

}  // namespace
}  // namespace quorvane
