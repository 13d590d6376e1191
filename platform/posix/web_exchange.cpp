#include "platform/posix/web_exchange.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <sstream>
#include <utility>

namespace quorvane {
namespace {

constexpr auto kLongestWait = std::chrono::seconds(1);
constexpr long kMostRedirects = 10;
constexpr long kDefaultProxyPort = 80;

// The entry of a proxy list that serves HTTP, without its "http="; empty when there is none.
std::string HttpProxyIn(std::string list) {
  constexpr std::string_view kScheme = "http=";
  std::ranges::replace(list, ';', ' ');
  std::istringstream entries(list);
  for (std::string entry; entries >> entry;) {
    if (entry.starts_with(kScheme)) entry.erase(0, kScheme.size());
    if (!entry.empty() && entry.find('=') == std::string::npos) return entry;
  }
  return {};
}

}  // namespace

WebExchange::WebExchange(WebRequest request) : request_(std::move(request)) {}

WebExchange::~WebExchange() {
  if (multi_ && easy_) curl_multi_remove_handle(multi_.get(), easy_.get());
}

bool WebExchange::Send(std::string_view body) {
  if (multi_) return false;
  moved_at_ = std::chrono::steady_clock::now();
  if (!Prepare(body)) {
    const bool names_scheme = request_.server.find("://") != std::string::npos;
    End(names_scheme ? CURLE_UNSUPPORTED_PROTOCOL : CURLE_URL_MALFORMAT);
    return false;
  }
  while (!done_ && !HasAnswer()) Drive();
  return HasAnswer();
}

bool WebExchange::Read(char* buffer, std::size_t size, std::size_t& count) {
  count = 0;
  if (!multi_) return false;
  moved_at_ = std::chrono::steady_clock::now();
  while (count < size) {
    while (!done_ && Waiting() == 0) Drive();
    if (Waiting() == 0) break;
    const std::size_t part = std::min(size - count, Waiting());
    std::memcpy(buffer + count, arrived_.data() + taken_, part);
    taken_ += part;
    count += part;
  }
  return count > 0 || outcome_ == CURLE_OK;
}

web_client::Reason WebExchange::Failure() const {
  using web_client::Reason;
  static const std::map<CURLcode, Reason> kReasons(
      {{CURLE_OPERATION_TIMEDOUT, Reason::kTimeOut},
       {CURLE_URL_MALFORMAT, Reason::kInvalidUrl},
       {CURLE_UNSUPPORTED_PROTOCOL, Reason::kUnrecognizedScheme},
       {CURLE_COULDNT_RESOLVE_HOST, Reason::kNameNotResolved},
       {CURLE_COULDNT_RESOLVE_PROXY, Reason::kNameNotResolved},
       {CURLE_COULDNT_CONNECT, Reason::kCannotConnect},
       {CURLE_GOT_NOTHING, Reason::kConnectionAborted},
       {CURLE_PARTIAL_FILE, Reason::kConnectionAborted},
       {CURLE_SEND_ERROR, Reason::kConnectionReset},
       {CURLE_RECV_ERROR, Reason::kConnectionReset},
       {CURLE_WEIRD_SERVER_REPLY, Reason::kInvalidServerResponse},
       {CURLE_TOO_MANY_REDIRECTS, Reason::kRedirectFailed}});
  const auto found = kReasons.find(outcome_);
  return found != kReasons.end() ? found->second : Reason::kInternalError;
}

bool WebExchange::Prepare(std::string_view body) {
  easy_.reset(curl_easy_init());
  multi_.reset(curl_multi_init());
  if (!easy_ || !multi_ || !SetAddress() || !SetWay()) return false;
  SetHeaders();
  const auto on_body = [](char* data, std::size_t size, std::size_t count, void* self) {
    static_cast<WebExchange*>(self)->arrived_.append(data, size * count);
    static_cast<WebExchange*>(self)->received_ += static_cast<std::int64_t>(size * count);
    return size * count;
  };
  const auto on_header = [](char* data, std::size_t size, std::size_t count, void* self) {
    const std::string_view line(data, size * count);
    static_cast<WebExchange*>(self)->received_ += static_cast<std::int64_t>(line.size());
    static_cast<WebExchange*>(self)->head_ended_ = line == "\r\n" || line == "\n";
    return size * count;
  };
  const auto connect = static_cast<long>(request_.time_outs.connect.count());
  return Set(CURLOPT_NOSIGNAL, 1L) && Set(CURLOPT_CONNECTTIMEOUT_MS, connect) &&
         Set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_0}) &&
         Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size())) &&
         Set(CURLOPT_COPYPOSTFIELDS, body.empty() ? "" : body.data()) &&
         Set(CURLOPT_USERAGENT, request_.agent.c_str()) &&
         Set(CURLOPT_HTTPHEADER, headers_.get()) && Set(CURLOPT_WRITEFUNCTION, +on_body) &&
         Set(CURLOPT_WRITEDATA, this) && Set(CURLOPT_HEADERFUNCTION, +on_header) &&
         Set(CURLOPT_HEADERDATA, this) &&
         curl_multi_add_handle(multi_.get(), easy_.get()) == CURLM_OK;
}

