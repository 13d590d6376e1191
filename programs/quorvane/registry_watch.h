#pragma once

#include "platform/advapi32.h"

namespace quorvane::programs {

/// The registry's calls, with a note of the first that failed: the operation itself tells only that
/// nothing was written. The account calls go on as well.
class RegistryWatch final : public Advapi32 {
 public:
  explicit RegistryWatch(Advapi32& os = advapi32()) : os_(os) {}

  /// The system's error code; 0 as long as no call has failed.
  [[nodiscard]] std::int32_t Failure() const { return failure_; }

  std::int32_t RegOpenKeyExA(RegistryHandle hive, const char* path, std::int32_t options,
                             std::int32_t access, RegistryHandle* key) override {
    return Note(os_.RegOpenKeyExA(hive, path, options, access, key));
  }
  std::int32_t RegCreateKeyExA(RegistryHandle hive, const char* path, std::int32_t reserved,
                               const char* class_name, std::int32_t options, std::int32_t access,
                               const void* security, RegistryHandle* key,
                               std::int32_t* disposition) override {
    return Note(os_.RegCreateKeyExA(hive, path, reserved, class_name, options, access, security,
                                    key, disposition));
  }
  std::int32_t RegQueryValueExA(RegistryHandle key, const char* name, std::int32_t* reserved,
                                std::int32_t* type, void* data, std::int32_t* size) override {
    return Note(os_.RegQueryValueExA(key, name, reserved, type, data, size));
  }
  std::int32_t RegSetValueExA(RegistryHandle key, const char* name, std::int32_t reserved,
                              std::int32_t type, const void* data, std::int32_t size) override {
    return Note(os_.RegSetValueExA(key, name, reserved, type, data, size));
  }
  std::int32_t RegCloseKey(RegistryHandle key) override { return os_.RegCloseKey(key); }

  std::int32_t GetUserNameA(char* buffer, std::int32_t* size) override {
    return os_.GetUserNameA(buffer, size);
  }
  std::int32_t LookupAccountNameA(const char* system, const char* account, void* sid,
                                  std::int32_t* sid_size, char* domain, std::int32_t* domain_size,
                                  std::int32_t* account_type) override {
    return os_.LookupAccountNameA(system, account, sid, sid_size, domain, domain_size,
                                  account_type);
  }
  std::int32_t ConvertSidToStringSidA(const void* sid, Address32* text) override {
    return os_.ConvertSidToStringSidA(sid, text);
  }
  std::int32_t LastError() override { return os_.LastError(); }

 private:
  std::int32_t Note(std::int32_t result) {
    if (failure_ == 0) failure_ = result;
    return result;
  }

  Advapi32& os_;
  std::int32_t failure_ = 0;
};

}  // namespace quorvane::programs
