// Proves what each operation does when memory runs out at any point in it: every allocation fails
// in turn, until a run meets no failure.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "host/basAPI_api.h"
#include "tests/support/code_pages.h"
#include "tests/support/fake_advapi32_base.h"
#include "tests/support/fake_kernel32_base.h"
#include "tests/support/fake_registry.h"
#include "tests/support/raises.h"

namespace {

int allocations_until_failure = 0;  // 0: none fails

void* Allocate(std::size_t size) {
  if (allocations_until_failure > 0 && --allocations_until_failure == 0) throw std::bad_alloc();
  void* const memory = std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace quorvane::basAPI_api {
namespace {

using testing::FakeRegistry;
using testing::Page1252;
using testing::Page932;

constexpr int kMostAllocations = 200;

// Runs `attempt` with its n-th allocation failing, n = 1, 2, 3 ..., until all of them are granted;
// gives the count of runs that met a failure. `attempt` is called with a switch that arms the
// failure.
template <class Attempt>
int FailEachAllocation(Attempt attempt) {
  static_cast<void>(Page1252());  // made at their first use
  static_cast<void>(Page932());
  for (int n = 1; n < kMostAllocations; ++n) {
    attempt([n] { allocations_until_failure = n; });
    const bool struck = allocations_until_failure == 0;
    allocations_until_failure = 0;
    if (!struck) return n - 1;
  }
  ADD_FAILURE() << "no end after " << kMostAllocations;
  return 0;
}

// Disarms before the results are looked at, which allocates, too; whether it had struck stays.
class Disarmed {
 public:
  Disarmed() : left_(allocations_until_failure) { allocations_until_failure = 0; }
  Disarmed(const Disarmed&) = delete;
  Disarmed& operator=(const Disarmed&) = delete;
  ~Disarmed() { allocations_until_failure = left_; }
  [[nodiscard]] bool Struck() const { return left_ == 0; }

 private:
  int left_;
};

class FakeSystem final : public testing::FakeKernel32Base {
 public:
  std::int32_t GetSystemDirectoryA(char* buffer, std::int32_t /*size*/) override {
    std::memcpy(buffer, "C:\\Windows\\System32", 20);
    return 19;
  }
  std::int32_t GetProfileStringA(const char* /*section*/, const char* /*key*/,
                                 const char* /*default_text*/, char* buffer,
                                 std::int32_t /*size*/) override {
    std::memcpy(buffer, "a value of some length", 23);
    return 22;
  }
};

const Text kLong = Text(std::size_t{400}, u'\u00E9');

TEST(ExhaustedMemory, GivesTheEmptySystemDirectory) {
  FakeSystem os;
  const int failures = FailEachAllocation([&](auto arm) {
    arm();
    const Text path = GetSystemDirectoryPath(os, Page1252());
    const Disarmed disarmed;
    EXPECT_EQ(path, disarmed.Struck() ? Text(u"") : Text(u"C:\\Windows\\System32"));
  });
  EXPECT_GE(failures, 1);
}

TEST(ExhaustedMemory, GivesTheEmptyTextForARegistryValue) {
  const int failures = FailEachAllocation([](auto arm) {
    FakeRegistry os;
    os.values["name"] = {1, std::string(400, '\xE9') + '\0'};
    Text path = kLong;
    Text name = u"name";
    arm();
    const TaggedValue value = ReadRegistryValue(1, path, name, os, Page1252());
    const Disarmed disarmed;
    EXPECT_EQ(value, TaggedValue(disarmed.Struck() ? Text(u"") : kLong));
    EXPECT_LE(os.open.size(), disarmed.Struck() ? 1U : 0U);
  });
  EXPECT_GE(failures, 6);
}

TEST(ExhaustedMemory, IsFalseForARegistryWrite) {
  const int failures = FailEachAllocation([](auto arm) {
    FakeRegistry os;
    Text path = kLong;
    Text name = u"name";
    TaggedValue value = kLong;
    arm();
    const Boolean16 written = WriteRegistryValue(1, path, name, value, 1, os, Page1252());
    const Disarmed disarmed;
    EXPECT_EQ(written, disarmed.Struck() ? kFalse : kTrue);
    EXPECT_LE(os.open.size(), disarmed.Struck() ? 1U : 0U);
    EXPECT_EQ(value, TaggedValue(kLong));
  });
  EXPECT_GE(failures, 5);
}

TEST(ExhaustedMemory, LeavesAProfileReadAsTheErrorItIs) {
  FakeSystem os;
  const int failures = FailEachAllocation([&](auto arm) {
    Text section = kLong;
    Text key = u"key";
    Text value;
    bool raised = false;
    arm();
    try {
      value = ReadProfileValue(section, key, os, Page932());
    } catch (...) {
      raised = true;
      EXPECT_EQ(CurrentRuntimeError().number, 7);
    }
    const Disarmed disarmed;
    EXPECT_EQ(raised, disarmed.Struck());
    EXPECT_EQ(value, raised ? Text() : Text(u"a value of some length"));
  });
  EXPECT_GE(failures, 3);
}

// A name and an identifier that no text or array holds in itself.
class LongAccount final : public testing::FakeAdvapi32Base {
 public:
  std::int32_t GetUserNameA(char* buffer, std::int32_t* /*size*/) override {
    std::memcpy(buffer, "a name of some length", 22);
    return 1;
  }
  std::int32_t LookupAccountNameA(const char* /*system*/, const char* /*account*/, void* sid,
                                  std::int32_t* sid_size, char* /*domain*/,
                                  std::int32_t* domain_size, std::int32_t* /*type*/) override {
    const bool fits = *sid_size >= 28;
    if (fits) std::memset(sid, 1, 28);
    *sid_size = 28;
    *domain_size = 0;
    last_error_ = fits ? 0 : 122;
    return fits ? 1 : 0;
  }
  std::int32_t ConvertSidToStringSidA(const void* /*sid*/, Address32* text) override {
    *text = Address32{1};
    return 1;
  }
  std::int32_t LastError() override { return last_error_; }

 private:
  std::int32_t last_error_ = 0;
};

class SidText final : public testing::FakeKernel32Base {
 public:
  using FakeKernel32Base::RtlMoveMemory;
  std::int32_t lstrlenA(Address32 /*text*/) override { return 25; }
  void RtlMoveMemory(void* destination, Address32 /*source*/, std::uint32_t length) override {
    std::memcpy(destination, "S-1-5-21-100-200-300-1000", length);
  }
  Address32 LocalFree(Address32 /*memory*/) override { return kNoAddress; }
};

TEST(ExhaustedMemory, LeavesAnAccountsTextAsTheErrorItIs) {
  LongAccount os;
  SidText memory;
  const int failures = FailEachAllocation([&](auto arm) {
    Text text;
    bool raised = false;
    arm();
    try {
      text = GetCurrentAccountSidText(os, memory, Page1252());
    } catch (...) {
      raised = true;
      EXPECT_EQ(CurrentRuntimeError().number, 7);
    }
    const Disarmed disarmed;
    EXPECT_EQ(raised, disarmed.Struck());
    EXPECT_EQ(text, raised ? Text() : Text(u"S15211002003001000"));
  });
  EXPECT_GE(failures, 6);
}

class OneAdapter final : public Iphlpapi {
 public:
  std::int32_t GetAdaptersInfo(void* block, std::int32_t* size) override {
    *size = 640;
    if (block != nullptr) std::memset(block, 0, 640);
    return block != nullptr ? 0 : 111;
  }
  Address32 AddressOf(const void* /*block*/) override { return Address32{1}; }
};

TEST(ExhaustedMemory, GivesNoListOfAdapters) {
  OneAdapter os;
  testing::FakeKernel32Base memory;
  const int failures = FailEachAllocation([&](auto arm) {
    arm();
    const auto list = GetAdapterAddresses(os, memory);
    const Disarmed disarmed;
    EXPECT_EQ(list.has_value(), !disarmed.Struck());
    EXPECT_EQ(list.value_or(TextList{u"000000000000"}), (TextList{u"000000000000"}));
  });
  EXPECT_GE(failures, 3);
}

}  // namespace
}  // namespace quorvane::basAPI_api
