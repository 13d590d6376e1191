// Proves what each operation does when memory runs out at any point in it: every allocation fails
// in turn, until a run meets no failure.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "host/basAPI_api.h"
#include "tests/support/code_pages.h"
#include "tests/support/failing_memory.h"
#include "tests/support/fake_advapi32_base.h"
#include "tests/support/fake_kernel32_base.h"
#include "tests/support/fake_registry.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

using testing::FakeRegistry;
using testing::Page1252;
using testing::Page932;

// Both pages are made before anything fails.
template <class Attempt>
int FailEachAllocation(Attempt attempt) {
  static_cast<void>(Page1252());
  static_cast<void>(Page932());
  return testing::FailEachAllocation(attempt);
}

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
  std::int32_t WriteProfileStringA(const char* /*section*/, const char* /*key*/,
                                   const char* /*value*/) override {
    return 1;
  }
  std::int32_t GetPrivateProfileStringA(const char* section, const char* key,
                                        const char* default_text, char* buffer, std::int32_t size,
                                        const char* /*file*/) override {
    return GetProfileStringA(section, key, default_text, buffer, size);
  }
  std::int32_t WritePrivateProfileStringA(const char* /*section*/, const char* /*key*/,
                                          const char* /*value*/, const char* /*file*/) override {
    return 1;
  }
};

const Text kLong = Text(std::size_t{400}, u'\u00E9');

TEST(ExhaustedMemory, GivesTheEmptySystemDirectory) {
  FakeSystem os;
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    arm();
    const Text path = GetSystemDirectoryPath(os, Page1252());
    const bool failed = disarm();
    EXPECT_EQ(path, failed ? Text(u"") : Text(u"C:\\Windows\\System32"));
  });
  EXPECT_GE(failures, 1);
}

TEST(ExhaustedMemory, GivesTheEmptyTextForARegistryValue) {
  const int failures = FailEachAllocation([](auto arm, auto disarm) {
    FakeRegistry os;
    os.values["name"] = {1, std::string(400, '\xE9') + '\0'};
    Text path = kLong;
    Text name = u"name";
    arm();
    const TaggedValue value = ReadRegistryValue(1, path, name, os, Page1252());
    const bool failed = disarm();
    EXPECT_EQ(value, TaggedValue(failed ? Text(u"") : kLong));
    EXPECT_LE(os.open.size(), failed ? 1U : 0U);
  });
  EXPECT_GE(failures, 6);
}

TEST(ExhaustedMemory, IsFalseForARegistryWrite) {
  const int failures = FailEachAllocation([](auto arm, auto disarm) {
    FakeRegistry os;
    Text path = kLong;
    Text name = u"name";
    TaggedValue value = kLong;
    arm();
    const Boolean16 written = WriteRegistryValue(1, path, name, value, 1, os, Page1252());
    const bool failed = disarm();
    EXPECT_EQ(written, failed ? kFalse : kTrue);
    EXPECT_LE(os.open.size(), failed ? 1U : 0U);
    EXPECT_EQ(value, TaggedValue(kLong));
  });
  EXPECT_GE(failures, 5);
}

TEST(ExhaustedMemory, LeavesAProfileReadAsTheErrorItIs) {
  FakeSystem os;
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    Text section = kLong;
    Text key = u"key";
    Text value;
    arm();
    const std::int32_t number =
        testing::NumberRaised([&] { value = ReadProfileValue(section, key, os, Page932()); });
    const bool raised = number != 0;
    const bool failed = disarm();
    EXPECT_EQ(number, failed ? 7 : 0);
    EXPECT_EQ(value, raised ? Text() : Text(u"a value of some length"));
  });
  EXPECT_GE(failures, 3);
}

TEST(ExhaustedMemory, LeavesEveryOtherProfileCallAsTheErrorItIs) {
  FakeSystem os;
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    Text section = kLong;
    Text key = u"key";
    Text stored = kLong;
    Text file = kLong;
    Text value;
    arm();
    std::int32_t numbers = 0;
    numbers |= testing::NumberRaised(
        [&] { value = ReadPrivateProfileValue(section, key, file, os, Page932()); });
    const bool was_read = numbers == 0;
    numbers |= testing::NumberRaised([&] {
      EXPECT_TRUE(WritePrivateProfileValue(section, key, stored, file, os, Page932()).IsTrue());
    });
    numbers |= testing::NumberRaised(
        [&] { EXPECT_TRUE(WriteProfileValue(section, key, stored, os, Page932()).IsTrue()); });
    const bool failed = disarm();
    EXPECT_EQ(numbers, failed ? 7 : 0);
    EXPECT_EQ(value, was_read ? Text(u"a value of some length") : Text());
  });
  EXPECT_GE(failures, 9);
}

