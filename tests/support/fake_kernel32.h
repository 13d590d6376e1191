#pragma once

#include <cstring>
#include <string>

#include "platform/kernel32.h"
#include "tests/support/call_log.h"

namespace quorvane::testing {

/// Copies for real and writes the count of bytes down. Nothing here can fail.
class FakeKernel32 final : public Kernel32 {
 public:
  FakeKernel32() = default;
  explicit FakeKernel32(CallLog& log) : log_(&log) {}

  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    if (log_ != nullptr) log_->push_back("RtlMoveMemory(" + std::to_string(length) + ")");
    if (length > 0) std::memmove(destination, source, length);
  }

 private:
  CallLog* log_ = nullptr;
};

}  // namespace quorvane::testing
