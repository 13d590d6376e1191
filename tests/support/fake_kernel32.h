#pragma once

#include <string>

#include "tests/support/call_log.h"
#include "tests/support/idle_kernel32.h"

namespace quorvane::testing {

/// Copies for real and writes the count of bytes down. Nothing here can fail.
class FakeKernel32 final : public IdleKernel32 {
 public:
  using IdleKernel32::RtlMoveMemory;

  FakeKernel32() = default;
  explicit FakeKernel32(CallLog& log) : log_(&log) {}

  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    if (log_ != nullptr) log_->push_back("RtlMoveMemory(" + std::to_string(length) + ")");
    IdleKernel32::RtlMoveMemory(destination, source, length);
  }

 private:
  CallLog* log_ = nullptr;
};

}  // namespace quorvane::testing
