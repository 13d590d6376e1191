#pragma once

#include <memory>

#include "platform/posix/registry.h"
#include "platform/posix/system_errors.h"

namespace quorvane {

/// The registry calls over a store of the test's own, without the arguments that nothing hangs on.
class Registry {
 public:
  using Handle = RegistryHandle;

  explicit Registry(const RegistryStore& store) : calls_(MakeAdvapi32(store)) {}

  std::int32_t Open(Handle from, const char* path, std::int32_t access, Handle* opened) {
    return calls_->RegOpenKeyExA(from, path, 0, access, opened);
  }
  std::int32_t Create(Handle from, const char* path, std::int32_t access, Handle* opened,
                      std::int32_t* disposition) {
    return calls_->RegCreateKeyExA(from, path, 0, nullptr, 0, access, nullptr, opened, disposition);
  }
  std::int32_t Query(Handle key, const char* name, std::int32_t* type, void* data,
                     std::int32_t* size) {
    return calls_->RegQueryValueExA(key, name, nullptr, type, data, size);
  }
  std::int32_t Set(Handle key, const char* name, std::int32_t type, const void* data,
                   std::int32_t size) {
    return calls_->RegSetValueExA(key, name, 0, type, data, size);
  }
  std::int32_t Close(Handle key) { return calls_->RegCloseKey(key); }

  /// How many of the first numbers are open handles.
  std::size_t OpenHandles() {
    std::size_t count = 0;
    for (Handle key = 1; key < 0x40000; ++key) {
      if (Query(key, "", nullptr, nullptr, nullptr) != system_error::kInvalidHandle) ++count;
    }
    return count;
  }

 private:
  std::unique_ptr<Advapi32> calls_;
};

}  // namespace quorvane
