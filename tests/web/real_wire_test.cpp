// Proves what goes over the wire, byte by byte, through the platform's own web client, and that
// real servers' replies come back whole. Runs beside the servers of real_servers.py.

#include "tests/web/real_servers.h"
#include "text/form_encoding.h"

namespace quorvane {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the helpers of this folder

// The header fields are the same everywhere, their order is the web client's own.
std::string Expected(const std::string& request_line, const std::string& host,
                     const std::string& body) {
  const std::string length = "Content-Length: " + std::to_string(body.size()) + "\r\n";
  const std::string type = "Content-Type: application/x-www-form-urlencoded\r\n";
  const std::string agent = "User-Agent: Validate\r\n";
  const std::string fields =
#ifdef _WIN32
      type + "Host: " + host + "\r\n" + length + agent;
#else
      "Host: " + host + "\r\n" + agent + type + length;
#endif
  return request_line + "\r\n" + fields + "\r\n" + body;
}

std::string Peer() { return ToUtf8(AddressOf("PEER")); }

TEST(FormPostOnTheWire, SendsTheFormInOneRequest) {
  const RealPost post(PortOf("PEER"), u"/raw/form.cgi", u"name=value&other=x+y");
  EXPECT_EQ(BytesOf(post.result),
            Expected("POST /raw/form.cgi HTTP/1.0", Peer(), "name=value&other=x+y"));
  EXPECT_FALSE(post.internet_failed);
}

TEST(FormPostOnTheWire, SendsAnEncodedBodyAsItStands) {
  const RealPost post(PortOf("PEER"), u"/raw", FormEncode(u"a=100% caf\u00E9&b=\u0416"));
  EXPECT_EQ(BytesOf(post.result), Expected("POST /raw HTTP/1.0", Peer(), "a=100%25+caf%E9&b=%3F"));
}

TEST(FormPostOnTheWire, SendsARawBodyInTheCodePage) {
  const RealPost post(PortOf("PEER"), u"/raw", Text(std::u16string(u"a=\u20AC\0\r\n\u00E9", 7)));
  EXPECT_EQ(BytesOf(post.result),
            Expected("POST /raw HTTP/1.0", Peer(), std::string("a=\x80\0\r\n\xE9", 7)));
}

TEST(FormPostOnTheWire, SendsAnEmptyBody) {
  for (const Text& body : {Text(u""), Text()}) {
    const RealPost post(PortOf("PEER"), u"/raw", body);
    EXPECT_EQ(BytesOf(post.result), Expected("POST /raw HTTP/1.0", Peer(), ""));
  }
}

TEST(FormPostOnTheWire, SendsALongBody) {
  const Text body = Pattern(1'000'000);
  const RealPost post(PortOf("PEER"), u"/raw", body);
  EXPECT_TRUE(BytesOf(post.result) == Expected("POST /raw HTTP/1.0", Peer(), ToUtf8(body)));
}

TEST(FormPostOnTheWire, SendsTheObjectsQueryAlong) {
  const RealPost post(PortOf("PEER"), u"/raw/a%20b?x=1&y=2", u"");
  EXPECT_EQ(BytesOf(post.result), Expected("POST /raw/a%20b?x=1&y=2 HTTP/1.0", Peer(), ""));
}

TEST(FormPostOnTheWire, LeavesTheRootedPathToTheWebClient) {
  EXPECT_EQ(BytesOf(RealPost(PortOf("PEER"), u"raw/x", u"").result),
            Expected("POST /raw/x HTTP/1.0", Peer(), ""));
  EXPECT_EQ(BytesOf(RealPost(PortOf("PEER"), u"", u"").result),
            Expected("POST / HTTP/1.0", Peer(), ""));
}

TEST(FormPostOnTheWire, AsksAProxyWithTheFullAddress) {
  // The peer in the proxy's place; the server that is named is never asked.
  const RealPost post(8080, u"/raw", u"a=b", Through(AddressOf("PEER"), u"anna", u"secret"),
                      u"192.0.2.1");
  EXPECT_EQ(BytesOf(post.result),
            Expected("POST http://192.0.2.1:8080/raw HTTP/1.0", "192.0.2.1:8080", "a=b"));
}

TEST(FormPostOnTheWire, FollowsAnAnswerThatPointsElsewhere) {
  for (const char16_t* object : {u"/moved/301/raw", u"/moved/302/raw", u"/moved/303/raw"}) {
    const std::string request = BytesOf(RealPost(PortOf("PEER"), object).result);
    EXPECT_EQ(request.substr(0, request.find("\r\n")), "GET /raw HTTP/1.0");
    EXPECT_EQ(request.find("a=b"), std::string::npos);
  }
  const std::string again = BytesOf(RealPost(PortOf("PEER"), u"/moved/307/raw").result);
  EXPECT_EQ(again.substr(0, again.find("\r\n")), "POST /raw HTTP/1.0");
}

TEST(FormPostToNginx, ReturnsPagesOfAnySizeWhole) {
  for (const std::size_t size : {1U, 2047U, 2048U, 2049U, 10000U}) {
    ExpectReply(RealPost(PortOf("NGINX"), FromUtf8("/size-" + std::to_string(size))),
                Pattern(size));
  }
}

TEST(FormPostToNginx, ReturnsAHundredMegabytes) {
  constexpr std::size_t kSize = 100U << 20;
  const RealPost post(PortOf("NGINX"), u"/big-100");
  EXPECT_FALSE(post.internet_failed);
  const std::u16string& reply = post.result.Characters();
  ASSERT_EQ(reply.size(), kSize);
  std::size_t wrong = 0;
  for (std::size_t i = 0; i < kSize; ++i) wrong += reply[i] == u'!' + i % 89 ? 0U : 1U;
  EXPECT_EQ(wrong, 0U);
}

TEST(FormPostToNginx, ReturnsErrorPagesLikeAnyOther) {
  ExpectReply(RealPost(PortOf("NGINX"), u"/no-such-page"), u"no such form");
  ExpectReply(RealPost(PortOf("NGINX"), u"/broken"), u"Error : the form is broken");
  ExpectReply(RealPost(PortOf("PEER"), u"/error"), u"Error : out of order");
}

TEST(FormPostToNginx, TakesAnEmptyPageForAFailure) {
  ExpectFailure(RealPost(PortOf("NGINX"), u"/size-0"));
}

TEST(FormPostToNginx, PassesTheFormOn) {
  const std::string request =
      BytesOf(RealPost(PortOf("NGINX"), u"/form/raw", u"name=value").result);
  EXPECT_EQ(request.substr(0, request.find("\r\n")), "POST /raw HTTP/1.0");
  EXPECT_NE(request.find("\r\nContent-Type: application/x-www-form-urlencoded\r\n"),
            std::string::npos);
  EXPECT_EQ(request.substr(request.find("\r\n\r\n") + 4), "name=value");
}

}  // namespace
}  // namespace quorvane
