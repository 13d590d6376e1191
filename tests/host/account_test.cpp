// Proves the chain from the current account's name to the compact text of its identifier: each
// pass, each size, and what comes of each failure.

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/basAPI_api.h"
#include "tests/support/call_log.h"
#include "tests/support/call_text.h"
#include "tests/support/code_pages.h"
#include "tests/support/fake_advapi32_base.h"
#include "tests/support/fake_kernel32_base.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

using testing::CallLog;
using testing::CallText;
using testing::ErrorNumberOf;
using testing::Page1252;
using testing::Page932;

constexpr Address32 kSidText{0x40001234};

// What one pass of the lookup answers.
struct Pass {
  std::int32_t result = 0;
  std::int32_t last_error = 0;
  std::int32_t sid_size = 0;
  std::int32_t domain_size = 0;
  std::string sid;
  std::string domain;
};

class FakeAccounts final : public testing::FakeAdvapi32Base {
 public:
  explicit FakeAccounts(CallLog& log) : log_(log) {}

  std::int32_t GetUserNameA(char* buffer, std::int32_t* size) override {
    log_.push_back(CallText("GetUserNameA", std::string_view(buffer, 25), *size));
    if (static_cast<std::int32_t>(user_name.size()) >= *size && !writes_beyond_rules) return 0;
    std::memcpy(buffer, user_name.c_str(), user_name.size() + (writes_beyond_rules ? 0U : 1U));
    return 1;
  }
  std::int32_t LookupAccountNameA(const char* system, const char* account, void* sid,
                                  std::int32_t* sid_size, char* domain, std::int32_t* domain_size,
                                  std::int32_t* account_type) override {
    log_.push_back(CallText("LookupAccountNameA", system, account, *sid_size,
                            std::string_view(domain, static_cast<std::size_t>(*domain_size)),
                            *domain_size));
    const Pass pass = passes.at(passes_made++);
    std::memcpy(sid, pass.sid.data(), pass.sid.size());
    if (!pass.domain.empty()) std::memcpy(domain, pass.domain.c_str(), pass.domain.size() + 1);
    *sid_size = pass.sid_size;
    *domain_size = pass.domain_size;
    *account_type = 1;
    last_error_ = pass.last_error;
    return pass.result;
  }
  std::int32_t ConvertSidToStringSidA(const void* sid, Address32* text) override {
    const auto* const bytes = static_cast<const unsigned char*>(sid);
    log_.push_back("ConvertSidToStringSidA(" + std::to_string(bytes[0]) + ")");
    if (lacks_the_text_call) Raise(ErrorNumber::kEntryPointNotFound);
    given.assign(static_cast<const char*>(sid), 68);
    last_error_ = 122;  // no later reader may take it for the lookup's
    if (bytes[0] != 1) return 0;
    *text = kSidText;
    return 1;
  }
  std::int32_t LastError() override { return last_error_; }

  std::string user_name = "Bob";
  bool writes_beyond_rules = false;
  bool lacks_the_text_call = false;
  std::vector<Pass> passes;
  std::size_t passes_made = 0;
  std::string given;  // for a text

 private:
  CallLog& log_;
  std::int32_t last_error_ = 0;
};

class FakeMemory final : public testing::FakeKernel32Base {
 public:
  explicit FakeMemory(CallLog& log) : log_(log) {}
  using FakeKernel32Base::RtlMoveMemory;

  std::int32_t lstrlenA(Address32 address) override {
    EXPECT_EQ(address, kSidText);
    log_.emplace_back("lstrlenA");
    return static_cast<std::int32_t>(text.size());
  }
  void RtlMoveMemory(void* destination, Address32 source, std::uint32_t length) override {
    EXPECT_EQ(source, kSidText);
    log_.push_back("RtlMoveMemory(" + std::to_string(length) + ")");
    std::memcpy(destination, text.data(), length);
  }
  Address32 LocalFree(Address32 address) override {
    EXPECT_EQ(address, kSidText);
    log_.emplace_back("LocalFree");
    return address;  // a refusal, which is not looked at
  }

  std::string text = "S-1-5-21-100-200-300-1000";

 private:
  CallLog& log_;
};

// Hands out a text, of which nothing is copied.
class MemoryThatCopiesNothing final : public testing::FakeKernel32Base {
 public:
  using FakeKernel32Base::RtlMoveMemory;
  std::int32_t lstrlenA(Address32 /*address*/) override { return 12; }
  void RtlMoveMemory(void* destination, Address32 /*source*/, std::uint32_t length) override {
    before.assign(static_cast<const char*>(destination), length);
  }
  Address32 LocalFree(Address32 /*address*/) override { return kNoAddress; }

  std::string before;
};

const std::string kSid28 = std::string(1, '\1') + std::string(27, 's');

