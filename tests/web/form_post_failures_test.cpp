// Proves what a form post gives, and what it leaves open, when each of its calls fails in turn,
// once or for good, by its result or by raising.

#include <new>

#include "tests/web/form_post_fixture.h"

namespace quorvane {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the fixture of this folder

constexpr auto kOnce = FaultPlan::Lasts::kOnce;
constexpr auto kForGood = FaultPlan::Lasts::kForGood;

PostCase FailingAt(int call, FaultPlan::Lasts lasts, Fails manner = Fails::kByItsResult) {
  PostCase post;
  post.plan = FaultPlan(call, lasts);
  post.manner = manner;
  return post;
}

TEST(PostFormRequest, GivesTheEmptyTextWithoutASession) {
  for (const auto lasts : {kOnce, kForGood}) {
    const Outcome outcome = FailingAt(1, lasts).Run();
    EXPECT_EQ(outcome.result, u"");
    EXPECT_FALSE(outcome.result.IsAbsent());
    EXPECT_FALSE(outcome.internet_failed);
    EXPECT_EQ(outcome.log, (CallLog{kHourglassCall, kOpenCall, kDefaultCall}));
  }
}

TEST(PostFormRequest, ClosesTheSessionWithoutAConnection) {
  for (const auto lasts : {kOnce, kForGood}) {
    const Outcome outcome = FailingAt(2, lasts).Run();
    EXPECT_EQ(outcome.result, kFailureText);
    EXPECT_TRUE(outcome.internet_failed);
    EXPECT_EQ(outcome.log,
              (CallLog{kHourglassCall, kOpenCall, kConnectCall, kCloseSessionCall, kDefaultCall}));
  }
}

TEST(PostFormRequest, ClosesConnectionAndSessionWithoutARequest) {
  for (const auto lasts : {kOnce, kForGood}) {
    const Outcome outcome = FailingAt(3, lasts).Run();
    EXPECT_EQ(outcome.result, kFailureText);
    EXPECT_TRUE(outcome.internet_failed);
    EXPECT_EQ(outcome.log, (CallLog{kHourglassCall, kOpenCall, kConnectCall, kRequestCall,
                                    kCloseConnectionCall, kCloseSessionCall, kDefaultCall}));
  }
}

TEST(PostFormRequest, SendsWithoutTheHeaderWhenAddingItFails) {
  const Outcome outcome = FailingAt(4, kOnce).Run();
  EXPECT_EQ(outcome.result, u"reply");
  EXPECT_FALSE(outcome.internet_failed);
  EXPECT_EQ(outcome.log, PostCase().Run().log);
  EXPECT_TRUE(outcome.open_handles.empty());
}

TEST(PostFormRequest, LeavesThreeHandlesOpenAfterAFailedSend) {
  for (const auto lasts : {kOnce, kForGood}) {
    const Outcome outcome = FailingAt(5, lasts).Run();
    EXPECT_EQ(outcome.result, kFailureText);
    EXPECT_TRUE(outcome.internet_failed);
    EXPECT_EQ(outcome.log, (CallLog{kHourglassCall, kOpenCall, kConnectCall, kRequestCall,
                                    kHeaderCall, kSendCall, kDefaultCall}));
    EXPECT_EQ(outcome.open_handles, (std::set<InternetHandle>{1, 2, 3}));
  }
}

class NeverSending final : public FakeWinInet {
 public:
  using FakeWinInet::FakeWinInet;
  std::int32_t HttpSendRequestA(InternetHandle /*request*/, const char* /*headers*/,
                                std::uint32_t /*headers_length*/, const char* /*body*/,
                                std::uint32_t /*body_length*/) override {
    return 0;
  }
};

TEST(PostFormRequest, LeavesThreeMoreHandlesOpenWithEachFailedSend) {
  OnFreshThread([] {
    CallLog log;
    NeverSending web(log);
    FakeScreen pointer_owner(log);
    for (std::size_t posts = 1; posts <= 4; ++posts) {
      EXPECT_EQ(PostFormRequest(u"s", u"/", u"", 80, web, pointer_owner), kFailureText);
      EXPECT_EQ(web.open_handles.size(), 3 * posts);
    }
  });
}

// Exhausted memory while a block of the reply becomes text.
class PageThatFailsToRead final : public CodePage {
 public:
  [[nodiscard]] std::string ToBytes(std::u16string_view characters) const override {
    return {characters.begin(), characters.end()};
  }
  [[nodiscard]] std::u16string FromBytes(std::string_view bytes) const override {
    if (bytes.size() == 2048) throw std::bad_alloc();
    return {bytes.begin(), bytes.end()};
  }
};

TEST(PostFormRequest, EndsAtOnceWhenMemoryIsExhausted) {
  const PageThatFailsToRead page;
  PostCase post;
  post.code_page = &page;
  post.reads = {{"caf\xE9"}};
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, u"");
  EXPECT_FALSE(outcome.internet_failed);
  EXPECT_EQ(outcome.log.back(), kReadCall);
  EXPECT_EQ(outcome.open_handles, (std::set<InternetHandle>{1, 2, 3}));
}

