// Proves how the reply is put together from its reads, and when InternetFailed is set.

#include "tests/web/form_post_fixture.h"

namespace quorvane {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the fixture of this folder

std::string Pattern(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>('!' + i % 89);
  return bytes;
}

Text AsText(const std::string& bytes) { return Text(std::u16string(bytes.begin(), bytes.end())); }

std::ptrdiff_t ReadsIn(const CallLog& log) { return std::count(log.begin(), log.end(), kReadCall); }

TEST(PostFormRequest, ReadsUntilACountOfZero) {
  const std::string all = Pattern(2048 + 2048 + 5);
  PostCase post;
  post.reads = {{all.substr(0, 2048)}, {all.substr(2048, 2048)}, {all.substr(4096)}};
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, AsText(all));
  EXPECT_EQ(ReadsIn(outcome.log), 4);
}

TEST(PostFormRequest, NeedsASecondReadForExactlyOneBlock) {
  PostCase post;
  post.reads = {{Pattern(2048)}};
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, AsText(Pattern(2048)));
  EXPECT_EQ(ReadsIn(outcome.log), 2);
}

TEST(PostFormRequest, GoesOnAfterAShortRead) {
  PostCase post;
  post.reads = {{"a"}, {"b"}, {Pattern(2047)}};
  EXPECT_EQ(post.Run().result, AsText("ab" + Pattern(2047)));
}

TEST(PostFormRequest, FillsTheBufferWithBlanksBeforeEachRead) {
  PostCase post;
  post.reads = {{Pattern(2048)}};
  EXPECT_EQ(post.Run().latest_buffer, std::string(2048, ' '));
}

TEST(PostFormRequest, TakesEveryByteForOneCharacter) {
  PostCase post;
  post.reads = {{std::string("\0\x01\x7F\x80\x81\xA0\xFF ", 8)}};
  EXPECT_EQ(post.Run().result, Text(std::u16string(u"\0\u0001\u007F\u20AC\u0081\u00A0\u00FF ", 8)));
}

TEST(PostFormRequest, TakesAnEmptyReplyForAFailure) {
  PostCase post;
  post.reads = {};
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, kFailureText);
  EXPECT_TRUE(outcome.internet_failed);
  EXPECT_TRUE(outcome.open_handles.empty());
  EXPECT_EQ(outcome.log.back(), kDefaultCall);
}

TEST(PostFormRequest, CountsTheBytesOfAFailedRead) {
  PostCase post;
  post.reads = {{"first "}, {"last", false}, {"never read"}};
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, u"first last");
  EXPECT_FALSE(outcome.internet_failed);
  EXPECT_EQ(ReadsIn(outcome.log), 2);
  EXPECT_TRUE(outcome.open_handles.empty());
}

TEST(PostFormRequest, ReturnsTheTextSoFarWhenAReadFails) {
  PostCase post;
  post.reads = {{Pattern(2048)}, {"", false}};
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, AsText(Pattern(2048)));
  EXPECT_FALSE(outcome.internet_failed);
}

TEST(PostFormRequest, FailsWhenTheFirstReadFails) {
  PostCase post;
  post.reads = {{"", false}};
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, kFailureText);
  EXPECT_TRUE(outcome.internet_failed);
  EXPECT_TRUE(outcome.open_handles.empty());
}

TEST(PostFormRequest, TakesNoMoreThanTheBlockFromATooLargeCount) {
  PostCase post;
  post.reads = {{Pattern(5000)}};
  EXPECT_EQ(post.Run().result, AsText(Pattern(2048)));
}

TEST(PostFormRequest, ReturnsAReplyThatLooksLikeAFailure) {
  PostCase post;
  post.reads = {{"Error : Unable to connect to the Internet"}};
  const Outcome outcome = post.Run();
  EXPECT_EQ(outcome.result, kFailureText);
  EXPECT_FALSE(outcome.internet_failed);
}

TEST(PostFormRequest, KeepsInternetFailedSetAfterALaterSuccess) {
  OnFreshThread([] {
    CallLog log;
    FakeWinInet web(log);
    FakeScreen pointer_owner(log);
    EXPECT_EQ(PostFormRequest(u"s", u"/", u"", 80, web, pointer_owner), kFailureText);
    EXPECT_EQ(basGlobals::internetFailed(), kTrue);
    web.reads = {{"fine"}};
    EXPECT_EQ(PostFormRequest(u"s", u"/", u"", 80, web, pointer_owner), u"fine");
    EXPECT_EQ(basGlobals::internetFailed(), kTrue);
    OnFreshThread([] { EXPECT_EQ(basGlobals::internetFailed(), kFalse); });
  });
}

}  // namespace
}  // namespace quorvane