// The expected flow: sizes first, then the data.
std::vector<Pass> TwoPasses() { return {{0, 122, 28, 5, "", ""}, {1, 0, 28, 4, kSid28, "HOST"}}; }

class Account : public ::testing::Test {
 protected:
  ByteArray Lookup(const Text& system = {}, const CodePage& page = Page1252()) {
    return basAPI_api::LookupAccountSidBytes(name_, domain_, system, accounts_, page);
  }
  Text TextOf(const ByteArray& sid) {
    return basAPI_api::SidBytesToText(sid, accounts_, memory_, Page1252());
  }
  Text CurrentSid() { return basAPI_api::GetCurrentAccountSidText(accounts_, memory_, Page1252()); }

  CallLog log_;
  FakeAccounts accounts_{log_};
  FakeMemory memory_{log_};
  Text name_ = u"Bob";
  Text domain_ = u"before";
};

using GetCurrentAccountSidText = Account;
using GetCurrentUserName = Account;
using LookupAccountSidBytes = Account;
using SidBytesToText = Account;

void ExpectOneZeroByte(const ByteArray& sid) {
  EXPECT_EQ(sid.LowerBound(), 0);
  EXPECT_EQ(sid.UpperBound(), 0);
  EXPECT_EQ(sid.At(0), 0);
}

TEST_F(GetCurrentAccountSidText, GoesFromTheNameToTheCompactText) {
  accounts_.passes = TwoPasses();
  EXPECT_EQ(CurrentSid(), Text(u"S15211002003001000"));
  EXPECT_EQ(log_,
            (CallLog{R"(GetUserNameA("\x00*25", 25))",
                     R"(LookupAccountNameA(null, "Bob", 0, "\x00*512", 512))",
                     R"(LookupAccountNameA(null, "Bob", 28, "\x00\x00\x00\x00\x00", 5))",
                     "ConvertSidToStringSidA(1)", "lstrlenA", "RtlMoveMemory(25)", "LocalFree"}));
}

TEST_F(GetCurrentAccountSidText, LooksUpAnEmptyNameToo) {
  accounts_.user_name = std::string(25, 'n');
  accounts_.passes = {{0, 1332, 0, 512, "", ""}};
  EXPECT_EQ(CurrentSid(), Text(u""));
  EXPECT_EQ(log_[1], R"(LookupAccountNameA(null, "", 0, "\x00*512", 512))");
  EXPECT_EQ(log_[2], "ConvertSidToStringSidA(0)");
  EXPECT_EQ(log_.size(), 3U) << "nothing is given back that was not handed out";
}

TEST_F(GetCurrentUserName, GivesANameOf24CharactersAndNoneOf25) {
  accounts_.user_name = std::string(24, 'n');
  EXPECT_EQ(basAPI_api::GetCurrentUserName(accounts_, Page1252()), Text(std::u16string(24, u'n')));
  accounts_.user_name = std::string(25, 'n');
  EXPECT_EQ(basAPI_api::GetCurrentUserName(accounts_, Page1252()), Text(u""));
}

TEST_F(GetCurrentUserName, EndsAtTheFirstZero) {
  accounts_.user_name = std::string("Bob\0by", 6);
  EXPECT_EQ(basAPI_api::GetCurrentUserName(accounts_, Page1252()), Text(u"Bob"));
}

TEST_F(GetCurrentUserName, RaisesWhenNoZeroComesBack) {
  accounts_.user_name = std::string(25, 'n');
  accounts_.writes_beyond_rules = true;
  const auto read = [&] {
    static_cast<void>(basAPI_api::GetCurrentUserName(accounts_, Page1252()));
  };
  EXPECT_EQ(ErrorNumberOf(read), 5);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(CurrentSid()); }), 5) << "and nobody catches it";
}

TEST_F(GetCurrentUserName, ReadsDoubleByteNames) {
  accounts_.user_name = "\x83\x56\x83\x58";
  EXPECT_EQ(basAPI_api::GetCurrentUserName(accounts_, Page932()), Text(u"\u30B7\u30B9"));
}

// Filled up with spaces to 25 places, such a buffer still holds no zero.
TEST_F(GetCurrentUserName, RaisesForDoubleBytesUpToTheBuffersEnd) {
  accounts_.user_name = "n";
  for (int i = 0; i < 12; ++i) accounts_.user_name += "\x83\x56";
  accounts_.writes_beyond_rules = true;
  EXPECT_EQ(ErrorNumberOf(
                [&] { static_cast<void>(basAPI_api::GetCurrentUserName(accounts_, Page932())); }),
            5);
}

