// What a post gives when memory runs out at any point in it, the first use of the web client
// library included: a server without a name is refused before anything goes out.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "control/basGlobals.h"
#include "tests/support/failing_memory.h"
#include "tests/support/raises.h"
#include "web/form_post.h"

namespace quorvane::testing {
namespace {

TEST(ExhaustedMemory, GivesTheEmptyTextOrWhatWasStoredFromAPost) {
  const Text failure = u"Error : Unable to connect to the Internet";
  const Text path = u"/a/path/longer/than/short/texts";
  const Text body = u"a=b&and=so+on";
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    arm();
    const Text reply = PostFormRequest(Text(), path, body, 80);
    const bool failed = disarm();
    EXPECT_TRUE(reply == failure || (failed && reply.IsEmpty()));
  });
  EXPECT_GE(failures, 2);
  EXPECT_TRUE(basGlobals::internetFailed().IsTrue());
}

// Answers with blocks of text, and asks for no memory itself.
class ThreeBlocks final : public WinInet {
 public:
  static constexpr std::uint32_t kBlock = 2048;

  InternetHandle InternetOpenA(const char* /*agent*/, std::uint32_t /*access_type*/,
                               const char* /*proxy*/, const char* /*proxy_bypass*/,
                               std::uint32_t /*flags*/) override {
    return ++open;
  }
  InternetHandle InternetConnectA(InternetHandle /*internet*/, const char* /*server*/,
                                  std::int16_t /*port*/, const char* /*user_name*/,
                                  const char* /*password*/, std::uint32_t /*service*/,
                                  std::uint32_t /*flags*/, std::uintptr_t /*context*/) override {
    return ++open;
  }
  InternetHandle HttpOpenRequestA(InternetHandle /*connection*/, const char* /*verb*/,
                                  const char* /*object_name*/, const char* /*version*/,
                                  const char* /*referrer*/, const char* const* /*accept_types*/,
                                  std::uint32_t /*flags*/, std::uintptr_t /*context*/) override {
    return ++open;
  }
  std::int32_t HttpAddRequestHeadersA(InternetHandle /*request*/, const char* /*headers*/,
                                      std::uint32_t /*headers_length*/,
                                      std::uint32_t /*modifiers*/) override {
    return 1;
  }
  std::int32_t HttpSendRequestA(InternetHandle /*request*/, const char* /*headers*/,
                                std::uint32_t /*headers_length*/, const char* /*body*/,
                                std::uint32_t /*body_length*/) override {
    return 1;
  }
  std::int32_t InternetReadFile(InternetHandle /*request*/, char* buffer, std::uint32_t size,
                                std::uint32_t& count) override {
    count = blocks_left > 0 ? std::min(size, kBlock) : 0;
    std::memset(buffer, blocks_left == 1 ? '\xE9' : 'a', count);
    --blocks_left;
    return 1;
  }
  std::int32_t InternetCloseHandle(InternetHandle /*handle*/) override {
    --open;
    return 1;
  }

  InternetHandle open = 0;
  int blocks_left = 3;
};

class SilentScreen final : public Screen {
 public:
  void SetMousePointer(std::int16_t shape) override { pointer = shape; }
  std::int16_t pointer = -1;
};

TEST(ExhaustedMemory, GivesTheWholeReplyOrNothingAndEndsOnTheSpot) {
  const Text name = u"a server with a long name.example.com";
  basGlobals::connectionSettings() = {};
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    ThreeBlocks web;
    SilentScreen pointer_owner;
    arm();
    const Text reply = PostFormRequest(name, name, name, 80, web, pointer_owner);
    const bool failed = disarm();
    EXPECT_EQ(reply.Length(), failed ? 0 : 3 * 2048);
    EXPECT_FALSE(reply.IsAbsent());
    EXPECT_EQ(pointer_owner.pointer == 0, !failed) << "it stays as it was";
    if (!failed) {
      EXPECT_EQ(web.open, 0U);
    }
  });
  EXPECT_GE(failures, 6);
}

// A byte a character while it arrives, then the text: what is handed over is no copy of it.
TEST(ReplyMemory, OfALongPostIsThatOfItsBytesAndItsText) {
  ThreeBlocks web;
  web.blocks_left = 1000;
  SilentScreen pointer_owner;
  const std::size_t before = FailingMemory::BytesTaken();
  const Text reply = PostFormRequest(u"server", u"/", u"", 80, web, pointer_owner);
  const std::size_t taken = FailingMemory::BytesTaken() - before;
  EXPECT_EQ(reply.Length(), 1000 * 2048);
  EXPECT_LT(taken, std::size_t{1000} * 2048 * 7 / 2);
}

}  // namespace
}  // namespace quorvane::testing
