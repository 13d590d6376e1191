#pragma once

#include <chrono>
#include <cstdint>

namespace quorvane::web_client {

// What a program can set and ask of the web client library's stand-in beside its calls.

/// When a request gives up. The numbers and where they come from: docs/form-post.md.
struct TimeOuts {
  std::chrono::milliseconds connect{60'000};   ///< to find the server and to be let in
  std::chrono::milliseconds silence{300'000};  ///< no byte of the body goes out, none comes in
};

/// For all requests of the program that are sent from now on. Any thread may set them; both are
/// above 0.
void SetTimeOuts(TimeOuts time_outs);

/// Why a call failed, by the platform's own numbers.
enum class Reason : std::int32_t {
  kNone = 0,
  kInvalidHandle = 6,
  kInvalidParameter = 87,
  kTimeOut = 12002,
  kInternalError = 12004,
  kInvalidUrl = 12005,  ///< a server, a proxy or a path that is none
  kUnrecognizedScheme = 12006,
  kNameNotResolved = 12007,
  kCannotConnect = 12029,  ///< refused, or no way there
  kConnectionAborted = 12030,
  kConnectionReset = 12031,
  kInvalidServerResponse = 12152,
  kRedirectFailed = 12156,
};

/// That of the calling thread's latest call that failed; a call that succeeds leaves it alone.
[[nodiscard]] Reason LastFailure();

}  // namespace quorvane::web_client
