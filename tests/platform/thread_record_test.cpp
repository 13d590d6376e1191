// One record of a kind for each thread: made at the first request, kept, and destroyed with the
// thread.

#include "platform/thread_record.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "tests/support/fresh_thread.h"

namespace quorvane {
namespace {

using testing::OnFreshThread;

std::atomic<int> made = 0;
std::atomic<int> destroyed = 0;

struct Counted final : ThreadRecord {
  Counted() { ++made; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() override { ++destroyed; }
  int value = 5;
};

struct Other final : ThreadRecord {
  int value = 6;
};

TEST(ThreadRecord, IsMadeAtTheThreadsFirstRequestOnly) {
  OnFreshThread([] {
    const int before = made;
    EXPECT_EQ(threadRecord<Counted>().value, 5);
    EXPECT_EQ(made, before + 1);
    threadRecord<Counted>().value = 7;
    EXPECT_EQ(threadRecord<Counted>().value, 7);
    EXPECT_EQ(made, before + 1);
  });
}

TEST(ThreadRecord, IsNotSeenByAnotherThread) {
  threadRecord<Counted>().value = 8;
  OnFreshThread([] {
    EXPECT_EQ(threadRecord<Counted>().value, 5);
    threadRecord<Counted>().value = 9;
  });
  EXPECT_EQ(threadRecord<Counted>().value, 8);
}

TEST(ThreadRecord, OfEachKindIsOneOfItsOwn) {
  OnFreshThread([] {
    threadRecord<Counted>().value = 1;
    EXPECT_EQ(threadRecord<Other>().value, 6);
    threadRecord<Other>().value = 2;
    EXPECT_EQ(threadRecord<Counted>().value, 1);
  });
}

TEST(ThreadRecord, StaysWhereItIsWhenOtherKindsAreMade) {
  OnFreshThread([] {
    const Counted* const first = &threadRecord<Counted>();
    static_cast<void>(threadRecord<Other>());
    EXPECT_EQ(&threadRecord<Counted>(), first);
  });
}

TEST(ThreadRecord, IsDestroyedWhenItsThreadEnds) {
  const int before = destroyed;
  OnFreshThread([] { static_cast<void>(threadRecord<Counted>()); });
  EXPECT_EQ(destroyed, before + 1);
}

TEST(ThreadRecord, OfManyThreadsAtOnceAreKeptApart) {
  const int before = made - destroyed;
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([number] {
      for (int round = 0; round < 1000; ++round) {
        threadRecord<Counted>().value = number;
        ASSERT_EQ(threadRecord<Counted>().value, number);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(made - destroyed, before);
}

}  // namespace
}  // namespace quorvane
