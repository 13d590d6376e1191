#pragma once

#include <string>

#include "tests/support/call_log.h"
#include "tests/support/fake_kernel32_base.h"

namespace quorvane::testing {

/// Copies for real and writes the count of bytes down. Nothing here can fail.
class FakeKernel32 final : public FakeKernel32Base {
 public:
  using FakeKernel32Base::RtlMoveMemory;

  FakeKernel32() = default;
  explicit FakeKernel32(CallLog& log) : log_(&log) {}

  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    if (log_ != nullptr) log_->push_back("RtlMoveMemory(" + std::to_string(length) + ")");
    FakeKernel32Base::RtlMoveMemory(destination, source, length);
  }

 private:
  CallLog* log_ = nullptr;
};

}  // namespace quorvane::testing
