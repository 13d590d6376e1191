#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "platform/wininet.h"

namespace quorvane::programs {

/// The calls of the web client library, with a note of why the first of them failed, which the post
/// does not tell, and with time-outs of the user's own.
class WebWatch final : public WinInet {
 public:
  /// Without a time-out the library's own hold. It counts for each wait alone: to be connected, to
  /// send, and for the next bytes of the answer.
  explicit WebWatch(std::optional<std::chrono::seconds> time_out, WinInet& web = wininet())
      : web_(web), time_out_(time_out) {}

  /// Why the post failed, in words; that of an answer without a body when all calls went well.
  [[nodiscard]] std::string Reason() const;

  InternetHandle InternetOpenA(const char* agent, std::uint32_t access_type, const char* proxy,
                               const char* proxy_bypass, std::uint32_t flags) override {
    return Opened(web_.InternetOpenA(agent, access_type, proxy, proxy_bypass, flags));
  }
  InternetHandle InternetConnectA(InternetHandle internet, const char* server, std::int16_t port,
                                  const char* user_name, const char* password,
                                  std::uint32_t service, std::uint32_t flags,
                                  std::uintptr_t context) override {
    return Opened(web_.InternetConnectA(internet, server, port, user_name, password, service, flags,
                                        context));
  }
  InternetHandle HttpOpenRequestA(InternetHandle connection, const char* verb,
                                  const char* object_name, const char* version,
                                  const char* referrer, const char* const* accept_types,
                                  std::uint32_t flags, std::uintptr_t context) override {
    return Opened(web_.HttpOpenRequestA(connection, verb, object_name, version, referrer,
                                        accept_types, flags, context));
  }
  std::int32_t HttpAddRequestHeadersA(InternetHandle request, const char* headers,
                                      std::uint32_t headers_length,
                                      std::uint32_t modifiers) override {
    return web_.HttpAddRequestHeadersA(request, headers, headers_length, modifiers);
  }
  std::int32_t HttpSendRequestA(InternetHandle request, const char* headers,
                                std::uint32_t headers_length, const char* body,
                                std::uint32_t body_length) override {
    return Noted(web_.HttpSendRequestA(request, headers, headers_length, body, body_length));
  }
  std::int32_t InternetReadFile(InternetHandle request, char* buffer, std::uint32_t size,
                                std::uint32_t& count) override {
    return Noted(web_.InternetReadFile(request, buffer, size, count));
  }
  std::int32_t InternetCloseHandle(InternetHandle handle) override {
    return web_.InternetCloseHandle(handle);
  }

 private:
  InternetHandle Opened(InternetHandle handle);
  std::int32_t Noted(std::int32_t result);

  WinInet& web_;
  std::optional<std::chrono::seconds> time_out_;
  bool has_failed_ = false;
  std::int32_t failure_ = 0;
};

// Answered once in posix/ and once in windows/.

/// Why the calling thread's latest call of the library failed, by the platform's number. To be
/// called right behind it.
[[nodiscard]] std::int32_t LastWebFailure();

/// Sets the time-outs of a handle, and of all that is opened from it.
void SetTimeOut(InternetHandle handle, std::chrono::seconds time_out);

}  // namespace quorvane::programs
