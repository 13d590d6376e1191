#pragma once

#include <curl/curl.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/web_client.h"

namespace quorvane {

/// What a request of the web client library has gathered until it is sent.
struct WebRequest {
  std::string agent;
  /// As the library takes it, see WebExchange; without one the system's configuration counts.
  std::optional<std::string> proxy;
  std::string server;
  std::uint16_t port = 0;
  std::string user_name;
  std::string password;
  std::string object_name;
  std::string headers;  ///< lines, each ended by CR LF
  web_client::TimeOuts time_outs;
};

/// One POST by HTTP/1.0 and its answer, driven by whoever reads it: nothing is taken from the
/// network while nobody asks, so an answer of any length needs no more memory than one receive
/// buffer. All HTTP is libcurl's.
///
/// - A proxy is "host:port", "http://host:port", or a list of such between blanks or semicolons,
///   of which the entry "http=..." or one without a scheme's name counts; its default port is 80.
///   An empty one is no proxy's name, so the send fails. Without one libcurl follows http_proxy,
///   all_proxy and no_proxy in the environment.
/// - User name and password are for the server, and sent only when it has refused the request
///   without them (401).
/// - An answer that points elsewhere is followed up to ten times, by GET after 301, 302 and 303, on
///   plain HTTP only.
/// - It gives up by the request's time-outs; the time between two calls does not count.
class WebExchange {
 public:
  explicit WebExchange(WebRequest request);
  WebExchange(const WebExchange&) = delete;
  WebExchange& operator=(const WebExchange&) = delete;
  ~WebExchange();

  /// Sends the request and waits for the head of the answer, after which Read() gives the body.
  /// False when there is no answer.
  [[nodiscard]] bool Send(std::string_view body);

  /// The next bytes of the body, up to `size`, and fewer only at its end; `count` 0 is the end, or
  /// where the answer broke off, which gives false.
  [[nodiscard]] bool Read(char* buffer, std::size_t size, std::size_t& count);

  /// Why Send() or Read() gave false.
  [[nodiscard]] web_client::Reason Failure() const;

 private:
  template <auto Free>
  struct FreedBy {
    void operator()(auto* object) const { Free(object); }
  };

  bool Prepare(std::string_view body);
  bool SetAddress();
  bool SetWay();
  void SetHeaders();
  void Drive();
  void End(CURLcode outcome);
  [[nodiscard]] std::int64_t BytesMoved() const;
  [[nodiscard]] bool HasAnswer() const;
  [[nodiscard]] std::size_t Waiting() const { return arrived_.size() - taken_; }
  template <class Value>
  bool Set(CURLoption option, Value value) {
    return curl_easy_setopt(easy_.get(), option, value) == CURLE_OK;
  }

  WebRequest request_;
  std::unique_ptr<curl_slist, FreedBy<curl_slist_free_all>> headers_;
  std::unique_ptr<CURLU, FreedBy<curl_url_cleanup>> address_;
  std::unique_ptr<CURL, FreedBy<curl_easy_cleanup>> easy_;
  std::unique_ptr<CURLM, FreedBy<curl_multi_cleanup>> multi_;
  std::string arrived_;    // one receive buffer of the body
  std::size_t taken_ = 0;  // how much of it was read
  std::int64_t received_ = 0;
  std::int64_t moved_ = 0;  // when last looked at, which is when it last changed:
  std::chrono::steady_clock::time_point moved_at_;
  bool head_ended_ = false;  // of the latest answer
  bool done_ = false;
  CURLcode outcome_ = CURLE_OK;  // once done
};

}  // namespace quorvane
