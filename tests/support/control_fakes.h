#pragma once

#include <map>
#include <string>
#include <utility>

#include "control/control_site.h"
#include "platform/conversions.h"
#include "runtime/runtime_error.h"
#include "runtime/utf8.h"
#include "tests/support/call_log.h"
#include "tests/support/fault_plan.h"

namespace quorvane::testing {

/// The error that a fake's planned fault raises.
inline constexpr std::int32_t kPlannedFault = 31000;

/// A container's site that writes down what it is told.
class FakeControlSite final : public ControlSite {
 public:
  explicit FakeControlSite(CallLog& log, FaultPlan plan = FaultPlan()) : log_(log), plan_(plan) {}

  void PropertyChanged(const identities::Property& property) override {
    Note("PropertyChanged(" + ToUtf8(property.entry) + ")");
  }
  void SetHeight(float twips) override { Note("SetHeight(" + std::to_string(twips) + ")"); }
  void SetWidth(float twips) override { Note("SetWidth(" + std::to_string(twips) + ")"); }

  [[nodiscard]] const FaultPlan& Plan() const { return plan_; }

 private:
  void Note(std::string line) {
    log_.push_back(std::move(line));
    if (plan_.NextCallFails()) Raise(kPlannedFault);
  }

  CallLog& log_;
  FaultPlan plan_;
};

/// A bag as the containers keep it: named values of their own kinds, nothing for what equals its
/// default.
class FakeBag final : public PropertyBag {
 public:
  explicit FakeBag(FaultPlan plan = FaultPlan()) : plan_(plan) {}

  TaggedValue ReadProperty(const Text& name, const TaggedValue& default_value) override {
    log.push_back("Read(" + ToUtf8(name) + ")");
    if (plan_.NextCallFails()) Raise(kPlannedFault);
    const auto found = entries.find(ToUtf8(name));
    return found == entries.end() ? default_value : found->second;
  }

  void WriteProperty(const Text& name, const TaggedValue& value,
                     const TaggedValue& default_value) override {
    log.push_back("Write(" + ToUtf8(name) + ", default " + ToUtf8(ToText(default_value)) + ")");
    if (plan_.NextCallFails()) Raise(kPlannedFault);
    if (value == default_value) {
      entries.erase(ToUtf8(name));
    } else {
      entries.insert_or_assign(ToUtf8(name), value);
    }
  }

  [[nodiscard]] const FaultPlan& Plan() const { return plan_; }

  std::map<std::string, TaggedValue> entries;
  CallLog log;

 private:
  FaultPlan plan_;
};

}  // namespace quorvane::testing