bool WebExchange::SetAddress() {
  address_.reset(curl_url());
  const auto set = [this](CURLUPart part, const std::string& value, unsigned flags = 0) {
    return curl_url_set(address_.get(), part, value.c_str(), flags) == CURLUE_OK;
  };
  // A path as the library sends it: with a "/" in front, and without blanks.
  const bool rooted = request_.object_name.starts_with('/');
  const std::string path = (rooted ? "" : "/") + request_.object_name;
  const bool is_numeric_6 = request_.server.find(':') != std::string::npos;
  const std::string host = is_numeric_6 ? "[" + request_.server + "]" : request_.server;
  const std::uint16_t port = request_.port == 0 ? 80 : request_.port;
  return address_ && set(CURLUPART_URL, "http://host" + path, CURLU_URLENCODE | CURLU_PATH_AS_IS) &&
         set(CURLUPART_HOST, host) && set(CURLUPART_PORT, std::to_string(port)) &&
         Set(CURLOPT_CURLU, address_.get());
}

bool WebExchange::SetWay() {
  if (request_.proxy) {
    const std::string proxy = HttpProxyIn(*request_.proxy);
    if (proxy.empty() || !Set(CURLOPT_PROXY, proxy.c_str()) ||
        !Set(CURLOPT_PROXYPORT, kDefaultProxyPort) || !Set(CURLOPT_NOPROXY, "")) {
      return false;
    }
  }
  if (!request_.user_name.empty() && !(Set(CURLOPT_USERNAME, request_.user_name.c_str()) &&
                                       Set(CURLOPT_PASSWORD, request_.password.c_str()) &&
                                       Set(CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_ANY)))) {
    return false;
  }
  return Set(CURLOPT_PROTOCOLS_STR, "http") && Set(CURLOPT_REDIR_PROTOCOLS_STR, "http") &&
         Set(CURLOPT_FOLLOWLOCATION, 1L) && Set(CURLOPT_MAXREDIRS, kMostRedirects);
}

void WebExchange::SetHeaders() {
  const auto add = [this](const std::string& line) {
    headers_.reset(curl_slist_append(headers_.release(), line.c_str()));
  };
  std::istringstream lines(request_.headers);
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) add(line);
  }
  // A name without a value keeps libcurl from adding that header by itself, not one from above.
  add("Accept:");
  add("Expect:");
  add("Proxy-Connection:");
  add("Content-Type:");
}

// Lets libcurl work until something has happened: at most one receive buffer arrives.
void WebExchange::Drive() {
  arrived_.clear();
  taken_ = 0;
  int running = 0;
  if (curl_multi_perform(multi_.get(), &running) != CURLM_OK) return End(CURLE_OUT_OF_MEMORY);
  int queued = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &queued)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode result = message->data.result;
    // An answer that is no HTTP counts as another protocol here, as does a place it points to.
    const bool no_http = result == CURLE_UNSUPPORTED_PROTOCOL && received_ == 0;
    End(no_http ? CURLE_WEIRD_SERVER_REPLY : result);
  }
  const auto now = std::chrono::steady_clock::now();
  if (const std::int64_t moved = BytesMoved(); moved != moved_) {
    moved_ = moved;
    moved_at_ = now;
  } else if (now - moved_at_ >= request_.time_outs.silence) {
    End(CURLE_OPERATION_TIMEDOUT);
  } else if (!done_) {
    const auto left = moved_at_ + request_.time_outs.silence - now;
    const auto wait = std::min<std::chrono::nanoseconds>(left, kLongestWait);
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(wait).count();
    curl_multi_poll(multi_.get(), nullptr, 0, static_cast<int>(milliseconds), nullptr);
  }
}

void WebExchange::End(CURLcode outcome) {
  if (!std::exchange(done_, true)) outcome_ = outcome;
}

std::int64_t WebExchange::BytesMoved() const {
  curl_off_t body = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_SIZE_UPLOAD_T, &body);
  return body + received_;
}

// Whether the head of the final answer has arrived. One that points elsewhere or asks for a
// password is final only when its own body comes, which libcurl hides otherwise, or when all went
// well.
bool WebExchange::HasAnswer() const {
  if (Waiting() > 0 || (done_ && outcome_ == CURLE_OK)) return true;
  if (!head_ended_) return false;
  long status = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
  const bool may_go_on = (status >= 300 && status < 400) || status == 401 || status == 407;
  return status >= 200 && !may_go_on;
}

}  // namespace quorvane
