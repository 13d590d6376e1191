// Proves the ways through a proxy, named by the settings or configured in the system, and where
// user name and password go. Runs beside the servers of real_servers.py.

#include <iostream>

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

// What a post sends while the system is configured to use that proxy, to standard error; ends the
// process, since a system's library may keep for the whole of it what it has once read there.
[[noreturn]] void TellRequestWhileConfigured(const Text& proxy,
                                             const basGlobals::ConnectionSettings& settings) {
  {
    const ConfiguredProxy configured(proxy);
    std::cerr << BytesOf(RealPost(PortOf("PEER"), u"/raw", u"a=b", settings).result);
  }
  std::exit(0);
}

// In processes of their own.
using FormPostThroughAConfiguredProxyDeathTest = ::testing::Test;

TEST_F(FormPostThroughAConfiguredProxyDeathTest, FollowsItWhenUseProxyIsClear) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(TellRequestWhileConfigured(AddressOf("PROXY"), {}), ::testing::ExitedWithCode(0),
              kViaOpen);
  const std::string request = BytesOf(RealPost(PortOf("PEER"), u"/raw").result);
  EXPECT_TRUE(Contains(request, "POST /raw")) << request;
  EXPECT_FALSE(Contains(request, kViaOpen)) << request;
}

TEST_F(FormPostThroughAConfiguredProxyDeathTest, PrefersTheSettings) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(TellRequestWhileConfigured(AddressOf("NOBODY"), Through(AddressOf("PROXY"))),
              ::testing::ExitedWithCode(0), kViaOpen);
}

TEST(FormPostThroughAProxy, FailsWithoutTheProxy) {
  ExpectFailure(RealPost(PortOf("PEER"), u"/raw", u"a=b", Through(AddressOf("NOBODY"))));
}

TEST(FormPostThroughAProxy, FailsWhenNoProxyIsNamed) {
  const RealPost post(PortOf("PEER"), u"/raw", u"a=b", Through(Text(), Text(), Text()));
  ExpectReply(post, u"");  // there is no session, which is not a failed connection
}

// A refusing proxy reads no body. So these posts have none: where a body is left unread, the close
// of the proxy's end resets the connection, see the last of them.
TEST(FormPostThroughAProxy, GivesTheProxysErrorPageForADeadServer) {
  const RealPost post(PortOf("NOBODY"), u"/raw", u"", Through(AddressOf("PROXY")));
  EXPECT_TRUE(Contains(ToUtf8(post.result), "tinyproxy")) << ToUtf8(post.result);
  EXPECT_FALSE(post.internet_failed);
}

TEST(FormPostThroughAProxy, GivesTheRefusalOfAProxyThatWantsAPassword) {
  // User name and password are for the server: the proxy never sees them.
  for (const auto& settings : {Through(AddressOf("LOCKED_PROXY")),
                               Through(AddressOf("LOCKED_PROXY"), u"anna", u"secret")}) {
    const RealPost post(PortOf("PEER"), u"/raw", u"", settings);
    EXPECT_TRUE(Contains(ToUtf8(post.result), kLockedPage)) << ToUtf8(post.result);
    EXPECT_FALSE(post.internet_failed);
  }
}

// The reset can overtake the page: a system's library may drop what it has not yet handed out.
TEST(FormPostThroughAProxy, GivesTheRefusalOrFailsWhenAProxyLeavesTheBodyUnread) {
  const RealPost post(PortOf("PEER"), u"/raw", u"a=b", Through(AddressOf("LOCKED_PROXY")));
  if (post.internet_failed) {
    ExpectFailure(post);
  } else {
    EXPECT_TRUE(Contains(ToUtf8(post.result), kLockedPage)) << ToUtf8(post.result);
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
