// Proves that a reply takes about the memory of its text, whatever mixture of blocks it comes in.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "web/reply_text.h"

namespace {

std::size_t bytes_taken = 0;

void* Take(std::size_t size) {
  bytes_taken += size;
  void* const memory = std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return Take(size); }
void* operator new[](std::size_t size) { return Take(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

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
  const std::size_t before = bytes_taken;
  for (std::size_t number = 0; number < kBlocks; ++number) {
    if (blocks != 0 && number % blocks == 0) {
      text.Append(other);
    } else {
      text.AppendAscii(ascii);
    }
  }
  return bytes_taken - before;
}

TEST(ReplyMemory, IsThatOfTheTextWhateverTheMixture) {
  for (const std::size_t blocks : {1U, 2U, 3U, 7U, 100U})
    EXPECT_LT(BytesTakenWithOthersEach(blocks), kTextSize * 5 / 4) << blocks;
}

TEST(ReplyMemory, IsHalfOfItForAscii) { EXPECT_LT(BytesTakenWithOthersEach(0), kTextSize * 5 / 8); }

}  // namespace
}  // namespace quorvane
