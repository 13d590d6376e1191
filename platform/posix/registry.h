#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>

#include "platform/posix/registry_store.h"

namespace quorvane {

/// The registry calls over a store: handles, access rights and error codes. Any thread may use it.
class Registry {
 public:
  using Handle = std::int32_t;

  /// The store is opened at the first call that needs it.
  explicit Registry(std::filesystem::path store_file) : store_file_(std::move(store_file)) {}

  // Each gives an error code of system_errors.h; names are in the system's code page.
  std::int32_t Open(Handle from, const char* path, std::int32_t access, Handle* opened);
  std::int32_t Create(Handle from, const char* path, std::int32_t access, Handle* opened,
                      std::int32_t* disposition);
  std::int32_t Query(Handle key, const char* name, std::int32_t* type, void* data,
                     std::int32_t* size);
  std::int32_t Set(Handle key, const char* name, std::int32_t type, const void* data,
                   std::int32_t size);
  std::int32_t Close(Handle key);

  /// How many handles are open.
  [[nodiscard]] std::size_t OpenHandles();

 private:
  struct OpenKey {
    RegistryStore::Key key = 0;
    std::int32_t access = 0;
  };

  [[nodiscard]] RegistryStore& Store();
  [[nodiscard]] std::optional<OpenKey> Resolve(Handle handle);
  [[nodiscard]] Handle HandOut(RegistryStore::Key key, std::int32_t access);
  template <class Operation>
  std::int32_t Guarded(Operation operation);
  std::int32_t OpenOrCreate(Handle from, const char* path, std::int32_t access, Handle* opened,
                            std::int32_t* disposition);

  std::mutex mutex_;
  std::filesystem::path store_file_;
  std::optional<RegistryStore> store_;
  std::map<Handle, OpenKey> open_keys_;
  Handle next_handle_ = 4;
};

}  // namespace quorvane
