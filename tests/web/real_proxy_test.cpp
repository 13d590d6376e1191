// Proves the ways through a proxy, named by the settings or configured in the system, and where
// user name and password go. Runs beside the servers of real_servers.py.

#include "tests/web/real_servers.h"

namespace quorvane {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the helpers of this folder

bool Contains(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

constexpr auto kViaOpen = "quorvane-open";
constexpr auto kLockedPage = "407 Proxy Authentication Required";

TEST(FormPostThroughAProxy, ReachesTheServer) {
  for (const auto& settings :
       {Through(AddressOf("PROXY")), Through(Text(u"http://") + AddressOf("PROXY"))}) {
    const std::string request =
        BytesOf(RealPost(PortOf("PEER"), u"/raw", u"name=value", settings).result);
    EXPECT_EQ(request.substr(0, request.find("\r\n")), "POST /raw HTTP/1.0");
    EXPECT_TRUE(Contains(request, kViaOpen)) << request;
    EXPECT_TRUE(Contains(request, "\r\nContent-Type: application/x-www-form-urlencoded\r\n"));
    EXPECT_EQ(request.substr(request.find("\r\n\r\n") + 4), "name=value");
  }
}

TEST(FormPostThroughAProxy, ReturnsALongReplyWhole) {
  ExpectReply(RealPost(PortOf("NGINX"), u"/size-10000", u"", Through(AddressOf("PROXY"))),
              Pattern(10000));
}

TEST(FormPostThroughAProxy, GoesStraightWhenUseProxyIsClear) {
  auto settings = Through(AddressOf("PROXY"), u"anna", u"secret");
  settings.UseProxy = kFalse;
  const std::string request = BytesOf(RealPost(PortOf("PEER"), u"/raw", u"a=b", settings).result);
  EXPECT_FALSE(Contains(request, kViaOpen)) << request;
}

TEST(FormPostThroughAProxy, FollowsTheSystemsConfigurationWhenUseProxyIsClear) {
  {
    const ConfiguredProxy configured(AddressOf("PROXY"));
    const std::string request = BytesOf(RealPost(PortOf("PEER"), u"/raw").result);
    EXPECT_TRUE(Contains(request, kViaOpen)) << request;
  }
  const std::string request = BytesOf(RealPost(PortOf("PEER"), u"/raw").result);
  EXPECT_FALSE(Contains(request, kViaOpen)) << request;
}

TEST(FormPostThroughAProxy, PrefersTheSettingsToTheSystemsConfiguration) {
  const ConfiguredProxy configured(AddressOf("NOBODY"));
  const std::string request =
      BytesOf(RealPost(PortOf("PEER"), u"/raw", u"a=b", Through(AddressOf("PROXY"))).result);
  EXPECT_TRUE(Contains(request, kViaOpen)) << request;
}

TEST(FormPostThroughAProxy, FailsWithoutTheProxy) {
  ExpectFailure(RealPost(PortOf("PEER"), u"/raw", u"a=b", Through(AddressOf("NOBODY"))));
}

TEST(FormPostThroughAProxy, FailsWhenNoProxyIsNamed) {
  const RealPost post(PortOf("PEER"), u"/raw", u"a=b", Through(Text(), Text(), Text()));
  ExpectReply(post, u"");  // there is no session, which is not a failed connection
}

// A proxy that refuses closes without reading the body, and the system's reset of the connection
// can overtake the page; the post then fails like any broken one. So a page has a few tries to
// arrive.
template <class Settings>
RealPost PostUntilThePageArrives(std::int16_t port, const Settings& settings) {
  constexpr int kTries = 8;
  for (int i = 1;; ++i) {
    RealPost post(port, u"/raw", u"a=b", settings);
    if (!post.internet_failed || i == kTries) return post;
  }
}

TEST(FormPostThroughAProxy, GivesTheProxysErrorPageForADeadServer) {
  const RealPost post = PostUntilThePageArrives(PortOf("NOBODY"), Through(AddressOf("PROXY")));
  EXPECT_TRUE(Contains(ToUtf8(post.result), "tinyproxy")) << ToUtf8(post.result);
  EXPECT_FALSE(post.internet_failed);
}

TEST(FormPostThroughAProxy, GivesTheRefusalOfAProxyThatWantsAPassword) {
  // User name and password are for the server: the proxy never sees them.
  for (const auto& settings : {Through(AddressOf("LOCKED_PROXY")),
                               Through(AddressOf("LOCKED_PROXY"), u"anna", u"secret")}) {
    const RealPost post = PostUntilThePageArrives(PortOf("PEER"), settings);
    EXPECT_TRUE(Contains(ToUtf8(post.result), kLockedPage)) << ToUtf8(post.result);
    EXPECT_FALSE(post.internet_failed);
  }
}

TEST(FormPostThroughAProxy, GivesUserAndPasswordToAServerThatAsks) {
  RealPost(PortOf("PEER"), u"/relock");
  const auto with = [](const Text& user_name, const Text& password) {
    return RealPost(PortOf("PEER"), u"/locked", u"name=value",
                    Through(AddressOf("PROXY"), user_name, password));
  };
  ExpectReply(with(u"anna", u"secret"), u"open after 1: name=value");
  ExpectReply(with(u"anna", u"wrong"), u"locked");
  ExpectReply(with(u"", u""), u"locked");
}

TEST(FormPostThroughAProxy, KeepsUserAndPasswordWhenUseProxyIsClear) {
  auto settings = Through(AddressOf("PROXY"), u"anna", u"secret");
  settings.UseProxy = kFalse;
  ExpectReply(RealPost(PortOf("PEER"), u"/locked", u"a=b", settings), u"locked");
}

}  // namespace
}  // namespace quorvane
