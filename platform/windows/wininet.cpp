#include "platform/wininet.h"

#include <new>

#include "platform/windows/delay_load.h"
#include "platform/windows/os_headers.h"
// Behind the line above: it needs the types of that header.
#include <wininet.h>

namespace quorvane {
namespace {

static_assert(WinInet::kOpenTypePreconfig == INTERNET_OPEN_TYPE_PRECONFIG);
static_assert(WinInet::kOpenTypeProxy == INTERNET_OPEN_TYPE_PROXY);
static_assert(WinInet::kServiceHttp == INTERNET_SERVICE_HTTP);
static_assert(WinInet::kFlagReload == INTERNET_FLAG_RELOAD);
static_assert(WinInet::kAddHeader == HTTP_ADDREQ_FLAG_ADD);
static_assert(WinInet::kReplaceHeader == HTTP_ADDREQ_FLAG_REPLACE);

HINTERNET Raw(InternetHandle handle) { return reinterpret_cast<HINTERNET>(handle); }
InternetHandle Opaque(HINTERNET handle) { return reinterpret_cast<InternetHandle>(handle); }

// Never given back, not even when the module leaves memory: a failed send leaves handles open, and
// the library's own threads may still work on them.
DelayLoadLibrary& Library() {
  alignas(DelayLoadLibrary) static unsigned char room[sizeof(DelayLoadLibrary)];
  static auto* const library = new (room) DelayLoadLibrary(L"wininet.dll");
  return *library;
}

class WindowsWinInet final : public WinInet {
 public:
  InternetHandle InternetOpenA(const char* agent, std::uint32_t access_type, const char* proxy,
                               const char* proxy_bypass, std::uint32_t flags) override {
    return Opaque(open_()(agent, access_type, proxy, proxy_bypass, flags));
  }

  InternetHandle InternetConnectA(InternetHandle internet, const char* server, std::int16_t port,
                                  const char* user_name, const char* password,
                                  std::uint32_t service, std::uint32_t flags,
                                  std::uintptr_t context) override {
    return Opaque(connect_()(Raw(internet), server, static_cast<INTERNET_PORT>(port), user_name,
                             password, service, flags, context));
  }

  InternetHandle HttpOpenRequestA(InternetHandle connection, const char* verb,
                                  const char* object_name, const char* version,
                                  const char* referrer, const char* const* accept_types,
                                  std::uint32_t flags, std::uintptr_t context) override {
    return Opaque(open_request_()(Raw(connection), verb, object_name, version, referrer,
                                  const_cast<const char**>(accept_types), flags, context));
  }

  std::int32_t HttpAddRequestHeadersA(InternetHandle request, const char* headers,
                                      std::uint32_t headers_length,
                                      std::uint32_t modifiers) override {
    return add_headers_()(Raw(request), headers, headers_length, modifiers);
  }

  std::int32_t HttpSendRequestA(InternetHandle request, const char* headers,
                                std::uint32_t headers_length, const char* body,
                                std::uint32_t body_length) override {
    return send_()(Raw(request), headers, headers_length, const_cast<char*>(body), body_length);
  }

  std::int32_t InternetReadFile(InternetHandle request, char* buffer, std::uint32_t size,
                                std::uint32_t& count) override {
    DWORD read = count;
    const BOOL result = read_()(Raw(request), buffer, size, &read);
    count = read;
    return result;
  }

  std::int32_t InternetCloseHandle(InternetHandle handle) override { return close_()(Raw(handle)); }

 private:
  DelayLoadCall<decltype(&::InternetOpenA)> open_{Library(), "InternetOpenA"};
  DelayLoadCall<decltype(&::InternetConnectA)> connect_{Library(), "InternetConnectA"};
  DelayLoadCall<decltype(&::HttpOpenRequestA)> open_request_{Library(), "HttpOpenRequestA"};
  DelayLoadCall<decltype(&::HttpAddRequestHeadersA)> add_headers_{Library(),
                                                                  "HttpAddRequestHeadersA"};
  DelayLoadCall<decltype(&::HttpSendRequestA)> send_{Library(), "HttpSendRequestA"};
  DelayLoadCall<decltype(&::InternetReadFile)> read_{Library(), "InternetReadFile"};
  DelayLoadCall<decltype(&::InternetCloseHandle)> close_{Library(), "InternetCloseHandle"};
};

}  // namespace

WinInet& wininet() noexcept {
  static WindowsWinInet instance;
  return instance;
}

}  // namespace quorvane
