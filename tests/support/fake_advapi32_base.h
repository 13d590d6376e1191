#pragma once

#include "platform/advapi32.h"

namespace quorvane::testing {

/// Every call fails and does nothing. A fake derives from it and overrides the calls that it is
/// about.
class FakeAdvapi32Base : public Advapi32 {
 public:
  static constexpr std::int32_t kFailure = 5;

  std::int32_t RegOpenKeyExA(RegistryHandle /*hive*/, const char* /*path*/,
                             std::int32_t /*options*/, std::int32_t /*access*/,
                             RegistryHandle* /*key*/) override {
    return kFailure;
  }
  std::int32_t RegCreateKeyExA(RegistryHandle /*hive*/, const char* /*path*/,
                               std::int32_t /*reserved*/, const char* /*class_name*/,
                               std::int32_t /*options*/, std::int32_t /*access*/,
                               const void* /*security*/, RegistryHandle* /*key*/,
                               std::int32_t* /*disposition*/) override {
    return kFailure;
  }
  std::int32_t RegQueryValueExA(RegistryHandle /*key*/, const char* /*name*/,
                                std::int32_t* /*reserved*/, std::int32_t* /*type*/, void* /*data*/,
                                std::int32_t* /*size*/) override {
    return kFailure;
  }
  std::int32_t RegSetValueExA(RegistryHandle /*key*/, const char* /*name*/,
                              std::int32_t /*reserved*/, std::int32_t /*type*/,
                              const void* /*data*/, std::int32_t /*size*/) override {
    return kFailure;
  }
  std::int32_t RegCloseKey(RegistryHandle /*key*/) override { return kFailure; }
  std::int32_t GetUserNameA(char* /*buffer*/, std::int32_t* /*size*/) override { return 0; }
  std::int32_t LookupAccountNameA(const char* /*system*/, const char* /*account*/, void* /*sid*/,
                                  std::int32_t* /*sid_size*/, char* /*domain*/,
                                  std::int32_t* /*domain_size*/,
                                  std::int32_t* /*account_type*/) override {
    return 0;
  }
  std::int32_t ConvertSidToStringSidA(const void* /*sid*/, Address32* /*text*/) override {
    return 0;
  }
  std::int32_t LastError() override { return kFailure; }
};

}  // namespace quorvane::testing
