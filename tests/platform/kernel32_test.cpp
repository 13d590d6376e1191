// RtlMoveMemory: copies, also between blocks that overlap, and needs no block for no bytes.

#include "platform/kernel32.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

TEST(RtlMoveMemory, CopiesThatManyBytes) {
  std::string target = "--------";
  kernel32().RtlMoveMemory(target.data() + 2, "abcdef", 3);
  EXPECT_EQ(target, "--abc---");
}

TEST(RtlMoveMemory, CopiesUpwardsWhereTheBlocksOverlap) {
  std::string block = "abcdefgh";
  kernel32().RtlMoveMemory(block.data() + 2, block.data(), 6);
  EXPECT_EQ(block, "ababcdef");
}

TEST(RtlMoveMemory, CopiesDownwardsWhereTheBlocksOverlap) {
  std::string block = "abcdefgh";
  kernel32().RtlMoveMemory(block.data(), block.data() + 2, 6);
  EXPECT_EQ(block, "cdefghgh");
}

TEST(RtlMoveMemory, TakesNoBlocksForNoBytes) {
  kernel32().RtlMoveMemory(nullptr, nullptr, 0);
  std::string block = "abc";
  kernel32().RtlMoveMemory(block.data(), nullptr, 0);
  EXPECT_EQ(block, "abc");
}

}  // namespace
}  // namespace quorvane
