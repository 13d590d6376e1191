// Proves which calls a form post makes, in which order, and with exactly which arguments.

#include "tests/support/double_byte_page.h"
#include "tests/web/form_post_fixture.h"

namespace quorvane {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the fixture of this folder

TEST(PostFormRequest, MakesItsCallsInOrder) {
  const Outcome outcome = PostCase().Run();
  EXPECT_EQ(outcome.result, u"reply");
  EXPECT_FALSE(outcome.internet_failed);
  EXPECT_EQ(outcome.log, (CallLog{kHourglassCall, kOpenCall, kConnectCall, kRequestCall,
                                  kHeaderCall, kSendCall, kReadCall, kReadCall, kCloseRequestCall,
                                  kCloseConnectionCall, kCloseSessionCall, kDefaultCall}));
  EXPECT_TRUE(outcome.open_handles.empty());
}

TEST(PostFormRequest, GoesThroughTheProxyWithTheCredentials) {
  PostCase post;
  post.settings.UseProxy = kTrue;
  post.settings.ProxyServer = u"proxy:3128";
  post.settings.UserName = u"anna";
  post.settings.Password = u"secret";
  const CallLog log = post.Run().log;
  EXPECT_EQ(log.at(1), R"(InternetOpenA("Validate", 3, "proxy:3128", null, 0))");
  EXPECT_EQ(log.at(2), R"(InternetConnectA(1, "server", 8080, "anna", "secret", 3, 0, 0))");
  EXPECT_EQ(log.at(3), kRequestCall);
}

TEST(PostFormRequest, TestsUseProxyForZeroOnly) {
  for (const std::int16_t bits : std::initializer_list<std::int16_t>{1, 2, 256, -1, -32768}) {
    PostCase post;
    post.settings.UseProxy = Boolean16{bits};
    post.settings.ProxyServer = u"p";
    EXPECT_EQ(post.Run().log.at(1), R"(InternetOpenA("Validate", 3, "p", null, 0))") << bits;
  }
}

TEST(PostFormRequest, PutsTheHttpVersionInThePasswordsPlaceWithoutAProxy) {
  PostCase post;
  post.settings.ProxyServer = u"proxy:3128";
  post.settings.UserName = u"anna";
  post.settings.Password = u"secret";
  const CallLog log = post.Run().log;
  EXPECT_EQ(log.at(1), kOpenCall);
  EXPECT_EQ(log.at(2), kConnectCall);
}

TEST(PostFormRequest, HandsOverAnEmptyProxy) {
  PostCase post;
  post.settings.UseProxy = kTrue;
  post.settings.ProxyServer = u"";
  post.settings.UserName = u"";
  post.settings.Password = u"";
  const CallLog log = post.Run().log;
  EXPECT_EQ(log.at(1), R"(InternetOpenA("Validate", 3, "", null, 0))");
  EXPECT_EQ(log.at(2), R"(InternetConnectA(1, "server", 8080, "", "", 3, 0, 0))");
}

TEST(PostFormRequest, HandsOverNoTextForAnAbsentOne) {
  PostCase post;
  post.settings.UseProxy = kTrue;
  post.server = Text();
  post.object_name = Text();
  post.body = Text();
  const CallLog log = post.Run().log;
  EXPECT_EQ(log.at(1), R"(InternetOpenA("Validate", 3, null, null, 0))");
  EXPECT_EQ(log.at(2), "InternetConnectA(1, null, 8080, null, null, 3, 0, 0)");
  EXPECT_EQ(log.at(3),
            R"(HttpOpenRequestA(2, "POST", null, "HTTP/1.0", null, null, 2147483648, 0))");
  EXPECT_EQ(log.at(5), "HttpSendRequestA(3, null, 0, null, 0)");
}

TEST(PostFormRequest, RefusesNothingAndMendsNothing) {
  PostCase post;
  post.server = u"";
  post.object_name = u"cgi bin/form?x=%20#y";
  post.body = u"";
  for (const std::int16_t port : std::initializer_list<std::int16_t>{0, -1, -32768, 32767}) {
    post.port = port;
    const CallLog log = post.Run().log;
    EXPECT_EQ(log.at(2), "InternetConnectA(1, \"\", " + std::to_string(port) +
                             ", null, \"HTTP/1.0\", 3, 0, 0)");
    EXPECT_EQ(
        log.at(3),
        R"(HttpOpenRequestA(2, "POST", "cgi bin/form?x=%20#y", "HTTP/1.0", null, null, 2147483648, 0))");
    EXPECT_EQ(log.at(5), R"(HttpSendRequestA(3, null, 0, "", 0))");
  }
}

TEST(PostFormRequest, SendsTheBodyInTheCodePage) {
  PostCase post;
  post.body = u"x=\u00E9\u20AC\u0416";
  EXPECT_EQ(post.Run().log.at(5), R"(HttpSendRequestA(3, null, 0, "x=\xE9\x80?", 5))");
  post.body = Text(std::u16string(u"a\0b", 3));
  EXPECT_EQ(post.Run().log.at(5), R"(HttpSendRequestA(3, null, 0, "a\x00b", 3))");
}

TEST(PostFormRequest, CountsTheBodyInCharacters) {
  const DoubleBytePage page;
  PostCase post;
  post.code_page = &page;
  post.body = u"a=\u30A0b";
  EXPECT_EQ(post.Run().log.at(5), R"(HttpSendRequestA(3, null, 0, "a=\x80\xA0", 4))");
}

TEST(PostFormRequest, CountsTheReplyInBytesUnderATwoBytePage) {
  const DoubleBytePage page;
  PostCase post;
  post.code_page = &page;
  post.reads = {{"x\x80\xA0\x80\xA1"}};
  EXPECT_EQ(post.Run().result, u"x\u30A0\u30A1  ");
}

TEST(PostFormRequest, LeavesArgumentsAndSettingsAsTheyWere) {
  OnFreshThread([] {
    CallLog log;
    FakeWinInet web(log);
    FakeScreen pointer_owner(log);
    const Table1252 page;
    const Text text = u"\u0416";
    auto& settings = basGlobals::connectionSettings();
    settings = {text, 7, text, Boolean16{5}, text, text, text};
    EXPECT_EQ(PostFormRequest(text, text, text, 1, web, pointer_owner, page), kFailureText);
    EXPECT_EQ(log.at(1), R"(InternetOpenA("Validate", 3, "?", null, 0))");
    EXPECT_EQ(text, u"\u0416");
    for (const Text& kept : {settings.ServerAddress, settings.ServerFile, settings.ProxyServer,
                             settings.UserName, settings.Password})
      EXPECT_EQ(kept, u"\u0416");
    EXPECT_EQ(settings.ServerPort, 7);
    EXPECT_EQ(settings.UseProxy, Boolean16{5});
  });
}

}  // namespace
}  // namespace quorvane
