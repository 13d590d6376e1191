// Proves what a form post makes of servers that are slow, break off, answer nonsense or are not
// there. Runs beside the servers of real_servers.py.

#include "tests/web/real_servers.h"

namespace quorvane {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the helpers of this folder

TEST(FormPostToAnOddServer, WaitsForASlowReply) {
  ExpectReply(RealPost(PortOf("PEER"), u"/slow"), Pattern(4100));
}

TEST(FormPostToAnOddServer, TakesAReplyWithoutALength) {
  ExpectReply(RealPost(PortOf("PEER"), u"/unmeasured"), Pattern(5000));
}

TEST(FormPostToAnOddServer, JoinsAReplyThatComesInChunks) {
  ExpectReply(RealPost(PortOf("PEER"), u"/chunked"), u"one two three");
}

TEST(FormPostToAnOddServer, TakesEveryByteForOneCharacter) {
  const Text reply = RealPost(PortOf("PEER"), u"/bytes").result;
  ASSERT_EQ(reply.Length(), 256);
  for (char16_t byte = 0; byte < 0x80; ++byte) EXPECT_EQ(reply.Characters()[byte], byte);
  EXPECT_EQ(reply.Characters()[0x80], u'\u20AC');
  for (char16_t byte = 0xA0; byte < 0x100; ++byte) EXPECT_EQ(reply.Characters()[byte], byte);
}

TEST(FormPostToAnOddServer, KeepsWhatArrivedOfALongerBody) {
  ExpectReply(RealPost(PortOf("PEER"), u"/short"), Pattern(3000));
}

TEST(FormPostToAnOddServer, KeepsWhatArrivedBeforeAReset) {
  ExpectReply(RealPost(PortOf("PEER"), u"/reset"), Pattern(3000));
}

TEST(FormPostToAnOddServer, FailsOnAPromisedBodyThatNeverComes) {
  ExpectFailure(RealPost(PortOf("PEER"), u"/nobody"));
}

TEST(FormPostToAnOddServer, FailsOnNoAnswer) {
  ExpectFailure(RealPost(PortOf("PEER"), u"/close"));
  ExpectFailure(RealPost(PortOf("CLOSING"), u"/raw"));
}

TEST(FormPostToAnOddServer, FailsOnHalfAHead) {
  ExpectFailure(RealPost(PortOf("PEER"), u"/halfhead"));
}

TEST(FormPostToAnOddServer, FailsOnAnAnswerThatIsNone) {
  ExpectFailure(RealPost(PortOf("PEER"), u"/garbage"));
}

TEST(FormPostToAnOddServer, FailsWhereNobodyListens) {
  ExpectFailure(RealPost(PortOf("NOBODY"), u"/raw"));
}

TEST(FormPostToAnOddServer, FailsWhenItIsPointedToWhereNobodyListens) {
  ExpectFailure(RealPost(PortOf("PEER"), u"/moveddead"));
}

TEST(FormPostToAnOddServer, FailsWithoutAServersName) {
  ExpectFailure(RealPost(PortOf("PEER"), u"/raw", u"a=b", {}, u""));
  ExpectFailure(RealPost(PortOf("PEER"), u"/raw", u"a=b", {}, Text()));
}

TEST(FormPostToAnOddServer, FailsOnANameThatIsNoHosts) {
  ExpectFailure(RealPost(PortOf("PEER"), u"/raw", u"a=b", {}, u"no/host"));
}

TEST(FormPostToAnOddServer, PostsAgainAfterAFailure) {
  OnFreshThread([] {
    EXPECT_EQ(PostFormRequest(u"127.0.0.1", u"/raw", u"", PortOf("NOBODY")), kFailureText);
    EXPECT_EQ(PostFormRequest(u"127.0.0.1", u"/size-1", u"", PortOf("NGINX")), u"!");
    EXPECT_EQ(basGlobals::internetFailed(), kTrue);
  });
}

// The web client's own calls: while nobody reads, the answer waits at the server.
TEST(FormPostToAnOddServer, HoldsALongReplyBackUntilItIsRead) {
  constexpr long kTotal = 40L << 20;
  WinInet& web = wininet();
  const InternetHandle session = web.InternetOpenA("Validate", 0, nullptr, nullptr, 0);
  const InternetHandle connection =
      web.InternetConnectA(session, "127.0.0.1", PortOf("PEER"), nullptr, "HTTP/1.0", 3, 0, 0);
  const InternetHandle request = web.HttpOpenRequestA(connection, "POST", "/flood/40", "HTTP/1.0",
                                                      nullptr, nullptr, WinInet::kFlagReload, 0);
  ASSERT_NE(web.HttpSendRequestA(request, nullptr, 0, nullptr, 0), 0);
  std::string block(2048, ' ');
  std::uint32_t count = 0;
  ASSERT_NE(web.InternetReadFile(request, block.data(), 2048, count), 0);
  EXPECT_EQ(count, 2048U);
  // Each of these posts gives the server time to send more, if it could.
  long taken = 0;
  for (int i = 0; i < 4; ++i) {
    RealPost(PortOf("PEER"), u"/slow");
    taken = std::stol(ToUtf8(RealPost(PortOf("PEER"), u"/flooded").result));
  }
  EXPECT_GT(taken, 0);
  EXPECT_LT(taken, kTotal / 2);  // what the system's socket buffers hold
  EXPECT_NE(web.InternetCloseHandle(request), 0);
  EXPECT_NE(web.InternetCloseHandle(connection), 0);
  EXPECT_NE(web.InternetCloseHandle(session), 0);
}

}  // namespace
}  // namespace quorvane
