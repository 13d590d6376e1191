// Proves the walk along the platform's chain of adapters: order, digits, every failure, and that no
// chain leads out of its block or round in a circle.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <new>
#include <span>
#include <string>
#include <vector>

#include "host/basAPI_api.h"
#include "platform/iphlpapi.h"
#include "tests/support/fake_kernel32_base.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr std::uint32_t kStart = 0xFFFFF000;  // near the end, so that offsets wrap if they can
constexpr std::size_t kRecordSize = 640;

// Lays a chain out in a block whose addresses start at kStart.
class FakeAdapters final : public Iphlpapi {
 public:
  std::int32_t GetAdaptersInfo(void* block, std::int32_t* size) override {
    ++calls;
    if (on_call) on_call(calls);
    if (block == nullptr) {
      EXPECT_EQ(*size, 0);
      *size = reported_size.value_or(static_cast<std::int32_t>(chain.size()));
      return first_result;
    }
    if (second_result != 0) return second_result;
    block_received = {static_cast<const std::uint8_t*>(block), static_cast<std::size_t>(*size)};
    std::memcpy(block, chain.data(), std::min(chain.size(), static_cast<std::size_t>(*size)));
    return 0;
  }
  Address32 AddressOf(const void* block) override {
    EXPECT_EQ(block, block_received.data()) << "the block that was filled";
    return Address32{kStart};
  }

  void Add(const Bytes& address) {
    chain.resize(chain.size() + kRecordSize, 0xEE);
    std::copy(address.begin(), address.end(), chain.end() - 640 + 404);
    SetNext(Count() - 1, 0);
    if (Count() > 1)
      SetNext(Count() - 2, kStart + static_cast<std::uint32_t>((Count() - 1) * kRecordSize));
  }
  void SetNext(std::size_t record, std::uint32_t next) {
    for (std::size_t i = 0; i < 4; ++i) {
      chain[record * kRecordSize + i] = static_cast<std::uint8_t>(next >> (8 * i));
    }
  }
  [[nodiscard]] std::size_t Count() const { return chain.size() / kRecordSize; }

  Bytes chain;
  std::optional<std::int32_t> reported_size;
  std::int32_t first_result = 111;
  std::int32_t second_result = 0;
  std::function<void(int)> on_call;
  int calls = 0;
  std::span<const std::uint8_t> block_received;
};

// Copies whole records out of the block, and nothing from beside it.
class GuardedMemory final : public testing::FakeKernel32Base {
 public:
  explicit GuardedMemory(const FakeAdapters& os) : os_(os) {}
  using FakeKernel32Base::RtlMoveMemory;

  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    EXPECT_EQ(length, kRecordSize);
    const auto block = os_.block_received;
    const auto offset =
        static_cast<std::size_t>(static_cast<const std::uint8_t*>(source) - block.data());
    ASSERT_TRUE(offset <= block.size() && length <= block.size() - offset) << offset;
    std::memcpy(destination, source, length);
  }

 private:
  const FakeAdapters& os_;
};

class GetAdapterAddresses : public ::testing::Test {
 protected:
  std::optional<TextList> List() { return basAPI_api::GetAdapterAddresses(os_, memory_); }

  FakeAdapters os_;
  GuardedMemory memory_{os_};
};

TEST_F(GetAdapterAddresses, ReversesThePlatformsOrder) {
  os_.Add({1, 1, 1, 1, 1, 1});
  EXPECT_EQ(List(), (TextList{u"010101010101"}));
  os_.Add({2, 2, 2, 2, 2, 2});
  os_.Add({3, 3, 3, 3, 3, 3});
  EXPECT_EQ(List(), (TextList{u"030303030303", u"020202020202", u"010101010101"}));
}

TEST_F(GetAdapterAddresses, WritesTwoUpperCaseDigitsForEachByte) {
  os_.Add({0x00, 0x0A, 0xFF, 0x01, 0x10, 0x7F, 0x99, 0x99});
  EXPECT_EQ(List(), (TextList{u"000AFF01107F"}));
}

// The length field holds 0xEEEEEEEE in every test here; this one has it say 0.
TEST_F(GetAdapterAddresses, TakesSixBytesWhateverTheLengthFieldSays) {
  os_.Add({0, 0, 0, 0, 0, 0});
  std::fill_n(os_.chain.begin() + 400, 4, std::uint8_t{0});
  EXPECT_EQ(List(), (TextList{u"000000000000"}));
}

