// Proves what the web client's stand-in adds to the results that it shares with the real library
// (web_calls_test.cpp): a reason for each failure, and an end within the time that was set. Runs
// beside the servers of real_servers.py.

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <functional>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/posix/web_client.h"
#include "platform/wininet.h"
#include "tests/web/real_servers.h"

namespace quorvane {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the helpers of this folder
using std::chrono::milliseconds;
using web_client::LastFailure;
using web_client::Reason;

constexpr InternetHandle kUnknown = 999'999;

class WebStandIn : public ::testing::Test {
 protected:
  ~WebStandIn() override { web_client::SetTimeOuts({}); }

  InternetHandle Open(const char* path, const char* port_of, const char* server = "127.0.0.1") {
    session_ = web_.InternetOpenA("Validate", 0, nullptr, nullptr, 0);
    connection_ = web_.InternetConnectA(session_, server, PortOf(port_of), nullptr, "HTTP/1.0",
                                        WinInet::kServiceHttp, 0, 0);
    return web_.HttpOpenRequestA(connection_, "POST", path, "HTTP/1.0", nullptr, nullptr,
                                 WinInet::kFlagReload, 0);
  }
  std::int32_t Send(InternetHandle request) {
    return web_.HttpSendRequestA(request, nullptr, 0, "a=b", 3);
  }
  /// How long a failing send takes, and why it fails.
  std::pair<milliseconds, Reason> FailedSend(const char* path, const char* port_of,
                                             const char* server = "127.0.0.1") {
    const InternetHandle request = Open(path, port_of, server);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Send(request), 0);
    const auto taken = std::chrono::steady_clock::now() - start;
    return {std::chrono::duration_cast<milliseconds>(taken), LastFailure()};
  }
  /// The request as it came to the far end of these proxies, where that is the scripted peer.
  std::string ArrivedThrough(const std::string& proxies, const char* server, std::int16_t port) {
    session_ = web_.InternetOpenA("a", WinInet::kOpenTypeProxy, proxies.c_str(), nullptr, 0);
    connection_ = web_.InternetConnectA(session_, server, port, nullptr, nullptr,
                                        WinInet::kServiceHttp, 0, 0);
    const InternetHandle request =
        web_.HttpOpenRequestA(connection_, "POST", "/raw", "HTTP/1.0", nullptr, nullptr, 0, 0);
    EXPECT_NE(Send(request), 0) << proxies << ' ' << port;
    EXPECT_NE(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
    return BytesOf(FromUtf8(std::string(buffer_, count_)));
  }

  WinInet& web_ = wininet();
  InternetHandle session_ = 0;
  InternetHandle connection_ = 0;
  char buffer_[2048] = {};
  std::uint32_t count_ = 77;
};

TEST_F(WebStandIn, RefusesHandlesThatItDidNotGive) {
  EXPECT_EQ(web_.InternetConnectA(kUnknown, "127.0.0.1", 80, nullptr, "", 3, 0, 0), 0U);
  EXPECT_EQ(LastFailure(), Reason::kInvalidHandle);
  EXPECT_EQ(web_.HttpOpenRequestA(kUnknown, "POST", "/", "HTTP/1.0", nullptr, nullptr, 0, 0), 0U);
  EXPECT_EQ(web_.HttpAddRequestHeadersA(kUnknown, "A: b\r\n", 6, 0xA0000000), 0);
  EXPECT_EQ(web_.HttpSendRequestA(kUnknown, nullptr, 0, nullptr, 0), 0);
  EXPECT_EQ(web_.InternetReadFile(kUnknown, buffer_, sizeof buffer_, count_), 0);
  EXPECT_EQ(count_, 0U);
  EXPECT_EQ(web_.InternetCloseHandle(kUnknown), 0);
  EXPECT_EQ(web_.InternetCloseHandle(0), 0);
}

TEST_F(WebStandIn, RefusesHandlesOfAnotherKind) {
  const InternetHandle request = Open("/raw", "PEER");
  EXPECT_EQ(web_.InternetConnectA(request, "127.0.0.1", 80, nullptr, "", 3, 0, 0), 0U);
  EXPECT_EQ(web_.HttpOpenRequestA(session_, "POST", "/", "HTTP/1.0", nullptr, nullptr, 0, 0), 0U);
  EXPECT_EQ(Send(connection_), 0);
  EXPECT_EQ(LastFailure(), Reason::kInvalidHandle);
}

TEST_F(WebStandIn, RefusesWhatItDoesNotKnow) {
  const InternetHandle request = Open("/raw", "PEER");
  const auto open = [this](const char* verb, const char* version) {
    return web_.HttpOpenRequestA(connection_, verb, "/", version, nullptr, nullptr, 0, 0);
  };
  const auto connect = [this](const char* server, std::uint32_t service) {
    return web_.InternetConnectA(session_, server, 80, nullptr, nullptr, service, 0, 0);
  };
  const auto send = [&](const char* headers, std::uint32_t length) {
    return static_cast<InternetHandle>(web_.HttpSendRequestA(request, headers, length, nullptr, 0));
  };
  const auto add = [&](const char* headers, std::uint32_t modifiers) {
    return static_cast<InternetHandle>(web_.HttpAddRequestHeadersA(request, headers, 0, modifiers));
  };
  const std::function<InternetHandle()> calls[] = {
      [&] { return web_.InternetOpenA("a", 1, nullptr, nullptr, 0); },
      [&] { return web_.InternetOpenA("a", WinInet::kOpenTypeProxy, nullptr, nullptr, 0); },
      [&] { return connect(nullptr, WinInet::kServiceHttp); },
      [&] { return connect("", WinInet::kServiceHttp); },
      [&] { return connect("127.0.0.1", 1); },
      [&] { return open("GET", "HTTP/1.0"); },
      [&] { return open("POST", "HTTP/1.1"); },
      [&] { return add(nullptr, WinInet::kAddHeader | WinInet::kReplaceHeader); },
      [&] { return add("", WinInet::kAddHeader); },
      [&] { return send("", 0); },
      [&] { return send(nullptr, 1); },
  };
  for (const auto& call : calls) {
    EXPECT_EQ(web_.InternetCloseHandle(kUnknown), 0);
    EXPECT_EQ(LastFailure(), Reason::kInvalidHandle);
    EXPECT_EQ(call(), 0U) << &call - calls;
    EXPECT_EQ(LastFailure(), Reason::kInvalidParameter) << &call - calls;
  }
}

TEST_F(WebStandIn, ClosesEachHandleOnce) {
  const InternetHandle request = Open("/raw", "PEER");
  for (const InternetHandle handle : {request, connection_, session_}) {
    EXPECT_NE(web_.InternetCloseHandle(handle), 0);
    EXPECT_EQ(web_.InternetCloseHandle(handle), 0);
    EXPECT_EQ(LastFailure(), Reason::kInvalidHandle);
  }
  EXPECT_EQ(Send(request), 0);
}

TEST_F(WebStandIn, ReadsNothingBeforeItHasSent) {
  const InternetHandle request = Open("/raw", "PEER");
  EXPECT_EQ(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
  EXPECT_EQ(count_, 0U);
  EXPECT_EQ(LastFailure(), Reason::kInvalidParameter);
}

TEST_F(WebStandIn, TakesAnEmptyAnswerThatPointsNowhere) {
  const InternetHandle request = Open("/movednowhere", "PEER");
  EXPECT_NE(Send(request), 0);
  EXPECT_NE(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
  EXPECT_EQ(count_, 0U);
}

TEST_F(WebStandIn, CountsNothingAfterAFailedRead) {
  const InternetHandle request = Open("/short", "PEER");
  ASSERT_NE(Send(request), 0);
  EXPECT_NE(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
  EXPECT_EQ(count_, sizeof buffer_);
  EXPECT_NE(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
  EXPECT_EQ(count_, 3000 - sizeof buffer_);
  for (int again = 0; again < 2; ++again) {
    count_ = 77;
    EXPECT_EQ(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
    EXPECT_EQ(count_, 0U);
    EXPECT_EQ(LastFailure(), Reason::kConnectionAborted);
  }
}

TEST_F(WebStandIn, HasTheHeadBeforeALateBodyAndWaitsWithoutWork) {
  const InternetHandle request = Open("/late/1500", "PEER");
  const auto start = std::chrono::steady_clock::now();
  ASSERT_NE(Send(request), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(1400)) << "the head is there";
  const std::clock_t work = std::clock();
  EXPECT_NE(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
  EXPECT_EQ(std::string(buffer_, count_), "late");
  EXPECT_LT(std::clock() - work, CLOCKS_PER_SEC / 2);
}

TEST_F(WebStandIn, FindsTheProxyForHttpInAList) {
  const std::string proxy = ToUtf8(AddressOf("PROXY"));
  for (const std::string& list : {proxy + ";https=none.invalid:1", "http=" + proxy,
                                  "https=none.invalid:1;http=http://" + proxy,
                                  "ftp=none.invalid:1 " + proxy + " http=none.invalid:1"}) {
    const std::string arrived = ArrivedThrough(list, "127.0.0.1", PortOf("PEER"));
    EXPECT_NE(arrived.find("quorvane-open"), std::string::npos) << list;
  }
}

// Told to a proxy, since who listens at port 80 is not a test's to say.
TEST_F(WebStandIn, TakesPort0ForThatOfTheService) {
  const std::string proxy = ToUtf8(AddressOf("PEER"));
  for (const std::int16_t port : {std::int16_t{0}, std::int16_t{80}, std::int16_t{81}}) {
    const std::string arrived = ArrivedThrough(proxy, "example.invalid", port);
    EXPECT_TRUE(arrived.starts_with(port == 81 ? "POST http://example.invalid:81/raw "
                                               : "POST http://example.invalid/raw "))
        << arrived;
  }
}

TEST(WebTimeOuts, AreOneMinuteAndFive) {
  EXPECT_EQ(web_client::TimeOuts{}.connect, milliseconds(60000));
  EXPECT_EQ(web_client::TimeOuts{}.silence, milliseconds(300000));
}

TEST_F(WebStandIn, GivesUpOnAServerThatSaysNothing) {
  web_client::SetTimeOuts({milliseconds(5000), milliseconds(300)});
  const auto [taken, reason] = FailedSend("/late/20000/headless", "PEER");
  EXPECT_EQ(reason, Reason::kTimeOut);
  EXPECT_GE(taken, milliseconds(300));
  EXPECT_LT(taken, milliseconds(15000));
}

TEST_F(WebStandIn, GivesUpOnABodyThatStops) {
  web_client::SetTimeOuts({milliseconds(5000), milliseconds(300)});
  const InternetHandle request = Open("/late/20000", "PEER");
  ASSERT_NE(Send(request), 0);
  EXPECT_EQ(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
  EXPECT_EQ(count_, 0U);
  EXPECT_EQ(LastFailure(), Reason::kTimeOut);
}

// Each part comes in time, the whole of it does not.
TEST_F(WebStandIn, DoesNotGiveUpWhileSomethingComes) {
  web_client::SetTimeOuts({milliseconds(5000), milliseconds(600)});
  const InternetHandle request = Open("/drip/8/150", "PEER");
  ASSERT_NE(Send(request), 0);
  EXPECT_NE(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
  EXPECT_EQ(std::string(buffer_, count_), "dripdripdripdripdripdripdripdrip");
}

// A server that takes a body in parts, with a pause before each, and answers then. The body is more
// than lies on its way between two programs.
class SlowServer {
 public:
  SlowServer() {
    const int little = 65536;
    ::setsockopt(listener_, SOL_SOCKET, SO_RCVBUF, &little, sizeof little);
    EXPECT_EQ(::listen(listener_, 1), 0);
    thread_ = std::thread([this] { Run(); });
  }
  SlowServer(const SlowServer&) = delete;
  SlowServer& operator=(const SlowServer&) = delete;
  ~SlowServer() {
    thread_.join();
    ::close(listener_);
  }

  [[nodiscard]] std::int16_t Port() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
    return static_cast<std::int16_t>(ntohs(address.sin_port));
  }

  static constexpr std::size_t kBodySize = 32U << 20U;

 private:
  void Run() const {
    const int client = ::accept(listener_, nullptr, nullptr);
    std::vector<char> part(kBodySize / 32);
    for (std::size_t taken = 0; taken < kBodySize;) {
      std::this_thread::sleep_for(milliseconds(50));
      const ssize_t count = ::recv(client, part.data(), part.size(), MSG_WAITALL);
      if (count <= 0) break;
      taken += static_cast<std::size_t>(count);
    }
    constexpr std::string_view kAnswer = "HTTP/1.0 200 OK\r\n\r\n";
    ::send(client, kAnswer.data(), kAnswer.size(), MSG_NOSIGNAL);
    ::shutdown(client, SHUT_WR);
    while (::recv(client, part.data(), part.size(), 0) > 0) {
    }
    ::close(client);
  }

  const int listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
  std::thread thread_;
};

TEST_F(WebStandIn, DoesNotGiveUpWhileSomethingGoesOut) {
  web_client::SetTimeOuts({milliseconds(5000), milliseconds(800)});
  const SlowServer server;
  const std::string body(SlowServer::kBodySize, 'b');
  session_ = web_.InternetOpenA("a", WinInet::kOpenTypePreconfig, nullptr, nullptr, 0);
  connection_ = web_.InternetConnectA(session_, "127.0.0.1", server.Port(), nullptr, nullptr,
                                      WinInet::kServiceHttp, 0, 0);
  const InternetHandle request =
      web_.HttpOpenRequestA(connection_, "POST", "/", "HTTP/1.0", nullptr, nullptr, 0, 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_NE(web_.HttpSendRequestA(request, nullptr, 0, body.data(), SlowServer::kBodySize), 0)
      << static_cast<int>(LastFailure());
  EXPECT_GT(std::chrono::steady_clock::now() - start, milliseconds(1000));
  EXPECT_NE(web_.InternetCloseHandle(request), 0);  // ends the connection, which the server awaits
}

TEST_F(WebStandIn, DoesNotCountTheTimeBetweenTwoReads) {
  web_client::SetTimeOuts({milliseconds(5000), milliseconds(700)});
  const InternetHandle request = Open("/flood/2", "PEER");
  ASSERT_NE(Send(request), 0);
  ASSERT_NE(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
  const timespec pause{1, 0};
  ::nanosleep(&pause, nullptr);
  std::size_t total = count_;
  while (count_ > 0) {
    ASSERT_NE(web_.InternetReadFile(request, buffer_, sizeof buffer_, count_), 0);
    total += count_;
  }
  EXPECT_EQ(total, 2U << 20U);
}

TEST_F(WebStandIn, TellsItsReasonsApart) {
  EXPECT_EQ(FailedSend("/raw", "NOBODY").second, Reason::kCannotConnect);
  EXPECT_EQ(FailedSend("/moveddead", "PEER").second, Reason::kCannotConnect);
  EXPECT_EQ(FailedSend("/movedaway", "PEER").second, Reason::kUnrecognizedScheme);
  EXPECT_EQ(FailedSend("/raw", "PEER", "no-such-host.invalid").second, Reason::kNameNotResolved);
  EXPECT_EQ(FailedSend("/raw", "PEER", "https://127.0.0.1").second, Reason::kUnrecognizedScheme);
  EXPECT_EQ(FailedSend("/raw", "PEER", "no/host").second, Reason::kInvalidUrl);
  EXPECT_EQ(FailedSend("/close", "PEER").second, Reason::kConnectionAborted);
  EXPECT_EQ(FailedSend("/garbage", "PEER").second, Reason::kInvalidServerResponse);
  EXPECT_EQ(FailedSend("/moved/302/moved/302/moved/302/moved/302/moved/302/moved/302/moved/302/"
                       "moved/302/moved/302/moved/302/moved/302/raw",
                       "PEER")
                .second,
            Reason::kRedirectFailed);
}

}  // namespace
}  // namespace quorvane