// Each call fails in turn, once; the rows are the calls of a post with one block of reply.
TEST(PostFormRequest, EndsEachSingleFaultAsStated) {
  struct Row {
    Text result;
    bool internet_failed;
    std::set<InternetHandle> open_handles;
  };
  const std::vector<Row> rows{
      {u"", false, {}},                 // open
      {kFailureText, true, {}},         // connect
      {kFailureText, true, {}},         // open the request
      {u"reply", false, {}},            // add the header
      {kFailureText, true, {1, 2, 3}},  // send
      {kFailureText, true, {}},         // first read
      {u"reply", false, {}},            // second read
      {u"reply", false, {3}},           // close the request
      {u"reply", false, {2}},           // close the connection
      {u"reply", false, {1}},           // close the session
  };
  for (int n = 1;; ++n) {
    const Outcome outcome = FailingAt(n, kOnce).Run();
    if (!outcome.struck) {
      EXPECT_EQ(n, 11);
      EXPECT_EQ(outcome.result, u"reply");
      break;
    }
    const Row& row = rows.at(static_cast<std::size_t>(n) - 1);
    EXPECT_EQ(outcome.result, row.result) << n;
    EXPECT_EQ(outcome.internet_failed, row.internet_failed) << n;
    EXPECT_EQ(outcome.open_handles, row.open_handles) << n;
    EXPECT_EQ(outcome.log.back(), kDefaultCall) << n;
  }
}

TEST(PostFormRequest, EndsEachLastingFaultAsStated) {
  const std::vector<std::set<InternetHandle>> open_handles{
      {}, {1}, {1, 2}, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {1, 2}, {1}};
  for (int n = 1; n <= 10; ++n) {
    const Outcome outcome = FailingAt(n, kForGood).Run();
    EXPECT_TRUE(outcome.struck);
    EXPECT_EQ(outcome.result, n == 1 ? u"" : n <= 6 ? kFailureText : u"reply") << n;
    EXPECT_EQ(outcome.internet_failed, n >= 2 && n <= 6) << n;
    EXPECT_EQ(outcome.open_handles, open_handles.at(static_cast<std::size_t>(n) - 1)) << n;
    EXPECT_EQ(outcome.log.back(), kDefaultCall) << n;
  }
}

// A library or an entry point that the system lacks.
TEST(PostFormRequest, EndsAtOnceWhereACallRaises) {
  for (int n = 1;; ++n) {
    const Outcome outcome = FailingAt(n, kOnce, Fails::kByRaising).Run();
    if (!outcome.struck) {
      EXPECT_EQ(n, 11);
      break;
    }
    EXPECT_EQ(outcome.result, u"") << n;
    EXPECT_FALSE(outcome.internet_failed) << n;
    // The pointer, then n calls, and nothing behind the one that raised.
    EXPECT_EQ(outcome.log.size(), static_cast<std::size_t>(n) + 1) << n;
    std::set<InternetHandle> open_handles;
    for (InternetHandle handle = 1; handle <= 3; ++handle) {
      const int opened_by = static_cast<int>(handle);
      const int closed_by = 11 - opened_by;
      if (opened_by < n && n <= closed_by) open_handles.insert(handle);
    }
    EXPECT_EQ(outcome.open_handles, open_handles) << n;
  }
}

TEST(PostFormRequest, EndsAtOnceWhenThePointerCannotBeSet) {
  PostCase post;
  post.screen_plan = FaultPlan(1);
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, u"");
  EXPECT_EQ(outcome.log, CallLog{kHourglassCall});
}

TEST(PostFormRequest, KeepsTheResultWhenThePointerCannotBeSetBack) {
  PostCase post;
  post.screen_plan = FaultPlan(2);
  EXPECT_EQ(post.Run().result, u"reply");
  post.plan = FaultPlan(5);
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, kFailureText);
  EXPECT_TRUE(outcome.internet_failed);
}

}  // namespace
}  // namespace quorvane
