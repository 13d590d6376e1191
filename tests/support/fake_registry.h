#pragma once

#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/call_log.h"
#include "tests/support/call_text.h"
#include "tests/support/fake_advapi32_base.h"
#include "tests/support/fault_plan.h"

namespace quorvane::testing {

/// The registry calls over one key in memory. Writes each call down, obeys a fault plan, and counts
/// the open handles exactly; `used_badly` says that a handle was used or closed that was not open.
/// It stores exactly the bytes that it is given and reports their count.
class FakeRegistry final : public FakeAdvapi32Base {
 public:
  struct Value {
    std::int32_t type = 0;
    std::string data;
  };

  explicit FakeRegistry(FaultPlan fault_plan = FaultPlan()) : plan(fault_plan) {}

  std::int32_t RegOpenKeyExA(RegistryHandle hive, const char* path, std::int32_t options,
                             std::int32_t access, RegistryHandle* key) override {
    log.push_back(CallText("RegOpenKeyExA", hive, path, options, access));
    if (plan.NextCallFails()) return kFailure;
    if (!key_exists) return 2;
    *key = HandOut();
    return 0;
  }

  std::int32_t RegCreateKeyExA(RegistryHandle hive, const char* path, std::int32_t reserved,
                               const char* class_name, std::int32_t options, std::int32_t access,
                               const void* security, RegistryHandle* key,
                               std::int32_t* disposition) override {
    log.push_back(CallText("RegCreateKeyExA", hive, path, reserved, class_name, options, access,
                           static_cast<const char*>(security)));
    if (plan.NextCallFails()) return kFailure;
    *disposition = key_exists ? 2 : 1;
    key_exists = true;
    *key = HandOut();
    return 0;
  }

  std::int32_t RegQueryValueExA(RegistryHandle key, const char* name, std::int32_t* reserved,
                                std::int32_t* type, void* data, std::int32_t* size) override {
    log.push_back(CallText("RegQueryValueExA", key, name, *size) + (data ? " with data" : ""));
    used_badly = used_badly || !open.contains(key) || reserved != nullptr;
    types_seen.emplace_back(type, *type);
    if (before_query) before_query(data != nullptr);
    if (plan.NextCallFails()) return kFailure;
    const auto found = values.find(name == nullptr ? "" : name);
    if (found == values.end()) return 2;
    const std::string& stored = found->second.data;
    const auto length = reported_size.value_or(static_cast<std::int32_t>(stored.size()));
    const std::int32_t room = *size;
    *type = found->second.type;
    *size = length;
    if (data == nullptr) return 0;
    if (room < length) return 234;
    std::memcpy(data, stored.data(), stored.size());
    return 0;
  }

  std::int32_t RegSetValueExA(RegistryHandle key, const char* name, std::int32_t reserved,
                              std::int32_t type, const void* data, std::int32_t size) override {
    log.push_back(CallText("RegSetValueExA", key, name, reserved, type, size));
    used_badly = used_badly || !open.contains(key);
    if (plan.NextCallFails()) return kFailure;
    const auto* const bytes = static_cast<const char*>(data != nullptr ? data : "");
    values[name == nullptr ? "" : name] = {type, std::string(bytes, static_cast<size_t>(size))};
    return 0;
  }

  std::int32_t RegCloseKey(RegistryHandle key) override {
    log.push_back(CallText("RegCloseKey", key));
    used_badly = used_badly || open.erase(key) == 0;
    return plan.NextCallFails() ? kFailure : 0;
  }

  FaultPlan plan;
  CallLog log;
  bool key_exists = true;
  std::map<std::string, Value> values;
  /// What queries report instead of the data's own size.
  std::optional<std::int32_t> reported_size;
  /// The variables for the type that queries were given, and what they held then.
  std::vector<std::pair<const std::int32_t*, std::int32_t>> types_seen;
  std::function<void(bool with_data)> before_query;
  std::set<RegistryHandle> open;
  bool used_badly = false;

 private:
  RegistryHandle HandOut() {
    open.insert(++last_handle_);
    return last_handle_;
  }
  RegistryHandle last_handle_ = 100;
};

}  // namespace quorvane::testing
