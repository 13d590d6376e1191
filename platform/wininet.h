#pragma once

#include <cstdint>

namespace quorvane {

/// A handle of the web client library: an internet session, a connection or a request; 0 is none.
/// Whoever opens one closes it with InternetCloseHandle().
using InternetHandle = std::uintptr_t;

/// Calls of the system's web client library, under their own names and with their own order of
/// arguments; results are handed back raw. Texts are 8-bit, end in a zero and stay the caller's; a
/// null pointer is "none", not the empty text. All calls block, on the calling thread.
///
/// Where the system lacks the library or an entry point, the call raises error in loading library
/// (48) or entry point not found (453); nothing else is ever raised. The numbers below are the
/// library's own.
class WinInet {
 public:
  static constexpr std::uint32_t kOpenTypePreconfig = 0;    ///< as the system is configured
  static constexpr std::uint32_t kOpenTypeProxy = 3;        ///< through the proxy that is named
  static constexpr std::uint32_t kServiceHttp = 3;          ///< the service to connect to
  static constexpr std::uint32_t kFlagReload = 0x80000000;  ///< from the server, not from a cache
  static constexpr std::uint32_t kAddHeader =
      0x20000000;  ///< a header of a name that is not there yet
  static constexpr std::uint32_t kReplaceHeader = 0x80000000;  ///< in place of one of the same name

  virtual ~WinInet() = default;

  /// A session; 0 on failure. Nothing goes out yet.
  [[nodiscard]] virtual InternetHandle InternetOpenA(const char* agent, std::uint32_t access_type,
                                                     const char* proxy, const char* proxy_bypass,
                                                     std::uint32_t flags) = 0;

  /// A connection of the session to a server; 0 on failure. Nothing goes out yet. The port's 16
  /// bits are taken as unsigned; 0 is the service's usual one.
  [[nodiscard]] virtual InternetHandle InternetConnectA(InternetHandle internet, const char* server,
                                                        std::int16_t port, const char* user_name,
                                                        const char* password, std::uint32_t service,
                                                        std::uint32_t flags,
                                                        std::uintptr_t context) = 0;

  /// A request on the connection; 0 on failure. Nothing goes out yet. `accept_types` is a list of
  /// texts that a null pointer ends, or null.
  [[nodiscard]] virtual InternetHandle HttpOpenRequestA(InternetHandle connection, const char* verb,
                                                        const char* object_name,
                                                        const char* version, const char* referrer,
                                                        const char* const* accept_types,
                                                        std::uint32_t flags,
                                                        std::uintptr_t context) = 0;

  /// Adds header lines, each ended by CR LF, to the request; 0 on failure. The length counts bytes.
  [[nodiscard]] virtual std::int32_t HttpAddRequestHeadersA(InternetHandle request,
                                                            const char* headers,
                                                            std::uint32_t headers_length,
                                                            std::uint32_t modifiers) = 0;

  /// Sends the request and waits for the head of the answer; 0 on failure. Lengths count bytes: as
  /// many of the body go out, whatever text it holds.
  [[nodiscard]] virtual std::int32_t HttpSendRequestA(InternetHandle request, const char* headers,
                                                      std::uint32_t headers_length,
                                                      const char* body,
                                                      std::uint32_t body_length) = 0;

  /// Reads up to `size` bytes of the answer's body into the buffer, waiting for as many or the end,
  /// and reports their count; 0 on failure. Success with a count of 0 is the end of the body. The
  /// bytes of the buffer behind the count are left as they were.
  [[nodiscard]] virtual std::int32_t InternetReadFile(InternetHandle request, char* buffer,
                                                      std::uint32_t size, std::uint32_t& count) = 0;

  /// Closes a handle of any kind; 0 on failure.
  [[nodiscard]] virtual std::int32_t InternetCloseHandle(InternetHandle handle) = 0;
};

/// The platform's own, on Linux its stand-in. It lives as long as the program.
[[nodiscard]] WinInet& wininet() noexcept;

}  // namespace quorvane
