#include "platform/wininet.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "platform/posix/handle_table.h"
#include "platform/posix/web_exchange.h"

// The web client library over libcurl. What it cannot match is told in docs/form-post.md.

namespace quorvane {
namespace {

using web_client::Reason;
using web_client::TimeOuts;

// What a handle stands for; each kind holds all that the kinds before it were told.
enum class Kind { kSession, kConnection, kRequest };
struct Object {
  Kind kind;
  WebRequest so_far;
  std::unique_ptr<WebExchange> exchange;  // once sent
};

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): as the library keeps them
std::atomic connect_time_out = TimeOuts().connect;
std::atomic silence_time_out = TimeOuts().silence;
thread_local Reason last_failure = Reason::kNone;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

// Gives what a failed call gives, a handle or a result.
std::uint8_t FailWith(Reason reason) {
  last_failure = reason;
  return 0;
}

std::string TextOf(const char* text) { return text == nullptr ? "" : text; }

class CurlWinInet final : public WinInet {
 public:
  InternetHandle InternetOpenA(const char* agent, std::uint32_t access_type, const char* proxy,
                               const char* /*proxy_bypass*/, std::uint32_t /*flags*/) override {
    const bool uses_proxy = access_type == kOpenTypeProxy;
    if (uses_proxy ? proxy == nullptr : access_type != kOpenTypePreconfig) {
      return FailWith(Reason::kInvalidParameter);
    }
    WebRequest so_far;
    so_far.agent = TextOf(agent);
    if (uses_proxy) so_far.proxy = proxy;
    return Add(Kind::kSession, std::move(so_far));
  }

  InternetHandle InternetConnectA(InternetHandle internet, const char* server, std::int16_t port,
                                  const char* user_name, const char* password,
                                  std::uint32_t service, std::uint32_t /*flags*/,
                                  std::uintptr_t /*context*/) override {
    const auto session = Find(internet, Kind::kSession);
    if (!session) return 0;
    if (server == nullptr || *server == '\0' || service != kServiceHttp) {
      return FailWith(Reason::kInvalidParameter);
    }
    WebRequest so_far = session->so_far;
    so_far.server = server;
    so_far.port = static_cast<std::uint16_t>(port);
    so_far.user_name = TextOf(user_name);
    so_far.password = TextOf(password);
    return Add(Kind::kConnection, std::move(so_far));
  }

  InternetHandle HttpOpenRequestA(InternetHandle connection, const char* verb,
                                  const char* object_name, const char* version,
                                  const char* /*referrer*/, const char* const* /*accept_types*/,
                                  std::uint32_t /*flags*/, std::uintptr_t /*context*/) override {
    const auto parent = Find(connection, Kind::kConnection);
    if (!parent) return 0;
    // The one kind of request that the stand-in knows.
    if (TextOf(verb) != "POST" || TextOf(version) != "HTTP/1.0") {
      return FailWith(Reason::kInvalidParameter);
    }
    WebRequest so_far = parent->so_far;
    so_far.object_name = TextOf(object_name);
    return Add(Kind::kRequest, std::move(so_far));
  }

  std::int32_t HttpAddRequestHeadersA(InternetHandle request, const char* headers,
                                      std::uint32_t headers_length,
                                      std::uint32_t modifiers) override {
    const auto found = Find(request, Kind::kRequest);
    if (!found) return 0;
    // Replacing is all there is, and all headers come in one call.
    if (headers == nullptr || modifiers != (kAddHeader | kReplaceHeader)) {
      return FailWith(Reason::kInvalidParameter);
    }
    found->so_far.headers.assign(headers, headers_length);
    return 1;
  }

  std::int32_t HttpSendRequestA(InternetHandle request, const char* headers,
                                std::uint32_t headers_length, const char* body,
                                std::uint32_t body_length) override {
    const auto found = Find(request, Kind::kRequest);
    if (!found) return 0;
    if (headers != nullptr || headers_length != 0) return FailWith(Reason::kInvalidParameter);
    const std::string_view bytes =
        body == nullptr ? std::string_view() : std::string_view(body, body_length);
    found->so_far.time_outs = {connect_time_out, silence_time_out};
    found->exchange = std::make_unique<WebExchange>(found->so_far);
    return found->exchange->Send(bytes) ? 1 : FailWith(found->exchange->Failure());
  }

  std::int32_t InternetReadFile(InternetHandle request, char* buffer, std::uint32_t size,
                                std::uint32_t& count) override {
    count = 0;
    const auto found = Find(request, Kind::kRequest);
    if (!found) return 0;
    if (!found->exchange) return FailWith(Reason::kInvalidParameter);
    std::size_t read = 0;
    const bool succeeded = found->exchange->Read(buffer, size, read);
    count = static_cast<std::uint32_t>(read);
    return succeeded ? 1 : FailWith(found->exchange->Failure());
  }

  std::int32_t InternetCloseHandle(InternetHandle handle) override {
    return handles_.Remove(handle) ? 1 : FailWith(Reason::kInvalidHandle);
  }

 private:
  InternetHandle Add(Kind kind, WebRequest so_far) {
    return handles_.Add(std::make_shared<Object>(Object{kind, std::move(so_far), {}}));
  }

  // The object of that kind, kept alive even if the handle is closed meanwhile; else null.
  std::shared_ptr<Object> Find(InternetHandle handle, Kind kind) {
    auto found = handles_.Find(handle).value_or(nullptr);
    if (found && found->kind == kind) return found;
    last_failure = Reason::kInvalidHandle;
    return nullptr;
  }

  // An object itself is used by one call at a time.
  HandleTable<InternetHandle, std::shared_ptr<Object>> handles_;
};

}  // namespace

void web_client::SetTimeOuts(TimeOuts time_outs) {
  connect_time_out = time_outs.connect;
  silence_time_out = time_outs.silence;
}

Reason web_client::LastFailure() { return last_failure; }

WinInet& wininet() noexcept {
  // Never destroyed: handles that were left open end with the process, not among its destructors.
  alignas(CurlWinInet) static std::array<std::byte, sizeof(CurlWinInet)> room;
  // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): lives until the end
  static auto* const instance = new (room.data()) CurlWinInet;
  return *instance;
}

}  // namespace quorvane