TEST_F(GetAdapterAddresses, KeepsEqualAddresses) {
  os_.Add({0, 1, 2, 3, 4, 5});
  os_.Add({0, 1, 2, 3, 4, 5});
  EXPECT_EQ(List(), (TextList{u"000102030405", u"000102030405"}));
}

TEST_F(GetAdapterAddresses, IsAnEmptyListWithoutAdapters) {
  EXPECT_EQ(List(), TextList());
  EXPECT_EQ(os_.calls, 1);
  os_.reported_size = -640;
  EXPECT_EQ(List(), TextList());
}

TEST_F(GetAdapterAddresses, IsAnEmptyListWhenTheSecondCallFails) {
  os_.Add({0, 1, 2, 3, 4, 5});
  for (const std::int32_t result : {1, 111, 232, -1}) {
    os_.second_result = result;
    EXPECT_EQ(List(), TextList()) << result;
  }
}

TEST_F(GetAdapterAddresses, DoesNotLookAtTheFirstResult) {
  os_.Add({0, 1, 2, 3, 4, 5});
  for (const std::int32_t result : {0, 1, 5, -1}) {
    os_.first_result = result;
    EXPECT_EQ(List()->size(), 1U) << result;
  }
}

TEST_F(GetAdapterAddresses, IsNoListAfterAnyError) {
  os_.Add({0, 1, 2, 3, 4, 5});
  for (const int failing_call : {1, 2}) {
    for (const std::int32_t number :
         {ErrorNumber::kLibraryNotFound, ErrorNumber::kEntryPointNotFound}) {
      os_.calls = 0;
      os_.on_call = [&](int call) {
        if (call == failing_call) Raise(number);
      };
      EXPECT_EQ(List(), std::nullopt) << failing_call << ' ' << number;
    }
  }
  os_.on_call = [](int) { throw std::bad_alloc(); };
  EXPECT_EQ(List(), std::nullopt);
}

TEST_F(GetAdapterAddresses, FollowsLinksBackwardsAndAcrossGaps) {
  os_.Add({1, 1, 1, 1, 1, 1});
  os_.Add({2, 2, 2, 2, 2, 2});
  os_.Add({3, 3, 3, 3, 3, 3});
  os_.SetNext(0, kStart + 2 * kRecordSize);
  os_.SetNext(2, kStart + kRecordSize);
  os_.SetNext(1, 0);
  EXPECT_EQ(List(), (TextList{u"020202020202", u"030303030303", u"010101010101"}));
}

TEST_F(GetAdapterAddresses, IsNoListWhenTheChainLeavesItsBlock) {
  os_.Add({1, 1, 1, 1, 1, 1});
  os_.Add({2, 2, 2, 2, 2, 2});
  const std::uint32_t outside[] = {1,
                                   kStart - 1,
                                   kStart - kRecordSize,
                                   kStart + kRecordSize + 1,
                                   kStart + 2 * kRecordSize,
                                   kStart + 2 * kRecordSize - 1,
                                   0x7FFFFFFF,
                                   0xFFFFFFFF};
  for (const std::uint32_t next : outside) {
    os_.SetNext(0, next);
    EXPECT_EQ(List(), std::nullopt) << std::hex << next;
  }
}

TEST_F(GetAdapterAddresses, IsNoListWhenTheChainRunsInACircle) {
  os_.Add({1, 1, 1, 1, 1, 1});
  os_.SetNext(0, kStart);
  EXPECT_EQ(List(), std::nullopt);
  os_.Add({2, 2, 2, 2, 2, 2});
  os_.SetNext(1, kStart);
  EXPECT_EQ(List(), std::nullopt);
}

TEST_F(GetAdapterAddresses, IsNoListWhenTheBlockHoldsNoWholeRecord) {
  os_.Add({1, 1, 1, 1, 1, 1});
  for (const std::int32_t size : {1, 404, 639}) {
    os_.reported_size = size;
    EXPECT_EQ(List(), std::nullopt) << size;
  }
  os_.reported_size = 641;
  EXPECT_EQ(List()->size(), 1U);
}

}  // namespace
}  // namespace quorvane::basAPI_api