TEST_F(LookupAccountSidBytes, GivesBytesOneToNAndTheDomain) {
  accounts_.passes = TwoPasses();
  const ByteArray sid = Lookup();
  EXPECT_EQ(sid.LowerBound(), 1);
  EXPECT_EQ(sid.UpperBound(), 28);
  EXPECT_EQ(std::memcmp(&sid.At(1), kSid28.data(), 28), 0);
  EXPECT_EQ(domain_, Text(u"HOST"));
}

TEST_F(LookupAccountSidBytes, PassesNullForAnEmptyOrAbsentSystemName) {
  for (const Text& system : {Text(), Text(u"")}) {
    log_.clear();
    accounts_.passes_made = 0;
    accounts_.passes = TwoPasses();
    static_cast<void>(Lookup(system));
    EXPECT_EQ(log_[0], R"(LookupAccountNameA(null, "Bob", 0, "\x00*512", 512))");
  }
  accounts_.passes_made = 0;
  static_cast<void>(Lookup(u"SERVER"));
  EXPECT_EQ(log_.back(), R"(LookupAccountNameA("SERVER", "Bob", 28, "\x00\x00\x00\x00\x00", 5))");
}

TEST_F(LookupAccountSidBytes, GivesOneZeroByteAfterAnyOtherFailure) {
  for (const std::int32_t code : {0, 5, 1332, 1722}) {
    accounts_.passes_made = 0;
    accounts_.passes = {{0, code, 28, 4, "", ""}};
    domain_ = u"before";
    ExpectOneZeroByte(Lookup());
    EXPECT_EQ(domain_, Text(u""));
  }
}

TEST_F(LookupAccountSidBytes, GoesOnWhere122ComesWithASizeOfOne) {
  accounts_.passes = {{0, 122, 1, 5, "", ""}, {1, 0, 1, 4, "\1", "HOST"}};
  const ByteArray sid = Lookup();
  EXPECT_EQ(accounts_.passes_made, 2U);
  EXPECT_EQ(sid.LowerBound(), 1);
  EXPECT_EQ(sid.UpperBound(), 1);
  EXPECT_EQ(domain_, Text(u"HOST"));
}

TEST_F(LookupAccountSidBytes, EndsWhen122ComesWithoutASize) {
  for (const std::int32_t size : {0, -28}) {
    accounts_.passes_made = 0;
    accounts_.passes = {{0, 122, size, 5, "", ""}};
    ExpectOneZeroByte(Lookup());
    EXPECT_EQ(domain_, Text(u""));
  }
}

TEST_F(LookupAccountSidBytes, RefusesASuccessWithoutASizeAndANegativeResult) {
  accounts_.passes = {{1, 0, 0, 4, "", "HOST"}};
  ExpectOneZeroByte(Lookup());
  accounts_.passes_made = 0;
  accounts_.passes = {{-1, 0, 1, 4, "", "HOST"}};
  ExpectOneZeroByte(Lookup());
}

TEST_F(LookupAccountSidBytes, RepeatsASuccessThatLeaves122) {
  accounts_.passes = {{0, 122, 28, 5, "", ""},
                      {1, 122, 28, 4, std::string(28, 'x'), "HOST"},
                      {1, 0, 28, 4, kSid28, "HOST"}};
  const ByteArray sid = Lookup();
  EXPECT_EQ(accounts_.passes_made, 3U);
  EXPECT_EQ(std::memcmp(&sid.At(1), kSid28.data(), 28), 0);
  EXPECT_EQ(log_[2], R"(LookupAccountNameA(null, "Bob", 28, "HOST", 4))")
      << "the size of the domain goes in as it came out";
}

TEST_F(LookupAccountSidBytes, GrowsAsOftenAsTheSystemAsks) {
  accounts_.passes = {{0, 122, 12, 5, "", ""},
                      {0, 122, 28, 5, std::string(12, 'x'), ""},
                      {1, 0, 28, 4, kSid28, "HOST"}};
  EXPECT_EQ(Lookup().UpperBound(), 28);
}

TEST_F(LookupAccountSidBytes, HoldsTheLongestIdentifier) {
  const std::string sid = "\1\17" + std::string(66, 's');
  accounts_.passes = {{0, 122, 68, 5, "", ""}, {1, 0, 68, 4, sid, "HOST"}};
  const ByteArray bytes = Lookup();
  EXPECT_EQ(bytes.LowerBound(), 1);
  EXPECT_EQ(bytes.UpperBound(), 68);
  EXPECT_EQ(bytes.At(68), 's');
}

TEST_F(LookupAccountSidBytes, GivesThePlaceholderByteAfterASinglePass) {
  accounts_.passes = {{1, 0, 1, 4, "\7", "HOST"}};
  const ByteArray bytes = Lookup();
  EXPECT_EQ(bytes.LowerBound(), 1);
  EXPECT_EQ(bytes.UpperBound(), 1);
  EXPECT_EQ(bytes.At(1), 7);
}

