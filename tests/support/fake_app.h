#pragma once

#include "platform/app.h"
#include "runtime/runtime_error.h"
#include "tests/support/call_log.h"
#include "tests/support/fault_plan.h"

namespace quorvane::testing {

/// A module of any path and name. A call that fails by the plan raises out of memory (7).
class FakeApp final : public App {
 public:
  FakeApp() = default;
  FakeApp(CallLog& log, FaultPlan& plan) : log_(&log), plan_(&plan) {}

  Text path = u"C:\\OCX";
  Text name = u"Module";

  Text Path() override { return Answer("Path()", path); }
  Text EXEName() override { return Answer("EXEName()", name); }

 private:
  const Text& Answer(const char* call, const Text& answer) {
    if (log_ != nullptr) log_->push_back(call);
    if (plan_ != nullptr && plan_->NextCallFails()) Raise(ErrorNumber::kOutOfMemory);
    return answer;
  }

  CallLog* log_ = nullptr;
  FaultPlan* plan_ = nullptr;
};

}  // namespace quorvane::testing
