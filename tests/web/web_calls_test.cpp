// Proves what the web client's calls give where they are used wrongly or the way goes wrong: the
// same cases over the system's own library and over the stand-in. Runs beside the servers of
// real_servers.py.

#include <chrono>

#include "platform/wininet.h"
#include "tests/web/real_servers.h"

namespace quorvane {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the helpers of this folder

constexpr InternetHandle kUnknown = 999'999;

class WebCalls : public ::testing::Test {
 protected:
  WebCalls()
      : session_(web_.InternetOpenA("Validate", 0, nullptr, nullptr, 0)),
        connection_(web_.InternetConnectA(session_, "127.0.0.1", PortOf("PEER"), nullptr,
                                          "HTTP/1.0", WinInet::kServiceHttp, 0, 0)) {}

  InternetHandle Open(const char* path) {
    return web_.HttpOpenRequestA(connection_, "POST", path, "HTTP/1.0", nullptr, nullptr,
                                 WinInet::kFlagReload, 0);
  }
  std::int32_t Send(InternetHandle request) {
    return web_.HttpSendRequestA(request, nullptr, 0, "a=b", 3);
  }
  std::int32_t Read(InternetHandle request) {
    return web_.InternetReadFile(request, buffer_, sizeof buffer_, count_);
  }

  WinInet& web_ = wininet();
  InternetHandle session_;
  InternetHandle connection_;
  char buffer_[2048] = {};
  std::uint32_t count_ = 77;
};

TEST_F(WebCalls, GiveHandlesAndCloseEachOnce) {
  const InternetHandle request = Open("/raw");
  for (const InternetHandle handle : {request, connection_, session_}) {
    EXPECT_NE(handle, 0U);
    EXPECT_NE(web_.InternetCloseHandle(handle), 0);
    EXPECT_EQ(web_.InternetCloseHandle(handle), 0);
  }
  EXPECT_EQ(Send(request), 0);
}

TEST_F(WebCalls, RefuseHandlesThatTheyDidNotGive) {
  for (const InternetHandle handle : {kUnknown, InternetHandle{0}}) {
    EXPECT_EQ(web_.InternetConnectA(handle, "127.0.0.1", 80, nullptr, "", 3, 0, 0), 0U);
    EXPECT_EQ(web_.HttpOpenRequestA(handle, "POST", "/", "HTTP/1.0", nullptr, nullptr, 0, 0), 0U);
    EXPECT_EQ(web_.HttpAddRequestHeadersA(handle, "A: b\r\n", 6, 0xA0000000), 0);
    EXPECT_EQ(Send(handle), 0);
    EXPECT_EQ(Read(handle), 0);
    EXPECT_EQ(web_.InternetCloseHandle(handle), 0);
  }
}

TEST_F(WebCalls, RefuseHandlesOfAnotherKind) {
  EXPECT_EQ(web_.InternetConnectA(Open("/raw"), "127.0.0.1", 80, nullptr, "", 3, 0, 0), 0U);
  EXPECT_EQ(web_.HttpOpenRequestA(session_, "POST", "/", "HTTP/1.0", nullptr, nullptr, 0, 0), 0U);
  EXPECT_EQ(Send(connection_), 0);
}

TEST_F(WebCalls, EndAReplyWithACountOfNothing) {
  const InternetHandle request = Open("/thanks");
  ASSERT_NE(Send(request), 0);
  EXPECT_NE(Read(request), 0);
  EXPECT_EQ(std::string(buffer_, count_), "Thank you for a=b\n");
  EXPECT_NE(Read(request), 0);
  EXPECT_EQ(count_, 0U);
}

TEST_F(WebCalls, FailToSendWhereARedirectLeadsToNobody) { EXPECT_EQ(Send(Open("/moveddead")), 0); }

TEST_F(WebCalls, HaveTheHeadBeforeALateBody) {
  const InternetHandle request = Open("/late/1500");
  const auto start = std::chrono::steady_clock::now();
  ASSERT_NE(Send(request), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1400));
  EXPECT_NE(Read(request), 0);
  EXPECT_EQ(std::string(buffer_, count_), "late");
}

TEST_F(WebCalls, CountNothingAfterAReadThatFailed) {
  const InternetHandle request = Open("/short");
  ASSERT_NE(Send(request), 0);
  std::size_t total = 0;
  while (Read(request) != 0 && count_ > 0) total += count_;
  EXPECT_EQ(total, 3000U);
  EXPECT_EQ(count_, 0U);
}

}  // namespace
}  // namespace quorvane
