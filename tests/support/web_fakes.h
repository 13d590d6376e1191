#pragma once

#include <algorithm>
#include <cstring>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/screen.h"
#include "platform/wininet.h"
#include "runtime/runtime_error.h"
#include "tests/support/call_log.h"
#include "tests/support/call_text.h"
#include "tests/support/fault_plan.h"

namespace quorvane::testing {

/// How a call of the fakes fails when the plan says so.
enum class Fails { kByItsResult, kByRaising };

/// A web client library that writes down what it is asked, hands out the handles 1, 2, 3 ... and
/// answers reads from a script.
class FakeWinInet : public WinInet {
 public:
  /// One answer to InternetReadFile: the bytes, and whether the call succeeds.
  struct Read {
    std::string bytes;
    bool succeeds = true;
  };

  explicit FakeWinInet(CallLog& log, FaultPlan plan = FaultPlan(),
                       Fails manner = Fails::kByItsResult)
      : log_(log), plan_(plan), manner_(manner) {}

  /// What the reads give, in order; then the end of the body, again and again.
  std::deque<Read> reads;
  /// The handles that were opened and not closed.
  std::set<InternetHandle> open_handles;
  /// What the buffer of the latest read held when it came.
  std::string latest_buffer;

  [[nodiscard]] const FaultPlan& Plan() const { return plan_; }

  InternetHandle InternetOpenA(const char* agent, std::uint32_t access_type, const char* proxy,
                               const char* proxy_bypass, std::uint32_t flags) override {
    return Open(CallText("InternetOpenA", agent, access_type, proxy, proxy_bypass, flags));
  }

  InternetHandle InternetConnectA(InternetHandle internet, const char* server, std::int16_t port,
                                  const char* user_name, const char* password,
                                  std::uint32_t service, std::uint32_t flags,
                                  std::uintptr_t context) override {
    return Open(CallText("InternetConnectA", internet, server, port, user_name, password, service,
                         flags, context));
  }

  InternetHandle HttpOpenRequestA(InternetHandle connection, const char* verb,
                                  const char* object_name, const char* version,
                                  const char* referrer, const char* const* accept_types,
                                  std::uint32_t flags, std::uintptr_t context) override {
    return Open(CallText("HttpOpenRequestA", connection, verb, object_name, version, referrer,
                         accept_types == nullptr ? nullptr : "types", flags, context));
  }

  std::int32_t HttpAddRequestHeadersA(InternetHandle request, const char* headers,
                                      std::uint32_t headers_length,
                                      std::uint32_t modifiers) override {
    return Answer(CallText("HttpAddRequestHeadersA", request, headers, headers_length, modifiers));
  }

  std::int32_t HttpSendRequestA(InternetHandle request, const char* headers,
                                std::uint32_t headers_length, const char* body,
                                std::uint32_t body_length) override {
    // The bytes that would go out, which a zero does not end.
    const std::string_view sent(body, body == nullptr ? 0 : body_length);
    return Answer(
        CallText("HttpSendRequestA", request, headers, headers_length, sent, body_length));
  }

  std::int32_t InternetReadFile(InternetHandle request, char* buffer, std::uint32_t size,
                                std::uint32_t& count) override {
    latest_buffer.assign(buffer, size);
    if (Answer(CallText("InternetReadFile", request, size)) == 0) return 0;
    if (reads.empty()) {
      count = 0;
      return 1;
    }
    const Read read = std::move(reads.front());
    reads.pop_front();
    count = static_cast<std::uint32_t>(read.bytes.size());
    std::memcpy(buffer, read.bytes.data(), std::min<std::size_t>(count, size));
    return read.succeeds ? 1 : 0;
  }

  std::int32_t InternetCloseHandle(InternetHandle handle) override {
    if (Answer(CallText("InternetCloseHandle", handle)) == 0) return 0;
    return open_handles.erase(handle) == 1 ? 1 : 0;
  }

 private:
  bool NextFails(std::string line) {
    log_.push_back(std::move(line));
    if (!plan_.NextCallFails()) return false;
    if (manner_ == Fails::kByRaising) Raise(ErrorNumber::kEntryPointNotFound);
    return true;
  }
  std::int32_t Answer(std::string line) { return NextFails(std::move(line)) ? 0 : 1; }
  InternetHandle Open(std::string line) {
    if (NextFails(std::move(line))) return 0;
    open_handles.insert(++latest_handle_);
    return latest_handle_;
  }

  CallLog& log_;
  FaultPlan plan_;
  Fails manner_;
  InternetHandle latest_handle_ = 0;
};

/// A screen that writes down the shapes of its pointer.
class FakeScreen final : public Screen {
 public:
  explicit FakeScreen(CallLog& log, FaultPlan plan = FaultPlan()) : log_(log), plan_(plan) {}

  void SetMousePointer(std::int16_t shape) override {
    log_.push_back(CallText("SetMousePointer", shape));
    if (plan_.NextCallFails()) Raise(ErrorNumber::kInvalidProcedureCall);
  }

 private:
  CallLog& log_;
  FaultPlan plan_;
};

}  // namespace quorvane::testing
