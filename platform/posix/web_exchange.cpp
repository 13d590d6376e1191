#include "platform/posix/web_exchange.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace quorvane {
namespace {

constexpr int kWaitMilliseconds = 1000;
constexpr long kMostRedirects = 10;
constexpr long kDefaultProxyPort = 80;

// The entry of a proxy list that serves HTTP, without its "http="; empty when there is none.
std::string HttpProxyIn(std::string_view list) {
  constexpr std::string_view kScheme = "http=";
  constexpr std::string_view kDividers = "; ";
  while (!list.empty()) {
    const std::size_t end = std::min(list.find_first_of(kDividers), list.size());
    std::string_view entry = list.substr(0, end);
    list.remove_prefix(std::min(end + 1, list.size()));
    if (entry.starts_with(kScheme)) entry.remove_prefix(kScheme.size());
    if (!entry.empty() && entry.find('=') == std::string_view::npos) return std::string(entry);
  }
  return {};
}

bool NamesHeader(std::string_view lines, std::string_view lower_case_name) {
  const auto equal_ignoring_case = [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? static_cast<char>(a + ('a' - 'A')) : a) == b;
  };
  return std::search(lines.begin(), lines.end(), lower_case_name.begin(), lower_case_name.end(),
                     equal_ignoring_case) != lines.end();
}

bool InitializeLibrary() {
  static const CURLcode kResult = curl_global_init(CURL_GLOBAL_DEFAULT);
  return kResult == CURLE_OK;
}

}  // namespace

WebExchange::WebExchange(WebRequest request) : request_(std::move(request)) {}

WebExchange::~WebExchange() {
  if (multi_ && easy_) curl_multi_remove_handle(multi_.get(), easy_.get());
}

bool WebExchange::Send(std::string_view body) {
  if (multi_ || !Prepare(body)) return false;
  while (!done_ && Waiting() == 0 && !HasAnswer()) Drive();
  return HasAnswer();
}

bool WebExchange::Read(char* buffer, std::size_t size, std::size_t& count) {
  count = 0;
  if (!multi_) return false;
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

bool WebExchange::Prepare(std::string_view body) {
  if (!InitializeLibrary()) return false;
  easy_.reset(curl_easy_init());
  multi_.reset(curl_multi_init());
  if (!easy_ || !multi_ || !SetAddress() || !SetWay()) return false;
  SetHeaders();
  return Set(CURLOPT_NOSIGNAL, 1L) && Set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_0}) &&
         Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size())) &&
         Set(CURLOPT_COPYPOSTFIELDS, body.empty() ? "" : body.data()) &&
         Set(CURLOPT_USERAGENT, request_.agent.c_str()) &&
         Set(CURLOPT_HTTPHEADER, headers_.get()) && Set(CURLOPT_WRITEFUNCTION, &OnBody) &&
         Set(CURLOPT_WRITEDATA, this) && Set(CURLOPT_HEADERFUNCTION, &OnHeader) &&
         Set(CURLOPT_HEADERDATA, this) &&
         curl_multi_add_handle(multi_.get(), easy_.get()) == CURLM_OK;
}

bool WebExchange::SetAddress() {
  address_.reset(curl_url());
  const auto set = [this](CURLUPart part, const std::string& value, unsigned flags = 0) {
    return curl_url_set(address_.get(), part, value.c_str(), flags) == CURLUE_OK;
  };
  // The library's own dress for a path: a "/" in front, and no blanks.
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
  if (request_.uses_proxy) {
    const std::string proxy = HttpProxyIn(request_.proxy);
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
  std::string_view lines = request_.headers;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find("\r\n"), lines.size());
    if (end > 0) add(std::string(lines.substr(0, end)));
    lines.remove_prefix(std::min(end + 2, lines.size()));
  }
  // A name without a value keeps libcurl from adding that header by itself.
  add("Accept:");
  add("Expect:");
  add("Proxy-Connection:");
  if (!NamesHeader(request_.headers, "content-type:")) add("Content-Type:");
}

// Lets libcurl work until something has happened: at most one receive buffer arrives.
void WebExchange::Drive() {
  arrived_.clear();
  taken_ = 0;
  int running = 0;
  if (curl_multi_perform(multi_.get(), &running) != CURLM_OK) {
    done_ = true;
    outcome_ = CURLE_OUT_OF_MEMORY;
    return;
  }
  int queued = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &queued)) {
    if (message->msg != CURLMSG_DONE) continue;
    done_ = true;
    outcome_ = message->data.result;
  }
  if (!done_ && Waiting() == 0 && !HasAnswer())
    curl_multi_poll(multi_.get(), nullptr, 0, kWaitMilliseconds, nullptr);
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

std::size_t WebExchange::OnBody(char* data, std::size_t size, std::size_t count, void* self) {
  static_cast<WebExchange*>(self)->arrived_.append(data, size * count);
  return size * count;
}

std::size_t WebExchange::OnHeader(char* data, std::size_t size, std::size_t count, void* self) {
  const std::string_view line(data, size * count);
  static_cast<WebExchange*>(self)->head_ended_ = line == "\r\n" || line == "\n";
  return size * count;
}

}  // namespace quorvane