TEST(ExhaustedMemory, DoesNotMatterToThePlatformsName) {
  FakeSystem os;
  FailEachAllocation([&](auto arm, auto disarm) {
    arm();
    const std::u16string_view name = GetOSPlatformName(os);
    EXPECT_FALSE(disarm());
    EXPECT_EQ(name, u"Win32s");
  });
}

TEST(ExhaustedMemory, IsFalseForARegistryWriteOfAnInteger) {
  FailEachAllocation([](auto arm, auto disarm) {
    FakeRegistry os;
    Text path = kLong;
    Text name = u"name";
    TaggedValue value = Text(u"12");
    arm();
    const Boolean16 written = WriteRegistryValue(1, path, name, value, 4, os, Page1252());
    const bool failed = disarm();
    EXPECT_EQ(written, failed ? kFalse : kTrue);
    if (!failed) {
      EXPECT_EQ(value, TaggedValue(std::int32_t{12}));
    }
  });
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
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    Text text;
    arm();
    const std::int32_t number =
        testing::NumberRaised([&] { text = GetCurrentAccountSidText(os, memory, Page1252()); });
    const bool raised = number != 0;
    const bool failed = disarm();
    EXPECT_EQ(number, failed ? 7 : 0);
    EXPECT_EQ(text, raised ? Text() : Text(u"S15211002003001000"));
  });
  EXPECT_GE(failures, 6);
}

TEST(ExhaustedMemory, LeavesALookUpOnAnotherSystemAsTheErrorItIs) {
  LongAccount os;
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    Text account = kLong;
    Text domain = kLong;
    ByteArray sid;
    arm();
    const std::int32_t number = testing::NumberRaised(
        [&] { sid = LookupAccountSidBytes(account, domain, kLong, os, Page1252()); });
    const bool raised = number != 0;
    const bool failed = disarm();
    EXPECT_EQ(number, failed ? 7 : 0);
    if (!raised) {
      EXPECT_EQ(sid.UpperBound(), 28);
      EXPECT_EQ(domain, Text(u""));
    }
  });
  EXPECT_GE(failures, 4);
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
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    arm();
    const auto list = GetAdapterAddresses(os, memory);
    const bool failed = disarm();
    EXPECT_EQ(list.has_value(), !failed);
    EXPECT_EQ(list.value_or(TextList{u"000000000000"}), (TextList{u"000000000000"}));
  });
  EXPECT_GE(failures, 3);
}

// Over the platform's own libraries, the first use of each included.
TEST(ExhaustedMemory, HoldsOverTheSystemsOwnLibraries) {
  FailEachAllocation([](auto arm, auto disarm) {
    arm();
    const Text directory = GetSystemDirectoryPath();
    const bool failed = disarm();
    EXPECT_TRUE(failed || !directory.IsEmpty());
  });
  const Text directory = GetSystemDirectoryPath();
  FailEachAllocation([&](auto arm, auto disarm) {
    Text path = u"Software\\Quorvane\\a key that is not there";
    Text name = u"a name that is not there";
    Text section = u"a section that is not there";
    TaggedValue value;
    Text entry = u"untouched";
    arm();
    const Text again = GetSystemDirectoryPath();
    value = ReadRegistryValue(-2147483647, path, name);
    const auto addresses = GetAdapterAddresses();
    const std::int32_t number =
        testing::NumberRaised([&] { entry = ReadProfileValue(section, name); });
    const std::int32_t account =
        testing::NumberRaised([] { static_cast<void>(GetCurrentAccountSidText()); });
    const bool failed = disarm();
    EXPECT_TRUE(again == directory || (failed && again.IsEmpty()));
    EXPECT_TRUE(value.IsEmpty() || (failed && value == TaggedValue(Text(u""))));
    EXPECT_TRUE(failed || addresses);
    EXPECT_TRUE(number == 0 || (failed && number == 7)) << number;
    EXPECT_EQ(entry, number == 0 ? Text(u"") : Text(u"untouched"));
    EXPECT_TRUE(account == 0 || (failed && account == 7)) << account;
  });
}

}  // namespace
}  // namespace quorvane::basAPI_api