TEST_F(LookupAccountSidBytes, KeepsTheIdentifierWithoutADomain) {
  accounts_.passes = {{0, 122, 12, 1, "", ""}, {1, 0, 12, 0, std::string(12, 's'), "X"}};
  EXPECT_EQ(Lookup().UpperBound(), 12);
  EXPECT_EQ(domain_, Text(u""));
}

TEST_F(LookupAccountSidBytes, GivesRoomForADomainLongerThanItsBuffer) {
  const std::string long_domain(700, 'd');
  accounts_.passes = {{0, 122, 28, 701, "", ""}, {1, 0, 28, 700, kSid28, long_domain}};
  EXPECT_EQ(Lookup().UpperBound(), 28);
  EXPECT_EQ(domain_, Text(std::u16string(512, u'd'))) << "the part that the buffer can hold";
}

TEST_F(LookupAccountSidBytes, HandsBackWhatTheCodePageCannotHold) {
  name_ = u"B\u30B7b";
  accounts_.passes = TwoPasses();
  static_cast<void>(Lookup());
  EXPECT_EQ(name_, Text(u"B?b"));
}

TEST_F(SidBytesToText, RemovesDashesAndSpaces) {
  ByteArray sid(1, 12);
  sid.At(1) = 1;
  const std::pair<const char*, const char16_t*> rows[] = {
      {"S-1-5-18", u"S1518"}, {"S1518", u"S1518"}, {" S - 1 ", u"S1"},
      {"---", u""},           {"", u""},           {"S_1\t5", u"S_1\t5"}};
  for (const auto& [text, compact] : rows) {
    memory_.text = text;
    log_.clear();
    EXPECT_EQ(TextOf(sid), Text(compact)) << text;
    EXPECT_EQ(log_.back(), "LocalFree") << text;
  }
}

TEST_F(SidBytesToText, HandsOverAsManyBytesAsTheLongestIdentifierHas) {
  for (const std::int32_t size : {12, 28, 29, 68, 80}) {
    ByteArray sid(1, size);
    for (std::int32_t i = 1; i <= size; ++i) sid.At(i) = static_cast<std::uint8_t>(i);
    EXPECT_EQ(TextOf(sid), Text(u"S15211002003001000"));
    for (std::int32_t i = 1; i <= 68; ++i)
      EXPECT_EQ(accounts_.given[static_cast<std::size_t>(i - 1)], i <= size ? i : 0) << size;
  }
}

TEST_F(SidBytesToText, StartsAtTheLowerBoundWhateverItIs) {
  for (const std::int32_t lower : {-5, 0, 1, 7}) {
    ByteArray sid(lower, lower + 11);
    sid.At(lower) = 1;
    EXPECT_EQ(TextOf(sid), Text(u"S15211002003001000")) << lower;
  }
}

TEST_F(SidBytesToText, IsEmptyWhenTheSystemRefusesAndGivesNothingBack) {
  EXPECT_EQ(TextOf(ByteArray(0, 0)), Text(u""));
  EXPECT_EQ(log_, CallLog{"ConvertSidToStringSidA(0)"});
}

TEST_F(SidBytesToText, LetsTheErrorOfAMissingCallPass) {
  accounts_.passes = TwoPasses();
  accounts_.lacks_the_text_call = true;
  ByteArray sid(1, 12);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(TextOf(sid)); }), 453);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(CurrentSid()); }), 453);
}

TEST_F(SidBytesToText, ReadsDoubleByteTexts) {
  ByteArray sid(1, 12);
  sid.At(1) = 1;
  memory_.text = "S-\x83\x56-\x83\x2D 1";
  EXPECT_EQ(basAPI_api::SidBytesToText(sid, accounts_, memory_, Page932()), Text(u"S\u30B7\u30FB1"))
      << "a trail byte that looks like a dash is none";
}

TEST_F(SidBytesToText, RaisesSubscriptOutOfRangeWithoutAFirstElement) {
  const ByteArray rows[] = {ByteArray(), ByteArray(1, 0), ByteArray({{0, 1}, {0, 1}})};
  for (const ByteArray& sid : rows) {
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(TextOf(sid)); }), 9);
  }
  EXPECT_TRUE(log_.empty()) << "before any call";
}

TEST_F(SidBytesToText, CopiesIntoAsManySpaces) {
  MemoryThatCopiesNothing memory;
  ByteArray sid(1, 28);
  sid.At(1) = 1;
  EXPECT_EQ(basAPI_api::SidBytesToText(sid, accounts_, memory, Page1252()), Text(u""));
  EXPECT_EQ(memory.before, std::string(12, ' '));
}

}  // namespace
}  // namespace quorvane::basAPI_api
