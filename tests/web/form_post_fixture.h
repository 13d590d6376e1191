#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "control/basGlobals.h"
#include "tests/support/fresh_thread.h"
#include "tests/support/raises.h"
#include "tests/support/table_1252.h"
#include "tests/support/web_fakes.h"
#include "web/form_post.h"

namespace quorvane::testing {

inline const Text kFailureText = u"Error : Unable to connect to the Internet";

// The calls of the simplest post, as the fakes write them down.
inline const std::string kHourglassCall = "SetMousePointer(11)";
inline const std::string kDefaultCall = "SetMousePointer(0)";
inline const std::string kOpenCall = R"(InternetOpenA("Validate", 0, null, null, 0))";
inline const std::string kConnectCall =
    R"(InternetConnectA(1, "server", 8080, null, "HTTP/1.0", 3, 0, 0))";
inline const std::string kRequestCall =
    R"(HttpOpenRequestA(2, "POST", "/cgi/form", "HTTP/1.0", null, null, 2147483648, 0))";
inline const std::string kHeaderCall =
    R"(HttpAddRequestHeadersA(3, "Content-Type: application/x-www-form-urlencoded\x0D\x0A", 49, 2684354560))";
inline const std::string kSendCall = R"(HttpSendRequestA(3, null, 0, "a=b", 3))";
inline const std::string kReadCall = "InternetReadFile(3, 2048)";
inline const std::string kCloseRequestCall = "InternetCloseHandle(3)";
inline const std::string kCloseConnectionCall = "InternetCloseHandle(2)";
inline const std::string kCloseSessionCall = "InternetCloseHandle(1)";

/// What one post leaves behind.
struct Outcome {
  Text result;
  bool internet_failed = false;
  CallLog log;
  std::set<InternetHandle> open_handles;
  bool struck = false;
  std::string latest_buffer;
};

/// What goes into one post; the settings are those of a fresh thread unless changed.
struct PostCase {
  Text server = u"server";
  Text object_name = u"/cgi/form";
  Text body = u"a=b";
  std::int16_t port = 8080;
  basGlobals::ConnectionSettings settings;
  std::deque<FakeWinInet::Read> reads = {{"reply"}};
  FaultPlan plan;
  Fails manner = Fails::kByItsResult;
  FaultPlan screen_plan;
  const CodePage* code_page = nullptr;

  /// Runs the post on a thread of its own.
  [[nodiscard]] Outcome Run() const {
    Outcome outcome;
    OnFreshThread([this, &outcome] {
      static const Table1252 kPage;
      FakeWinInet web(outcome.log, plan, manner);
      FakeScreen pointer_owner(outcome.log, screen_plan);
      web.reads = reads;
      basGlobals::connectionSettings() = settings;
      outcome.result = PostFormRequest(server, object_name, body, port, web, pointer_owner,
                                       code_page == nullptr ? kPage : *code_page);
      outcome.internet_failed = basGlobals::internetFailed().IsTrue();
      outcome.open_handles = web.open_handles;
      outcome.struck = web.Plan().HasStruck();
      outcome.latest_buffer = web.latest_buffer;
    });
    return outcome;
  }
};

}  // namespace quorvane::testing
