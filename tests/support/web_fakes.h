#pragma once

#include <algorithm>
#include <concepts>
#include <cstring>
#include <deque>
#include <set>
#include <string>
#include <utility>

#include "platform/screen.h"
#include "platform/wininet.h"
#include "runtime/runtime_error.h"
#include "tests/support/call_log.h"
#include "tests/support/fault_plan.h"

namespace quorvane::testing {

/// How a call of the fakes fails when the plan says so.
enum class Fails { kByItsResult, kByRaising };

/// A web client library that writes down what it is asked, hands out the handles 1, 2, 3 ... and
/// answers reads from a script.
class RecordingWinInet : public WinInet {
 public:
  /// One answer to InternetReadFile: the bytes, and whether the call succeeds.
  struct Read {
    std::string bytes;
    bool succeeds = true;
  };

  explicit RecordingWinInet(CallLog& log, FaultPlan plan = FaultPlan(),
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
    return Open("InternetOpenA(" + Shown(agent) + ", " + Shown(access_type) + ", " + Shown(proxy) +
                ", " + Shown(proxy_bypass) + ", " + Shown(flags) + ")");
  }

  InternetHandle InternetConnectA(InternetHandle internet, const char* server, std::int16_t port,
                                  const char* user_name, const char* password,
                                  std::uint32_t service, std::uint32_t flags,
                                  std::uintptr_t context) override {
    return Open("InternetConnectA(" + Shown(internet) + ", " + Shown(server) + ", " +
                std::to_string(port) + ", " + Shown(user_name) + ", " + Shown(password) + ", " +
                Shown(service) + ", " + Shown(flags) + ", " + Shown(context) + ")");
  }

  InternetHandle HttpOpenRequestA(InternetHandle connection, const char* verb,
                                  const char* object_name, const char* version,
                                  const char* referrer, const char* const* accept_types,
                                  std::uint32_t flags, std::uintptr_t context) override {
    return Open("HttpOpenRequestA(" + Shown(connection) + ", " + Shown(verb) + ", " +
                Shown(object_name) + ", " + Shown(version) + ", " + Shown(referrer) + ", " +
                (accept_types == nullptr ? "null" : "types") + ", " + Shown(flags) + ", " +
                Shown(context) + ")");
  }

  std::int32_t HttpAddRequestHeadersA(InternetHandle request, const char* headers,
                                      std::uint32_t headers_length,
                                      std::uint32_t modifiers) override {
    return Answer("HttpAddRequestHeadersA(" + Shown(request) + ", " + Shown(headers) + ", " +
                  Shown(headers_length) + ", " + Shown(modifiers) + ")");
  }

  std::int32_t HttpSendRequestA(InternetHandle request, const char* headers,
                                std::uint32_t headers_length, const char* body,
                                std::uint32_t body_length) override {
    // The bytes that would go out, which a zero does not end.
    const std::string sent = body == nullptr ? "" : std::string(body, body_length);
    return Answer("HttpSendRequestA(" + Shown(request) + ", " + Shown(headers) + ", " +
                  Shown(headers_length) + ", " + (body == nullptr ? "null" : Quoted(sent)) + ", " +
                  Shown(body_length) + ")");
  }

  std::int32_t InternetReadFile(InternetHandle request, char* buffer, std::uint32_t size,
                                std::uint32_t& count) override {
    latest_buffer.assign(buffer, size);
    if (Answer("InternetReadFile(" + Shown(request) + ", " + Shown(size) + ")") == 0) return 0;
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
    if (Answer("InternetCloseHandle(" + Shown(handle) + ")") == 0) return 0;
    return open_handles.erase(handle) == 1 ? 1 : 0;
  }

 private:
  static std::string Quoted(const std::string& bytes) {
    std::string shown = "\"";
    for (const char c : bytes) {
      if (c == '\r') {
        shown += "\\r";
      } else if (c == '\n') {
        shown += "\\n";
      } else if (c == '\0') {
        shown += "\\0";
      } else {
        shown += c;
      }
    }
    return shown + '"';
  }
  static std::string Shown(const char* text) { return text == nullptr ? "null" : Quoted(text); }
  template <std::unsigned_integral Number>
  static std::string Shown(Number number) {
    return std::to_string(number);
  }

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
class RecordingScreen final : public Screen {
 public:
  explicit RecordingScreen(CallLog& log, FaultPlan plan = FaultPlan()) : log_(log), plan_(plan) {}

  void SetMousePointer(std::int16_t shape) override {
    log_.push_back("SetMousePointer(" + std::to_string(shape) + ")");
    if (plan_.NextCallFails()) Raise(ErrorNumber::kInvalidProcedureCall);
  }

 private:
  CallLog& log_;
  FaultPlan plan_;
};

}  // namespace quorvane::testing
